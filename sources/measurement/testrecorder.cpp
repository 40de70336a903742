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
#include "db/transaction.h"
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
    document = {};
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

void TestRecorder::makeReport()
{
    if (!completed) {
        results->setTimestamp(Utils::getTimeInMs());
    }
    value = results->finished(Surroundings::of(context));
    document = *TestReport::document(value);
    results->setSizeOfXmInBytes(document.xml.toUtf8().size());
}

bool TestRecorder::store()
{
    const qulonglong row = gDB->storeTest(value, &document);
    stored = row > 0;
    if (stored) {
        results->setMyTestId(static_cast<qlonglong>(row));
        value.storedId = static_cast<qint64>(row);
    }
    return stored;
}

bool TestRecorder::keepForLater() const
{
    return failedOnLock() && DatabaseManager::keepForLater(value, document);
}

void TestRecorder::conclude(const ReportDelivery::Outcome &reports)
{
    if (!value.timestamp) {
        value = Surroundings::of(context);
    }
    value.report = {reports.delivered, reports.queueId, reports.resent};
}

} // namespace velometer
