#pragma once

#include "app/trackrecorder.h"
#include "app/trackupload.h"
#include "cli/commandline.h"
#include "cli/exitstatus.h"
#include "cli/testprinter.h"
#include "cli/testrunner.h"
#include "track/trackformat.h"
#include "utils/clocktimer.h"

#include <QObject>

#include <memory>
#include <optional>

namespace velometer {

class Output;
class Platform;
class ProgressLine;
class ServerSelection;

/// One call of the program that records a track, with tests on the way when the command line says
/// so, and prints its points. Main thread only. gDB is open.
class TrackRunner : public QObject
{
    Q_OBJECT

public:
    /// Everything but the options is borrowed and outlives the runner; @p tests is how a test on
    /// the way is run.
    TrackRunner(CommandLine commandLine, const TestRunner::Plan &tests, ServerSelection &servers,
                Output &output, ProgressLine &progress, Platform &platform,
                const QString &language);
    ~TrackRunner() override;

    /// Ends in one finished(), perhaps at once.
    void start();
    /// Ends the track, and a running test, now; finished() says @p status.
    void stop(ExitStatus status);

    /// "3.2 km".
    static QString length(double metres);

Q_SIGNALS:
    /// Of the tests on the way the status of the first one that was not done, unless stop() says
    /// another.
    void finished(ExitStatus status);

private:
    void pointKept();
    void runTest();
    void testFinished(ExitStatus testStatus);
    void recordingEnded(bool stored);
    void uploadEnded(const TrackUpload::Outcome &outcome);
    void end(ExitStatus reason);
    void finish();
    QString summary() const;

    const CommandLine options;
    Output &out;
    ProgressLine &progress;
    TestPrinter printer;
    TestRunner runner;
    TrackRecorder recorder;
    TrackUpload upload;
    TrackFormat format;
    ClockTimer duration;
    bool testedBefore = false;
    bool testing = false;
    bool recorded = false; ///< the recording has ended
    bool offered = false;  ///< the track, to the service
    bool isFinished = false;
    ExitStatus status = ExitStatus::Done;
    std::optional<ExitStatus> stopStatus;
};

} // namespace velometer
