#include "ui/trackcontrol.h"

#include "app/resultexport.h"
#include "app/startup.h"
#include "app/testsession.h"
#include "db/databasemanager.h"
#include "ui/map/geomaptab.h"
#include "ui/pages/tracktab.h"

#include <QSaveFile>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

TrackControl::TrackControl(TrackTab &trackPage, GeoMapTab &mapPage, TestSession &testSession,
                           TestStarter starter, QObject *parent)
    : QObject(parent)
    , page(trackPage)
    , map(mapPage)
    , session(testSession)
    , startTest(std::move(starter))
    , recorder(*session.getController().getLocationHelper(),
               *session.getController().getNetWorkInfoHelper(), StartUp::trackLockFile(), nullptr)
    , upload(nullptr)
{
    connect(&page, &TrackTab::startAsked, this, &TrackControl::start);
    connect(&page, &TrackTab::pauseAsked, this, [this](bool paused) {
        recorder.setPaused(paused);
        show();
    });
    connect(&page, &TrackTab::endAsked, this, &TrackControl::end);
    connect(&page, &TrackTab::trackChosen, this, &TrackControl::askAbout);
    connect(&page, &TrackTab::choiceAsked, this, &TrackControl::choiceAsked);
    connect(&recorder, &TrackRecorder::pointKept, this, &TrackControl::show);
    connect(&recorder, &TrackRecorder::testDue, this, &TrackControl::testDue);
    connect(&recorder, &TrackRecorder::ended, this, &TrackControl::ended);
    connect(&recorder, &TrackRecorder::storeWaiting, this, [this] {
        hint = tr("Another program holds the results; points wait for it.");
        show();
    });
    connect(&session.getController(), &TestController::testEnded, this, &TrackControl::testEnded);
    connect(&upload, &TrackUpload::ended, this, [this](const TrackUpload::Outcome &outcome) {
        hint = outcome.problem.isEmpty() ? tr("The service shows the track on your page.")
                                         : outcome.problem;
        show();
    });
    second.setInterval(1s);
    connect(&second, &QTimer::timeout, this, [this] {
        if (page.isVisible()) {
            show();
        }
    });
}

TrackControl::~TrackControl() = default;

void TrackControl::refresh()
{
    list();
    show();
}

void TrackControl::suspend()
{
    second.stop();
    upload.cancel();
    recorder.suspend();
}

void TrackControl::start(bool goesOn)
{
    hint.clear();
    switch (recorder.start(page.plan(), goesOn)) {
    case TrackRecorder::Start::Done: second.start(); break;
    case TrackRecorder::Start::Busy:
        Q_EMIT notice(tr("Tracks"), tr("Another program records a track here; end it first."));
        break;
    case TrackRecorder::Start::StoreFailed:
        Q_EMIT notice(
            tr("ErrorTitle"),
            tr("The results in %1 cannot be written at the moment. Try again when no other "
               "program uses them.")
                .arg(DatabaseManager::databaseFile().toHtmlEscaped()));
        break;
    }
    refresh();
}

void TrackControl::end()
{
    if (recorder.isRecording()) {
        return recorder.stop();
    }
    // One that was interrupted ends where it stands.
    if (auto track = recorder.interrupted()) {
        const auto last = gDB->tracks().lastPoint(track->row);
        gDB->tracks().setEnded(*track, last ? last->time : track->started);
        upload.start(track->row);
    }
    refresh();
}

void TrackControl::ended(bool stored)
{
    second.stop();
    if (stored) {
        upload.start(recorder.getTrack().row);
    } else {
        hint = tr("The end of the track could not be stored; the last track can be gone on with.");
    }
    refresh();
}

void TrackControl::testDue()
{
    if (session.isActive()) {
        return; // the user's own
    }
    testing = startTest();
    if (testing) {
        recorder.testStarted();
        hint.clear();
    } else {
        hint = tr("A test on the way was left out: it would have needed your answer.");
    }
}

void TrackControl::testEnded()
{
    const FinishedTest &test = session.getController().getFinishedTest();
    if (recorder.isRecording() && test.storedId) {
        recorder.testEnded(u"%1/%2"_s.arg(test.seriesId.value_or(0)).arg(test.testId.value_or(0)));
    } else if (std::exchange(testing, false)) {
        recorder.testEnded({});
    }
    testing = false;
}

void TrackControl::show()
{
    const auto before = recorder.isRecording() ? std::nullopt : recorder.interrupted();
    page.setState({.recording = recorder.isRecording(),
                   .paused = recorder.isPaused() && recorder.isRecording(),
                   .canGoOn = before.has_value(),
                   .elapsed = recorder.elapsed(),
                   .track = before ? *before : recorder.getTrack(),
                   .last = recorder.getLastPoint(),
                   .hint = hint});
}

void TrackControl::list()
{
    QList<Track> ended = gDB->tracks().all();
    ended.removeIf([](const Track &track) { return !track.ended; });
    page.setTracks(ended);
}

void TrackControl::askAbout(qulonglong row)
{
    const auto track = gDB->tracks().track(row);
    if (!track) {
        return list();
    }
    Q_EMIT choiceAsked({.title = TrackTab::summary(*track),
                        .options = {tr("Show on the map"), tr("Save CSV, for spreadsheets"),
                                    tr("Save GeoJSON, for maps"),
                                    tr("Save GPX, for navigation devices"), tr("Delete …")},
                        .current = -1,
                        .chosen = [this, row](int index) {
                            switch (index) {
                            case 0: Q_EMIT mapAsked(row); return;
                            case 1: exportTrack(row, TrackFormat::Kind::Csv); return;
                            case 2: exportTrack(row, TrackFormat::Kind::GeoJson); return;
                            case 3: exportTrack(row, TrackFormat::Kind::Gpx); return;
                            default: askToDelete(row); return;
                            }
                        }});
}

void TrackControl::exportTrack(qulonglong row, TrackFormat::Kind kind)
{
    const auto track = gDB->tracks().track(row);
    if (!track) {
        return list();
    }
    const QString suffix = kind == TrackFormat::Kind::Csv       ? u"csv"_s
                           : kind == TrackFormat::Kind::GeoJson ? u"geojson"_s
                                                                : u"gpx"_s;
    QSaveFile file(ResultExport::freeName(u"velometer-track-%1"_s.arg(row), suffix));
    TrackFormat format(kind, *track);
    bool written = file.open(QIODevice::WriteOnly) && file.write(format.begin()) >= 0;
    for (qint64 first = 0; written && first < track->points; first += Tracks::partPoints) {
        const QList<TrackPoint> points = gDB->tracks().points(row, first, Tracks::partPoints);
        for (const TrackPoint &point : points) {
            written = written && file.write(format.point(point)) >= 0;
        }
    }
    written = written && file.write(format.end()) >= 0 && file.commit();
    Q_EMIT notice(
        written ? tr("Export") : tr("ErrorTitle"),
        written ? tr("The track is in:") + "<br>"_L1 + file.fileName().toHtmlEscaped()
                : tr("%1 cannot be written: %2")
                      .arg(file.fileName().toHtmlEscaped(), file.errorString().toHtmlEscaped()));
}

void TrackControl::askToDelete(qulonglong row)
{
    const auto track = gDB->tracks().track(row);
    if (!track) {
        return list();
    }
    Q_EMIT choiceAsked({.title = tr("Delete this track from the device? What the service has of it "
                                    "stays there."),
                        .options = {tr("Delete: %1").arg(TrackTab::summary(*track))},
                        .current = -1,
                        .chosen = [this, row](int) {
                            if (!gDB->tracks().remove(row)) {
                                Q_EMIT notice(
                                    tr("ErrorTitle"),
                                    tr("The results in %1 cannot be written at the moment. Try "
                                       "again when no other program uses them.")
                                        .arg(DatabaseManager::databaseFile().toHtmlEscaped()));
                            }
                            refresh();
                        }});
}

} // namespace velometer
