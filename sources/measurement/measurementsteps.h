#pragma once

#include "data/delayplan.h"

#include <QObject>
#include <QString>

#include <functional>

namespace velometer {

class MeasurementContext;
class Result;
class TestRecorder;

/// The measurements of a test and the markers before and after each of them: starts them on the
/// record, and tells the observer what they have found. A marker ends in the context's
/// testResultLogReady(), a measurement in its measurementDone(). One step at a time. Main thread
/// only.
class MeasurementSteps : public QObject
{
    Q_OBJECT

public:
    /// Both are borrowed and outlive this; the recorder has a record while a step runs.
    MeasurementSteps(MeasurementContext &context, TestRecorder &recorder, QObject *parent);

    void markDownloadStart();
    void runDownload(int seconds);
    void markDownloadEnd();
    void markUploadStart();
    void runUpload(int seconds);
    void markUploadEnd();
    void markRttStart();
    void runRtt();
    void markRttEnd();

    // What the plan asks for beyond the usual figures; all of it is known by then.
    void runIdleDelays();
    void runExtraDownload();
    void runExtraUpload();
    /// Whether the data budget leaves anything for load of its own.
    bool mayLoadMore() const;
    /// What runIdleDelays() has come to, with the connects of the usual round trip before it.
    void takeIdleDelays(const Result &result);

    /// Silences the step under way.
    void cancel();
    /// Of the tests to come.
    void setPlan(const DelayPlan &delayPlan) { plan = delayPlan; }
    /// The step under way has ended.
    void settle() { cancelStep = nullptr; }

    /// Shows the observer server, ids and position as they are now.
    void showInformation() const;
    /// Shows the observer what the test that has just been stored has moved.
    void showTransferred() const;

private:
    void mark(const QString &name);
    qint64 movedBytes() const;
    void showWaiting() const;

    MeasurementContext &context;
    TestRecorder &recorder;
    std::function<void()> cancelStep;
    DelayPlan plan;
};

} // namespace velometer
