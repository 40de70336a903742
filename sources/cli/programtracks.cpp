#include "app/startup.h"
#include "app/trackupload.h"
#include "cli/output.h"
#include "cli/program.h"
#include "cli/trackcommands.h"
#include "cli/trackrunner.h"
#include "db/databasemanager.h"
#include "platform/platform.h"

#include <QLockFile>

namespace velometer {

void Program::recordTrack()
{
    if (!prepareTests()) {
        return;
    }
    TestRunner::Plan plan = testPlan();
    // The track goes on meanwhile; where it is, a test finds out on the way.
    plan.waitPosition = std::chrono::seconds(0);
    tracker =
        std::make_unique<TrackRunner>(options, plan, *servers, out, progress, *platform, language);
    connect(tracker.get(), &TrackRunner::finished, this, &Program::end);
    tracker->start();
}

void Program::listTracks()
{
    if (!openStoreIfThere()) {
        return end(storeFailure());
    }
    if (!gDB->isOpen() || !options.send) {
        return printTracks(ExitStatus::Done);
    }
    upload = std::make_unique<TrackUpload>(nullptr);
    connect(upload.get(), &TrackUpload::ended, this, [this](const TrackUpload::Outcome &outcome) {
        if (outcome.problem.isEmpty()) {
            return printTracks(ExitStatus::Done);
        }
        printTracks(refuse(outcome.answered ? ExitStatus::Broken : ExitStatus::Unreachable,
                           outcome.problem));
    });
    upload->start();
}

void Program::printTracks(ExitStatus status)
{
    if (gDB->isOpen()) {
        TrackCommands::list(options.format, out);
    }
    end(status);
}

ExitStatus Program::exportTrack()
{
    if (!openStoreIfThere()) {
        return storeFailure();
    }
    return gDB->isOpen() && TrackCommands::print(options.trackRow, options.format, out)
               ? ExitStatus::Done
               : refuse(ExitStatus::Usage, TrackCommands::missing(options.trackRow));
}

ExitStatus Program::deleteTrack()
{
    if (!openStoreIfThere()) {
        return storeFailure();
    }
    const auto track = gDB->isOpen() ? gDB->tracks().track(options.trackRow) : std::nullopt;
    if (!track) {
        return refuse(ExitStatus::Usage, TrackCommands::missing(options.trackRow));
    }
    if (!options.yes) {
        return refuse(ExitStatus::Usage,
                      tr("This would delete track %1 with %2 points; say --yes to do it.")
                          .arg(QString::number(track->row), QString::number(track->points)));
    }
    // Whoever records would go on with a track that is not there.
    QLockFile recording(StartUp::trackLockFile());
    recording.setStaleLockTime(0);
    if (!track->ended && !recording.tryLock(0) && recording.error() == QLockFile::LockFailedError) {
        return refuse(ExitStatus::Usage,
                      tr("Track %1 is being recorded; end it first.").arg(track->row));
    }
    if (!gDB->tracks().remove(track->row)) {
        return storeFailure();
    }
    out.line(tr("Deleted track %1 with %2 points.")
                 .arg(QString::number(track->row), QString::number(track->points)));
    return ExitStatus::Done;
}

} // namespace velometer
