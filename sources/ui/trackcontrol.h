#pragma once

#include "app/trackrecorder.h"
#include "app/trackupload.h"
#include "track/trackformat.h"
#include "ui/frame/choice.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

namespace velometer {

class GeoMapTab;
class TestSession;
class TrackTab;

/// Records tracks for the page that shows them, runs the tests on their way, and does with stored
/// ones what the user asks for. Main thread only. gDB is open whenever a page asks.
class TrackControl : public QObject
{
    Q_OBJECT

public:
    /// Runs a test if it may be run now without a question; says whether it was started.
    using TestStarter = std::function<bool()>;

    /// All are borrowed and outlive this.
    TrackControl(TrackTab &page, GeoMapTab &map, TestSession &session, TestStarter starter,
                 QObject *parent);
    ~TrackControl() override;

    bool isRecording() const { return recorder.isRecording(); }
    /// The page is about to be shown.
    void refresh();
    /// The program ends; what there is is stored and can be gone on with.
    void suspend();

Q_SIGNALS:
    /// A question for the user, and a word to him in rich text.
    void choiceAsked(const Choice &choice);
    void notice(const QString &title, const QString &text);
    /// The map shows a track.
    void mapAsked(qulonglong row);

private:
    void start(bool goesOn);
    void end();
    void ended(bool stored);
    void testDue();
    void testEnded();
    void show();
    void list();
    void askAbout(qulonglong row);
    void exportTrack(qulonglong row, TrackFormat::Kind kind);
    void askToDelete(qulonglong row);

    TrackTab &page;
    GeoMapTab &map;
    TestSession &session;
    const TestStarter startTest;
    TrackRecorder recorder;
    TrackUpload upload;
    QTimer second; ///< the elapsed time, while the page is seen
    bool testing = false;
    QString hint;
};

} // namespace velometer
