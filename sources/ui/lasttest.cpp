#include "ui/lasttest.h"

#include "app/testsession.h"
#include "db/databasemanager.h"
#include "db/dbtestresults.h"
#include "ui/backgroundnotice.h"
#include "ui/pages/testtab.h"
#include "ui/testdisplay.h"

namespace velometer {

namespace {

QString summary()
{
    const auto last = gDB->getNewestResults();
    return last ? TestDisplay::summary(*last) : QString();
}

} // namespace

LastTest::LastTest(TestTab *page, TestSession *testSession, QObject *parent)
    : QObject(parent)
    , testTab(page)
    , session(testSession)
    , background(new BackgroundNotice(QDBusConnection::sessionBus(), this))
{
    connect(&session->getController(), &TestController::testEnded, this, &LastTest::refresh);
    connect(testTab, &TestTab::lastTestClicked, this, &LastTest::open);
    connect(&session->getSeries(), &TestSeries::ended, this, &LastTest::ended);
    refresh();
}

void LastTest::refresh()
{
    testTab->setLastTest(summary());
}

void LastTest::open()
{
    if (const auto last = gDB->getNewestResults()) {
        Q_EMIT opened(last.get());
    }
}

void LastTest::ended()
{
    const TestSeries &series = session->getSeries();
    background->tell(series.isSeries() ? tr("The series has ended after %1 of %2 tests.")
                                             .arg(series.getNumber())
                                             .arg(series.getCount())
                                       : tr("The test has ended."),
                     summary());
}

} // namespace velometer
