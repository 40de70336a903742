#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace velometer {

class MeasurementContext;
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

    /// Silences the step under way.
    void cancel();
    /// The step under way has ended.
    void settle() { cancelStep = nullptr; }

    /// Shows the observer server, ids and position as they are now.
    void showInformation() const;
    /// Shows the observer what the test that has just been stored has moved.
    void showTransferred() const;

private:
    void mark(const QString &name);
    void showWaiting() const;

    MeasurementContext &context;
    TestRecorder &recorder;
    std::function<void()> cancelStep;
};

} // namespace velometer
