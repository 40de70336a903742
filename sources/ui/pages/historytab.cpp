#include "ui/pages/historytab.h"

#include "db/databasemanager.h"
#include "ui/frame/chipbar.h"
#include "ui/pages/filterchoices.h"
#include "ui/plot/historyplot.h"
#include "ui/plot/throughputplot.h"
#include "ui/scrolling/qskineticscroller.h"
#include "ui/theme/theme.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include "ui_historytab.h"

#include <QKeyEvent>
#include <QLocale>

#include <chrono>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr std::chrono::milliseconds historyFollowInterval{2000};

constexpr ResultFilter::Period shownPeriods[] = {
    ResultFilter::Period::Day, ResultFilter::Period::Week, ResultFilter::Period::Month,
    ResultFilter::Period::Year, ResultFilter::Period::All};

constexpr History::Figure shownFigures[] = {History::Figure::Download, History::Figure::Upload,
                                            History::Figure::Rtt};

/// With three digits, or all that are before the point.
QString rateText(const QLocale &locale, double value)
{
    constexpr double tens = 10;
    constexpr double hundreds = 100;
    return locale.toString(value, 'f', value < tens ? 2 : value < hundreds ? 1 : 0);
}

} // namespace

HistoryTab::HistoryTab(QWidget *parent)
    : TabBase(parent)
    , ui(std::make_unique<Ui::HistoryTab>())
{
    ui->setupUi(this);
    fillFrame();
    for (const ResultFilter::Period period : shownPeriods) {
        QPushButton *chip = ui->chips->addChip(u"chipPeriod%1"_s.arg(periodChips.size()));
        connect(chip, &QPushButton::clicked, this, [this, period] {
            filter.period = period;
            draw();
        });
        periodChips.append(chip);
    }
    connectionChip = ui->chips->addChip(u"chipConnection"_s);
    connect(connectionChip, &QPushButton::clicked, this, [this] {
        Q_EMIT choiceAsked(FilterChoices::connection(filter, [this](const ResultFilter &changed) {
            filter = changed;
            draw();
        }));
    });
    for (qsizetype index = 0; index < std::ssize(shownFigures); ++index) {
        auto *plot = new HistoryPlot(ui->scrollAreaWidgetContents);
        ui->plotsLayout->addWidget(plot);
        plots.append(plot);
    }
    auto *scroller = new QsKineticScroller(this);
    scroller->enableKineticScrollFor(ui->scrollArea);
    filter.period = ResultFilter::Period::Month;
    followTimer.setInterval(historyFollowInterval);
    connect(&followTimer, &QTimer::timeout, this, [this] {
        if (gDB->getResultsState() != listed) {
            read();
        }
    });
    dress();
    draw();
}

HistoryTab::~HistoryTab() = default;

void HistoryTab::retranslate()
{
    ui->retranslateUi(this);
    draw();
}

void HistoryTab::dress()
{
    ui->buttonBack->setIcon(Theme::icon(u"back"_s, Theme::colours().text));
}

void HistoryTab::showEvent(QShowEvent *event)
{
    TabBase::showEvent(event);
    read();
    followTimer.start();
}

void HistoryTab::hideEvent(QHideEvent *event)
{
    TabBase::hideEvent(event);
    followTimer.stop();
}

void HistoryTab::read()
{
    listed = gDB->getResultsState();
    points = gDB->getHistory();
    draw();
}

bool HistoryTab::takes(const HistoryPoint &point) const
{
    return filter.kind ? ConnectionKinds::of(point.connectionType) == *filter.kind
                       : !filter.mobileOnly || Utils::connectionTypeIsMobile(point.connectionType);
}

void HistoryTab::showChips()
{
    for (qsizetype index = 0; index < periodChips.size(); ++index) {
        const ResultFilter::Period period = shownPeriods[index];
        ChipBar::setChip(periodChips.at(index), FilterChoices::periodText(period),
                         period == filter.period);
    }
    ChipBar::setChip(connectionChip, FilterChoices::connectionText(filter) + ChipBar::choiceMark,
                     filter.kind || filter.mobileOnly);
}

void HistoryTab::draw()
{
    showChips();
    const auto range = History::Range::of(filter.period, points, Utils::getTimeInMs());
    const QLocale locale(Translations::language());
    QList<FigureCards::Figure> figures;
    const auto isTaken = [this](const HistoryPoint &point) { return takes(point); };
    int most = 0;
    // One unit for both rates.
    const auto largest = History::summary(points, History::Figure::Download, range, isTaken);
    const ThroughputPlot::Axis axis = ThroughputPlot::axisFor(largest.median.value_or(0));
    for (const History::Figure figure : shownFigures) {
        const auto summary = History::summary(points, figure, range, isTaken);
        most = std::max(most, summary.count);
        const bool isRtt = figure == History::Figure::Rtt;
        const auto text = [&](double value) {
            return isRtt ? locale.toString(value, 'f', 0) : rateText(locale, value / axis.scale);
        };
        figures.append({static_cast<FigureCards::Kind>(figure),
                        summary.median ? text(*summary.median) : tr("na"),
                        !summary.median ? QString()
                        : isRtt         ? u"ms"_s
                                        : axis.unit,
                        summary.median ? tr("%1 to %2").arg(text(summary.low), text(summary.high))
                                       : QString()});
    }
    ui->figures->setFigures(figures);

    // What the filter leaves out has no curve; of several kinds each has its own.
    std::vector<HistoryPoint> taken;
    std::copy_if(points.begin(), points.end(), std::back_inserter(taken), isTaken);
    const QString titles[] = {tr("Download"), tr("Upload"), tr("RTT")};
    for (qsizetype index = 0; index < plots.size(); ++index) {
        const History::Figure figure = shownFigures[index];
        QList<HistoryPlot::Curve> curves;
        for (const ConnectionKind kind : ConnectionKinds::all) {
            auto marks = History::marks(taken, figure, kind, range, HistoryPlot::parts);
            if (!marks.empty()) {
                curves.append({kind, std::move(marks)});
            }
        }
        plots.at(index)->setCurves(figure, titles[index], range, curves);
        plots.at(index)->setVisible(most > 0);
    }
    ui->labelEmpty->setText(points.empty()
                                ? tr("No tests yet.") + u'\n' + tr("Start one on the test page.")
                                : tr("No test in this time.") + u'\n' +
                                      tr("Choose a longer one, or all connections."));
    ui->labelEmpty->setVisible(most == 0);
    ui->figures->setVisible(most > 0);
    ui->labelCount->setText(
        tr("Medians of %n test(s), and what a tenth is below and a tenth above", nullptr, most));
    ui->labelCount->setVisible(most > 0);
}

} // namespace velometer
