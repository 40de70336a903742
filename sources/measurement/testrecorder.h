#pragma once

#include "data/databudget.h"
#include "data/xmldata.h"
#include "figures/finishedtest.h"
#include "measurement/reportdelivery.h"

#include <QObject>
#include <QString>

namespace velometer {

class TestContext;
class TestResultLog;
class TestResults;

/// The record of one test from its first entry to the store: made when the ids are drawn, filled
/// while the test runs, and read once as the plain value that report and store are made of. Main
/// thread only; gDB is open.
class TestRecorder : public QObject
{
    Q_OBJECT

public:
    /// @p context is borrowed and outlives this.
    TestRecorder(TestContext &context, QObject *parent);

    /// Forgets the test before. Its record may be the parent of what has just signalled its end.
    void clear();
    /// Makes the record of the test that the context tells of.
    void begin(DataBudget budget);

    /// Null before begin(); lives until clear().
    TestResults *record() const { return results; }
    /// Empty before the first report is made.
    const FinishedTest &finished() const { return value; }

    /// A log entry of this moment; the record owns it.
    TestResultLog *newEntry(const QString &name);
    /// Adds the entry of a test that could not begin.
    void addInitFailed();

    /// The last phase has run: the record has all that it will get.
    void complete();
    bool isComplete() const { return completed; }
    /// Makes the report of what there is; stamps a record that is not complete.
    void makeReport();
    /// The report that was made last; it has a row of the queue once it is stored.
    const XMLData &report() const { return document; }

    /// Stores the test, and its report in the queue, with one transaction. False, and nothing is
    /// stored, when that failed.
    bool store();
    bool isStored() const { return stored; }
    /// The end, for who shows the test: also of one that did not get as far as a report.
    void conclude(const ReportDelivery::Outcome &reports);

private:
    TestContext &context;
    TestResults *results = nullptr; ///< a child
    FinishedTest value;
    XMLData document;
    bool completed = false;
    bool stored = false;
};

} // namespace velometer
