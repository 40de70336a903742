#include "ui/pages/resultstab.h"

#include "db/dbtestresults.h"
#include "ui/details/detailswindow.h"
#include "ui/mainwindow.h"
#include "ui/pages/resultlist.h"
#include "ui/pages/testresultwidget.h"

#include "support/fakeplatform.h"
#include "support/rows.h"
#include "support/storedtests.h"

#include <QLabel>
#include <QMouseEvent>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString textOf(const QWidget *widget, const char *name)
{
    return widget->findChild<QLabel *>(QLatin1StringView(name))->text();
}

/// As the window system would: to the entry, from where it finds its way up to the list.
void mouse(QWidget *widget, QEvent::Type type, QPoint at)
{
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, at, widget->mapToGlobal(at), isMove ? Qt::NoButton : Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

} // namespace

class ResultsTabTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void cleanupTestCase() { delete std::exchange(gDB, nullptr); }

    void fillsAnEntry_data();
    void fillsAnEntry();
    void showsTotalsOrThatThereIsNothing();
    void opensDetailsOnATap_data();
    void opensDetailsOnATap();
    void aPressThatStopsTheListOpensNothing();
    void showsTheRightRowEverywhereInALongList();
    void keepsItsPlaceUntilThereIsANewTest();
    void movesWithTheKeyboard();

private:
    void showResults();
    TestResultWidget *entryAt(int y) const
    {
        QWidget *at = list->widget()->childAt(50, y - list->widget()->y());
        while (at && !qobject_cast<TestResultWidget *>(at))
            at = at->parentWidget();
        return static_cast<TestResultWidget *>(at);
    }

    std::unique_ptr<StoredTests> store;
    std::unique_ptr<FakePlatform> platform;
    std::unique_ptr<MainWindow> window;
    ResultsTab *page = nullptr;
    ResultList *list = nullptr;
};

void ResultsTabTest::init()
{
    store = std::make_unique<StoredTests>();
    platform = std::make_unique<FakePlatform>();
    window = std::make_unique<MainWindow>(*platform);
    window->resize(MainWindow::designSize);
    window->show();
    QTRY_VERIFY(page = window->findChild<ResultsTab *>());
    list = page->findChild<ResultList *>();
}

void ResultsTabTest::cleanup()
{
    window.reset();
    platform.reset();
    store.reset();
}

void ResultsTabTest::showResults()
{
    window->showResultsTab();
    QVERIFY(!list->isVisible());
    QVERIFY(page->findChild<QLabel *>(u"labelPleaseWait"_s)->isVisible());
    QTRY_VERIFY(list->isVisible());
    QCoreApplication::processEvents();
}

void ResultsTabTest::fillsAnEntry_data()
{
    const Rows<QVariant, double, qlonglong, QString, QString> row("timestamp", "speed", "rtt",
                                                                  "date", "figures");
    const double noon = 1'700'000'000'000;
    row("whole numbers", noon, 38'412'000, 31, "2023-11-14", "38412.0 kBit/s 31 ms");
    row("one decimal", noon, 14'980'249, 1, "2023-11-14", "14980.2 kBit/s 1 ms");
    row("failed", noon, 0, 0, "2023-11-14", "na na");
    row("no rate below nothing", noon, -1, -1, "2023-11-14", "na na");
    row("no such year", 1e300, 1e300, 31, "", "na 31 ms");
    row("before time began", -1e300, 38'412'000, 31, "", "38412.0 kBit/s 31 ms");
    row("no number", QVariant(u"NaN"_s), 38'412'000, 31, "", "38412.0 kBit/s 31 ms");
}

void ResultsTabTest::fillsAnEntry()
{
    QFETCH(QVariant, timestamp);
    QFETCH(double, speed);
    QFETCH(qlonglong, rtt);
    StoredTests::Row stored;
    stored.timestamp = timestamp;
    stored.download = speed;
    stored.upload = speed;
    stored.rtt = rtt;
    stored.server = QString(100'000, u'%');
    store->add(stored);
    showResults();

    const TestResultWidget *entry = list->entries().value(0);
    QCOMPARE(textOf(entry, "testid"), u"12 / 4"_s);
    QTEST(textOf(entry, "labelDate"), "date");
    QTEST(QString(textOf(entry, "download") + u' ' + textOf(entry, "rtt")), "figures");
    QCOMPARE(textOf(entry, "upload"), textOf(entry, "download"));
    QCOMPARE(textOf(entry, "connectiontype"), u"Mobile(LTE)"_s);
    QVERIFY(entry->accessibleName().contains(u"12 / 4"_s));
    QCOMPARE(entry->width(), list->viewport()->width());
}

void ResultsTabTest::showsTotalsOrThatThereIsNothing()
{
    const auto totals = [this] { return textOf(page, "labelTransferedData"); };
    showResults();
    QVERIFY(list->entries().isEmpty());
    QVERIFY(page->findChild<QLabel *>(u"labelNoTests"_s)->isVisible());
    QCOMPARE(totals().count(u"0.0 MB"_s), 2);

    store->add({.id = 1, .type = u"WLAN"_s});
    store->addDetail(1, u"totalBytes"_s, qlonglong(3) * 1024 * 1024);
    store->add({.id = 2});
    store->addDetail(2, u"totalBytes"_s, qlonglong(1536) * 1024);
    showResults();
    QCOMPARE(list->entries().size(), 2);
    QVERIFY(!page->findChild<QLabel *>(u"labelNoTests"_s)->isVisible());
    QVERIFY2(totals().contains(u"4.5 MB"_s) && totals().contains(u"1.5 MB"_s),
             qPrintable(totals()));
}

void ResultsTabTest::opensDetailsOnATap_data()
{
    const Rows<QPoint, QPoint, bool> row("over", "release", "opens");
    const QPoint press(100, 30);
    row("still", press, press, true);
    row("4 px to the right and down", press, press + QPoint(4, 4), true);
    row("4 px to the left and up", press, press - QPoint(4, 4), true);
    row("5 px down", press, press + QPoint(0, 5), false);
    row("5 px to the left", press, press - QPoint(5, 0), false);
    row("away and back", press + QPoint(0, 40), press, false);
}

void ResultsTabTest::opensDetailsOnATap()
{
    QFETCH(QPoint, over);
    QFETCH(QPoint, release);
    store->add({});
    showResults();
    TestResultWidget *entry = list->entries().value(0);
    mouse(entry, QEvent::MouseButtonPress, {100, 30});
    mouse(entry, QEvent::MouseMove, over);
    mouse(entry, QEvent::MouseMove, release);
    mouse(entry, QEvent::MouseButtonRelease, release);
    QTEST(window->getDetailsWindow()->isVisible(), "opens");
}

void ResultsTabTest::aPressThatStopsTheListOpensNothing()
{
    for (int id = 1; id <= 50; ++id)
        store->add({.id = id});
    showResults();
    TestResultWidget *entry = list->entries().value(2);
    mouse(entry, QEvent::MouseButtonPress, {100, 80});
    for (int y = 78; y > 20; y -= 2)
        mouse(entry, QEvent::MouseMove, {100, y});
    mouse(entry, QEvent::MouseButtonRelease, {100, 22});
    QVERIFY(list->verticalScrollBar()->value() > 0);
    for (const bool opens : {false, true}) {
        mouse(entry, QEvent::MouseButtonPress, {100, 22});
        mouse(entry, QEvent::MouseButtonRelease, {100, 22});
        QCOMPARE(window->getDetailsWindow()->isVisible(), opens);
    }
}

void ResultsTabTest::showsTheRightRowEverywhereInALongList()
{
    QSqlDatabase::database().transaction();
    for (int id = 1; id <= 10'000; ++id)
        store->add({.id = id, .test = id});
    QSqlDatabase::database().commit();
    showResults();
    const int height = list->entries().constFirst()->height();
    QVERIFY(height >= 44);
    QCOMPARE(list->widget()->height(), 10'000 * height);
    QVERIFY(list->entries().size() < 30);

    QScrollBar *bar = list->verticalScrollBar();
    const auto check = [this](int position) {
        const int rowHeight = list->entries().constFirst()->height();
        for (int y = 0; y < list->viewport()->height(); y += rowHeight / 3) {
            const int row = (position + y) / rowHeight;
            QCOMPARE(textOf(entryAt(y), "testid"), u"12 / %1"_s.arg(10'000 - row));
        }
    };
    for (const int position : {0, 1, height - 1, height, 10 * height + 7, bar->maximum() - 1,
                               bar->maximum(), 3 * height, 0, bar->maximum() / 2}) {
        bar->setValue(position);
        check(position);
    }
    window->resize(480, 2000); // needs more entries
    QCoreApplication::processEvents();
    check(bar->value());
    bar->setValue(0);
    window->setStyleSheet(u"QLabel { font-size: 30px; }"_s);
    QTRY_VERIFY(list->entries().constFirst()->height() > height);
    check(bar->value());
}

void ResultsTabTest::keepsItsPlaceUntilThereIsANewTest()
{
    for (int id = 1; id <= 50; ++id)
        store->add({.id = id, .test = id});
    showResults();
    QScrollBar *bar = list->verticalScrollBar();
    bar->setValue(700);
    window->showTestTab();
    showResults();
    QCOMPARE(bar->value(), 700);
    store->add({.id = 51, .test = 51});
    showResults();
    QCOMPARE(bar->value(), 0);
    QCOMPARE(textOf(entryAt(1), "testid"), u"12 / 51"_s);
}

void ResultsTabTest::movesWithTheKeyboard()
{
    for (int id = 1; id <= 50; ++id)
        store->add({.id = id, .test = id});
    showResults();
    const auto current = [this] { return textOf(window->focusWidget(), "testid"); };
    const auto press = [this](Qt::Key key) { QTest::keyClick(window->focusWidget(), key); };
    entryAt(1)->setFocus();
    press(Qt::Key_Up);
    QCOMPARE(current(), u"12 / 50"_s);
    press(Qt::Key_Down);
    QCOMPARE(current(), u"12 / 49"_s);
    press(Qt::Key_End);
    QCOMPARE(current(), u"12 / 1"_s);
    QCOMPARE(list->verticalScrollBar()->value(), list->verticalScrollBar()->maximum());
    QCOMPARE(window->focusWidget(), entryAt(list->viewport()->height() - 2));
    // The wheel takes the list elsewhere: so does the focus go.
    list->verticalScrollBar()->setValue(0);
    QVERIFY(window->focusWidget()->y() < list->viewport()->height());
    const int test = current().section(u' ', -1).toInt();
    press(Qt::Key_Up);
    QCOMPARE(current(), u"12 / %1"_s.arg(test + 1));
    press(Qt::Key_Home);
    press(Qt::Key_PageDown);
    QVERIFY(current() != u"12 / 50"_s);
    press(Qt::Key_Return);
    QVERIFY(window->getDetailsWindow()->isVisible());
}

QTEST_MAIN(ResultsTabTest)
#include "resultstab_test.moc"
