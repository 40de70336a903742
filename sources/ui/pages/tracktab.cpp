#include "ui/pages/tracktab.h"

#include "app/connectionkind.h"
#include "ui/frame/chipbar.h"
#include "ui/frame/tabplace.h"
#include "ui/scrolling/qskineticscroller.h"
#include "ui/theme/theme.h"
#include "utils/translations.h"

#include "ui_tracktab.h"

#include <QDateTime>
#include <QLocale>
#include <QPushButton>

#include <array>
#include <iterator>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace velometer {

namespace {

constexpr double metresPerKilometre = 1000;

struct Interval
{
    std::chrono::seconds time;
    double metres;
};

constexpr std::array intervals{Interval{1s, 0}, Interval{5s, 0}, Interval{1s, 10},
                               Interval{1s, 100}};
constexpr std::array testIntervals{Interval{0s, 0}, Interval{5min, 0}, Interval{15min, 0},
                                   Interval{0s, 500}, Interval{0s, 2000}};

QString clockText(std::chrono::milliseconds time)
{
    constexpr int inHour = 3600;
    constexpr int inMinute = 60;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    return u"%1:%2:%3"_s.arg(seconds / inHour)
        .arg(seconds / inMinute % inMinute, 2, 10, QChar(u'0'))
        .arg(seconds % inMinute, 2, 10, QChar(u'0'));
}

/// "each 5 s", "each 10 m", "each 15 min".
QString everyText(const Interval &interval)
{
    if (interval.metres > 0) {
        return TrackTab::tr("each %1").arg(TrackTab::length(interval.metres));
    }
    const auto seconds = interval.time.count();
    return seconds < 60 ? TrackTab::tr("each %1 s").arg(seconds)
                        : TrackTab::tr("each %1 min").arg(seconds / 60);
}

/// A mode as tracks have it, for people.
QString modeText(const QString &mode)
{
    switch (ConnectionKinds::ofMode(mode)) {
    case ConnectionKind::Gsm: return u"GSM"_s;
    case ConnectionKind::Umts: return u"UMTS"_s;
    case ConnectionKind::Lte: return u"LTE"_s;
    case ConnectionKind::Nr: return u"5G"_s;
    case ConnectionKind::Wlan: return u"WLAN"_s;
    case ConnectionKind::Other: break;
    }
    return mode == "Unknown"_L1 ? QString() : mode.chopped(mode.endsWith("Mode"_L1) ? 4 : 0);
}

QString testsText(const Interval &interval)
{
    return interval.metres <= 0 && interval.time == 0s ? TrackTab::tr("none") : everyText(interval);
}

} // namespace

TrackTab::TrackTab(QWidget *parent)
    : TabBase(parent)
    , ui(std::make_unique<Ui::TrackTab>())
{
    ui->setupUi(this);
    fillFrame();
    intervalChip = ui->chips->addChip(u"chipInterval"_s);
    testsChip = ui->chips->addChip(u"chipTests"_s);
    connect(intervalChip, &QPushButton::clicked, this, &TrackTab::askInterval);
    connect(testsChip, &QPushButton::clicked, this, &TrackTab::askTests);
    auto *scroller = new QsKineticScroller(this);
    scroller->enableKineticScrollFor(ui->scrollArea);
    dress();
    retranslate();
}

TrackTab::~TrackTab() = default;

void TrackTab::retranslate()
{
    ui->retranslateUi(this);
    showChips();
    showState();
    showList();
}

void TrackTab::dress()
{
    ui->buttonBack->setIcon(Theme::icon(u"back"_s, Theme::colours().text));
}

TrackRecorder::Plan TrackTab::plan() const
{
    const Interval &points = intervals.at(static_cast<size_t>(interval));
    const Interval &test = testIntervals.at(static_cast<size_t>(tests));
    return {points.time, points.metres, test.time, test.metres};
}

QString TrackTab::length(double metres)
{
    const QLocale locale(Translations::language());
    return metres < metresPerKilometre
               ? tr("%1 m").arg(locale.toString(metres, 'f', 0))
               : tr("%1 km").arg(locale.toString(metres / metresPerKilometre, 'f', 1));
}

QString TrackTab::summary(const Track &track)
{
    const QLocale locale(Translations::language());
    QStringList parts{QDateTime::fromMSecsSinceEpoch(track.started).toString(u"yyyy-MM-dd HH:mm"_s),
                      length(track.metres),
                      tr("%n point(s)", nullptr, static_cast<int>(track.points))};
    if (track.tests > 0) {
        parts.append(tr("%n test(s)", nullptr, static_cast<int>(track.tests)));
    }
    return parts.join(u" · "_s);
}

void TrackTab::setState(const State &now)
{
    state = now;
    showState();
    showChips();
}

void TrackTab::setTracks(const QList<Track> &all)
{
    tracks = all;
    showList();
}

void TrackTab::on_buttonRecord_clicked()
{
    if (state.recording) {
        Q_EMIT pauseAsked(!state.paused);
    } else {
        Q_EMIT startAsked(state.canGoOn);
    }
}

void TrackTab::showState()
{
    ui->buttonRecord->setText(
        !state.recording ? (state.canGoOn ? tr("Go on with the last track") : tr("Record a track"))
        : state.paused   ? tr("Go on")
                         : tr("Pause"));
    ui->buttonEnd->setVisible(state.recording || state.canGoOn);
    ui->labelHint->setText(!state.hint.isEmpty() ? state.hint
                           : state.recording
                               ? tr("It goes on while you use other pages and other programs.")
                               : tr("Records where you are and what your network is there, without "
                                    "any traffic."));
    if (!state.recording) {
        ui->labelElapsed->setText(state.canGoOn ? tr("A track was interrupted.")
                                                : tr("Nothing is being recorded."));
        ui->labelNow->setText(state.canGoOn ? summary(state.track) : QString());
        ui->labelNow->setVisible(state.canGoOn);
        return;
    }
    QStringList parts{clockText(state.elapsed), length(state.track.metres)};
    if (state.paused) {
        parts.append(tr("paused"));
    }
    ui->labelElapsed->setText(parts.join(u" · "_s));
    const TrackPoint &last = state.last;
    QStringList now{last.operatorName, modeText(last.mode)};
    if (last.cell) {
        now.append(tr("cell %1").arg(*last.cell));
    }
    if (last.rsrp) {
        now.append(u"RSRP %1 dBm"_s.arg(*last.rsrp));
    } else if (last.signal) {
        now.append(u"%1 %"_s.arg(*last.signal));
    }
    now.append(last.hasPlace() ? tr("%n point(s)", nullptr, static_cast<int>(state.track.points))
                               : tr("no position"));
    if (state.track.tests > 0) {
        now.append(tr("%n test(s)", nullptr, static_cast<int>(state.track.tests)));
    }
    now.removeAll(QString());
    ui->labelNow->setText(now.join(u" · "_s));
    ui->labelNow->show();
}

void TrackTab::showChips()
{
    const auto show = [this](QPushButton *chip, const QString &text) {
        ChipBar::setChip(chip, text + ChipBar::choiceMark, false);
        chip->setEnabled(!state.recording);
        chip->setAccessibleDescription(
            state.recording ? tr("Cannot be changed while a track is recorded.") : QString());
    };
    show(intervalChip, tr("Point: %1").arg(everyText(intervals.at(static_cast<size_t>(interval)))));
    show(testsChip, tr("Tests: %1").arg(testsText(testIntervals.at(static_cast<size_t>(tests)))));
}

void TrackTab::askInterval()
{
    Choice choice{.title = tr("A point of the track"),
                  .options = {},
                  .current = interval,
                  .chosen = [this](int index) {
                      interval = index;
                      showChips();
                  }};
    for (const Interval &each : intervals) {
        choice.options.append(everyText(each));
    }
    Q_EMIT choiceAsked(choice);
}

void TrackTab::askTests()
{
    Choice choice{.title = tr("Tests on the way"),
                  .options = {},
                  .current = tests,
                  .chosen = [this](int index) {
                      tests = index;
                      showChips();
                  }};
    for (const Interval &each : testIntervals) {
        choice.options.append(testsText(each));
    }
    Q_EMIT choiceAsked(choice);
}

void TrackTab::showList()
{
    // Whoever walks by keys stays where he was: a page whose focus is deleted takes no more keys.
    const QWidget *here = ui->listCard->focusWidget();
    const QString focused = here ? here->objectName() : QString();
    while (QLayoutItem *item = ui->listLayout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    if (here) {
        ui->buttonBack->setFocus();
    }
    ui->listCard->setVisible(!tracks.isEmpty());
    QWidget *last = ui->buttonEnd;
    for (const Track &track : std::as_const(tracks)) {
        const QStringList parts = summary(track).split(u" · "_s);
        auto *row = new QPushButton(
            parts.mid(0, 2).join(u" · "_s) + u'\n' + parts.mid(2).join(u" · "_s), ui->listCard);
        // A button does not wrap: rather than the page, its text is cut.
        row->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        row->setObjectName(u"track%1"_s.arg(track.row));
        row->setProperty("role", u"option"_s);
        row->setAutoDefault(true);
        connect(row, &QPushButton::clicked, this,
                [this, id = track.row] { Q_EMIT trackChosen(id); });
        ui->listLayout->addWidget(row);
        TabPlace::putBehind(std::exchange(last, row), row);
        if (row->objectName() == focused) {
            row->setFocus();
        }
    }
}

} // namespace velometer
