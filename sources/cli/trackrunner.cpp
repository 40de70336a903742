#include "cli/trackrunner.h"

#include "app/startup.h"
#include "cli/output.h"
#include "cli/progressline.h"
#include "cli/textformat.h"
#include "db/databasemanager.h"

#include <QLocale>

#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

using Format = CommandLine::Format;

constexpr double metresPerKilometre = 1000;

/// The points are what programs read; what tests found stands in the store.
Format formatOfTests(Format wanted)
{
    return wanted == Format::Text ? Format::Text : Format::Gpx;
}

} // namespace

TrackRunner::TrackRunner(CommandLine commandLine, const TestRunner::Plan &tests,
                         ServerSelection &servers, Output &output, ProgressLine &progressLine,
                         Platform &platform, const QString &language)
    : options(std::move(commandLine))
    , out(output)
    , progress(progressLine)
    , printer(formatOfTests(options.format), output, language)
    , runner(tests, servers, printer, progressLine, platform)
    , recorder(*runner.getController().getLocationHelper(),
               *runner.getController().getNetWorkInfoHelper(), StartUp::trackLockFile(), nullptr)
    , upload(nullptr)
    , format(options.format == Format::Csv ? TrackFormat::Kind::Csv : TrackFormat::Kind::Json, {})
{
    connect(&runner, &TestRunner::finished, this, &TrackRunner::testFinished);
    connect(&recorder, &TrackRecorder::pointKept, this, &TrackRunner::pointKept);
    connect(&recorder, &TrackRecorder::testDue, this, &TrackRunner::runTest);
    connect(&recorder, &TrackRecorder::ended, this, &TrackRunner::recordingEnded);
    connect(&upload, &TrackUpload::ended, this, &TrackRunner::uploadEnded);
    connect(&recorder, &TrackRecorder::storeWaiting, this, [this] {
        progress.message(tr("Another program holds the results; points wait for it."));
    });
    connect(&duration, &ClockTimer::timeout, this, [this] { end(ExitStatus::Done); });
}

TrackRunner::~TrackRunner() = default;

void TrackRunner::start()
{
    const auto before = recorder.interrupted();
    if (options.resume && !before) {
        progress.message(tr("No interrupted track waits to be continued."));
        Q_EMIT finished(ExitStatus::Usage);
        return;
    }
    if (before && !options.resume) {
        progress.message(tr("A track was interrupted and ends where it stood; --resume would have "
                            "continued it."));
    }
    out.write(options.format == Format::Csv ? format.begin() : QByteArray());
    switch (recorder.start(options.track, options.resume)) {
    case TrackRecorder::Start::Done: break;
    case TrackRecorder::Start::Busy:
        progress.message(tr("Another program records a track here; end it first."));
        Q_EMIT finished(ExitStatus::Usage);
        return;
    case TrackRecorder::Start::StoreFailed:
        progress.message(tr("The results in %1 cannot be opened or written.")
                             .arg(DatabaseManager::databaseFile()));
        Q_EMIT finished(ExitStatus::Store);
        return;
    }
    if (options.duration > 0s) {
        duration.start(options.duration);
    }
}

void TrackRunner::pointKept()
{
    if (options.format != Format::Text) {
        out.post(format.point(recorder.getLastPoint()));
    }
    if (!testing) {
        const TrackPoint &point = recorder.getLastPoint();
        QStringList parts{TextFormat::duration(recorder.elapsed()),
                          length(recorder.getTrack().metres),
                          point.operatorName.isEmpty() ? point.mode : point.operatorName};
        if (point.rsrp) {
            parts.append(u"RSRP %1 dBm"_s.arg(*point.rsrp));
        } else if (point.signal) {
            parts.append(u"%1 %"_s.arg(*point.signal));
        }
        if (!point.hasPlace()) {
            parts.append(tr("no position"));
        }
        progress.setStatus(parts.join(u" · "_s));
    }
    if (out.isGone() || !out.error().isEmpty()) {
        end(ExitStatus::Done);
    }
}

void TrackRunner::runTest()
{
    if (testing || stopStatus) {
        return;
    }
    testing = true;
    recorder.testStarted();
    if (std::exchange(testedBefore, true)) {
        runner.again();
    } else {
        runner.start();
    }
}

void TrackRunner::testFinished(ExitStatus testStatus)
{
    testing = false;
    if (status == ExitStatus::Done && !stopStatus) {
        status = testStatus;
    }
    const FinishedTest &test = runner.getController().getFinishedTest();
    recorder.testEnded(test.storedId
                           ? u"%1/%2"_s.arg(test.seriesId.value_or(0)).arg(test.testId.value_or(0))
                           : QString());
    finish();
}

void TrackRunner::stop(ExitStatus reason)
{
    end(reason);
}

void TrackRunner::end(ExitStatus reason)
{
    if (stopStatus) {
        return;
    }
    stopStatus = reason;
    duration.stop();
    if (testing) {
        runner.stop(reason == ExitStatus::Done ? ExitStatus::Interrupted : reason);
    }
    if (recorder.isRecording()) {
        recorder.stop();
    } else {
        recorded = true;
        finish();
    }
}

void TrackRunner::recordingEnded(bool stored)
{
    recorded = true;
    // It ends by itself when it is full.
    stopStatus = stopStatus.value_or(ExitStatus::Done);
    progress.clear();
    if (!stored) {
        status = ExitStatus::Store;
        progress.message(
            tr("The end of the track could not be stored in %1; --resume goes on with it.")
                .arg(DatabaseManager::databaseFile()));
    } else if (options.format == Format::Text) {
        out.line(summary());
    }
    finish();
}

void TrackRunner::uploadEnded(const TrackUpload::Outcome &outcome)
{
    progress.clear();
    // It is in the store: that it waits there is worth a word and no failure.
    if (!outcome.problem.isEmpty()) {
        progress.message(outcome.problem);
        progress.message(tr("tracks --send tries it again."));
    }
    finish();
}

QString TrackRunner::summary() const
{
    const Track track = recorder.getTrack();
    return tr("Track %1: %2 in %3, %4 points, %5 tests")
        .arg(QString::number(track.row), length(track.metres),
             TextFormat::duration(recorder.elapsed()), QString::number(track.points),
             QString::number(track.tests));
}

QString TrackRunner::length(double metres)
{
    return metres < metresPerKilometre
               ? u"%1 m"_s.arg(metres, 0, 'f', 0)
               : u"%1 km"_s.arg(QLocale().toString(metres / metresPerKilometre, 'f', 1));
}

void TrackRunner::finish()
{
    if (!recorded || testing || upload.isActive() || isFinished) {
        return;
    }
    if (status != ExitStatus::Store && !options.isLocal && !std::exchange(offered, true)) {
        progress.setStatus(tr("Bringing the track to the service"));
        return upload.start(recorder.getTrack().row);
    }
    isFinished = true;
    const ExitStatus reason = stopStatus.value_or(ExitStatus::Done);
    Q_EMIT finished(reason == ExitStatus::Done ? status : reason);
}

} // namespace velometer
