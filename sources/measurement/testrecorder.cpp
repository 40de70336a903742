#include "measurement/testrecorder.h"

#include "context/locationhelper.h"
#include "context/networkinfohelper.h"
#include "data/surroundings.h"
#include "data/testcontext.h"
#include "data/testreport.h"
#include "data/testresultlog.h"
#include "data/testresults.h"
#include "data/testserver.h"
#include "db/databasemanager.h"
#include "utils/utils.h"

using namespace Qt::StringLiterals;

namespace velometer {

TestRecorder::TestRecorder(TestContext &testContext, QObject *parent)
    : QObject(parent)
    , context(testContext)
{}

void TestRecorder::clear()
{
    if (results) {
        results->deleteLater();
    }
    results = nullptr;
    value = {};
    completed = stored = false;
}

void TestRecorder::begin(DataBudget budget)
{
    results = new TestResults(context.getSeriesId(), context.getTestId(), this);
    results->setDataBudget(budget);
    results->setUserLocation(context.getUserLocation());
    results->setTestServer(context.getTestServer()->getHostname());
    results->setConnectionType(context.getNetWorkInfoHelper()->getNetworkmode());
}

TestResultLog *TestRecorder::newEntry(const QString &name)
{
    return new TestResultLog(context.getNetWorkInfoHelper(), context.getLocationHelper(), name,
                             &context, results);
}

void TestRecorder::addInitFailed()
{
    TestResultLog *entry = newEntry(u"InitFailed"_s);
    entry->fillInGPSAndNetworkData();
    results->addTestResultLog(entry);
}

void TestRecorder::complete()
{
    results->setTimestamp(Utils::getTimeInMs());
    results->setAllLocations(context.getLocationHelper()->getAllLocations());
    results->calculateAdditionalValues();
    completed = true;
}

QString TestRecorder::report()
{
    if (!completed) {
        results->setTimestamp(Utils::getTimeInMs());
    }
    value = results->finished(Surroundings::of(context));
    const QString document = TestReport::document(value)->xml;
    results->setSizeOfXmInBytes(document.toUtf8().size());
    return document;
}

bool TestRecorder::store(const ReportDelivery::Outcome &reports)
{
    stored = true;
    note(reports);
    const qulonglong row = gDB->storeTest(value);
    results->setMyTestId(static_cast<qlonglong>(row));
    if (row > 0) {
        value.storedId = static_cast<qint64>(row);
    }
    return row > 0;
}

void TestRecorder::conclude(const ReportDelivery::Outcome &reports)
{
    if (!value.timestamp) {
        value = Surroundings::of(context);
    }
    note(reports);
}

void TestRecorder::note(const ReportDelivery::Outcome &reports)
{
    value.report = {reports.delivered, reports.queueId, reports.resent};
}

} // namespace velometer
