#pragma once

#include "app/trackrecorder.h"
#include "ui/frame/choice.h"
#include "ui/frame/tabbase.h"

#include <QList>

#include <memory>

class QPushButton;

namespace velometer {

namespace Ui {
class TrackTab;
}

/// The page that records tracks and lists them. It only shows and asks; whoever listens does it.
class TrackTab : public TabBase
{
    Q_OBJECT

public:
    /// @p parent owns the page.
    explicit TrackTab(QWidget *parent);
    ~TrackTab() override;

    /// What the recorder does, with @p hint below it, in the user's language.
    struct State
    {
        bool recording = false;
        bool paused = false;
        bool canGoOn = false; ///< a track was interrupted
        std::chrono::milliseconds elapsed{0};
        Track track;
        TrackPoint last;
        QString hint;
    };
    void setState(const State &now);
    /// The newest first; none that is being recorded.
    void setTracks(const QList<Track> &all);

    /// As the chips say.
    TrackRecorder::Plan plan() const;

    /// "3.2 km", in the user's language.
    static QString length(double metres);
    /// When it began, how long it is, and how many points and tests it has.
    static QString summary(const Track &track);

public Q_SLOTS:
    void on_buttonBack_clicked() { Q_EMIT backClicked(); }
    void on_buttonRecord_clicked();
    void on_buttonEnd_clicked() { Q_EMIT endAsked(); }

Q_SIGNALS:
    /// @p goesOn: with the track that was interrupted.
    void startAsked(bool goesOn);
    void pauseAsked(bool paused);
    void endAsked();
    void trackChosen(qulonglong row);
    void choiceAsked(const Choice &choice);

protected:
    void retranslate() override;
    void dress() override;

private:
    void showState();
    void showChips();
    void showList();
    void askInterval();
    void askTests();

    const std::unique_ptr<Ui::TrackTab> ui;
    QPushButton *intervalChip = nullptr;
    QPushButton *testsChip = nullptr;
    int interval = 0; ///< index of what is offered
    int tests = 0;
    State state;
    QList<Track> tracks;
};

} // namespace velometer
