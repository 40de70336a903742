#include "ui/pages/testresultwidget.h"

#include "app/resultfilter.h"
#include "db/dbtestresults.h"
#include "ui/frame/spokenrole.h"
#include "ui/theme/connectionsign.h"
#include "ui/theme/theme.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include "ui_testresultwidget.h"

#include <QDateTime>
#include <QEvent>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// More of a stored text cannot be seen and would only be slow to draw.
constexpr qsizetype rowTextLength = 120;
constexpr double cornerRadius = 14;
constexpr double givenCornerRadius = 10;

} // namespace

TestResultWidget::TestResultWidget(QWidget *parent)
    : ListEntry(parent)
    , ui(std::make_unique<Ui::TestResultWidget>())
{
    ui->setupUi(this);
    SpokenRole::give(this, QAccessible::ListItem);
    ui->testserver->setText(Deployment::current().swisscom.host);
    // Only pictures: pressing one presses the entry.
    for (QPushButton *button :
         {ui->buttonConnectiontype, ui->pushButton, ui->pushButton_2, ui->pushButton_3}) {
        button->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    showIcons();
    connect(this, &ListEntry::tapped, this, &TestResultWidget::widgetSelected);
}

TestResultWidget::~TestResultWidget() = default;

QSize TestResultWidget::sizeHint() const
{
    ensurePolished();
    return {0, ListEntry::sizeHint().height()};
}

void TestResultWidget::showIcons()
{
    const Theme::Colours &colours = Theme::paper();
    ui->pushButton->setIcon(Theme::icon(u"download"_s, colours.download));
    ui->pushButton_2->setIcon(Theme::icon(u"upload"_s, colours.upload));
    ui->pushButton_3->setIcon(Theme::icon(u"rtt"_s, colours.rtt));
}

void TestResultWidget::setDBTestResults(const DBTestResults *results)
{
    dbTestResults = results;
    fill();
}

void TestResultWidget::setPlace(const Place &where)
{
    if (place == where) {
        return;
    }
    place = where;
    ui->labelDate->setVisible(place.dated);
    update();
}

void TestResultWidget::setMark(Mark chosen)
{
    if (mark == chosen) {
        return;
    }
    mark = chosen;
    fill();
    update();
}

void TestResultWidget::setColumns(const ResultFigures::Columns &wanted)
{
    if (columns == wanted) {
        return;
    }
    columns = wanted;
    ui->rowLayout->addWidget(ui->figures, columns.isNarrow ? 2 : 1, columns.isNarrow ? 0 : 1, 1,
                             columns.isNarrow ? 2 : 1);
    const QString size = u"font-size: %1px"_s.arg(columns.pixels);
    int column = 0;
    for (QLabel *label : {static_cast<QLabel *>(ui->download), static_cast<QLabel *>(ui->upload),
                          static_cast<QLabel *>(ui->rtt)}) {
        label->setStyleSheet(size);
        ui->figureLayout->setStretch(column, columns.widths.at(static_cast<size_t>(column)));
        ++column;
    }
}

void TestResultWidget::showSign()
{
    const Theme::Colours &colours = Theme::paper();
    switch (mark) {
    case Mark::Selected:
        return ui->buttonConnectiontype->setIcon(Theme::icon(u"selected"_s, colours.accent));
    case Mark::Unselected:
        return ui->buttonConnectiontype->setIcon(Theme::icon(u"unselected"_s, colours.quiet));
    case Mark::None: break;
    }
    if (Theme::isGiven()) {
        const bool mobile = Utils::connectionTypeIsMobile(dbTestResults->connectionType);
        return ui->buttonConnectiontype->setIcon(
            QIcon(mobile ? u":/velometerres/wwan.png"_s : u":/velometerres/wlan.png"_s));
    }
    ui->buttonConnectiontype->setIcon(ConnectionSign::icon(
        ConnectionKinds::of(dbTestResults->connectionType), ResultFigures::signPixels));
}

void TestResultWidget::fill()
{
    const DBTestResults &results = *dbTestResults;
    QDateTime time;
    if (const auto shown = shownTime(results.timestamp)) {
        time = QDateTime::fromMSecsSinceEpoch(*shown);
    }
    ui->testid->setText(u"%0 / %1"_s.arg(results.seriesId).arg(results.testId));
    ui->labelDate->setText(time.toString(u"yyyy-MM-dd"_s));
    ui->labelTime->setText(time.toString(u"hh:mm"_s));
    ui->download->setText(ResultFigures::rate(results.downloadSpeed));
    ui->upload->setText(ResultFigures::rate(results.uploadSpeed));
    ui->rtt->setText(ResultFigures::roundTrip(static_cast<double>(results.rtt)));
    showSign();
    ui->location->setText(Utils::trLocationShort(results.location));
    ui->testserver->setText(results.testServer.left(rowTextLength));
    ui->connectiontype->setText(results.connectionType.left(rowTextLength));
    ui->separator->setVisible(!ui->location->text().isEmpty());

    // The list names the unit of rates once; who hears a single row needs it there.
    const auto withUnit = [](const QString &rate) {
        return rate == tr("na") ? rate : u"%1 kBit/s"_s.arg(rate);
    };
    setAccessibleName(tr("%1, %2 %3, %4, %5, %6, download %7, upload %8, RTT %9")
                          .arg(ui->testid->text(), ui->labelDate->text(), ui->labelTime->text(),
                               ui->location->text(), ui->connectiontype->text(),
                               ui->testserver->text(), withUnit(ui->download->text()),
                               withUnit(ui->upload->text()), ui->rtt->text()));
    setAccessibleDescription(mark == Mark::Selected     ? tr("selected")
                             : mark == Mark::Unselected ? tr("not selected")
                                                        : QString());
    SpokenRole::setState(
        this,
        {.selected = mark == Mark::None ? std::nullopt : std::optional(mark == Mark::Selected),
         .expanded = {}});
}

void TestResultWidget::widgetSelected()
{
    if (!dbTestResults) {
        return;
    }
    Utils::addLogEntry(u"Widget Selected!"_s);
    Q_EMIT selected(dbTestResults);
}

void TestResultWidget::changeEvent(QEvent *event)
{
    ListEntry::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        showIcons();
    }
    if (dbTestResults &&
        (event->type() == QEvent::LanguageChange || event->type() == QEvent::StyleChange)) {
        fill();
    }
}

void TestResultWidget::paintEvent(QPaintEvent * /*event*/)
{
    const Theme::Colours &colours = Theme::paper();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = Theme::isGiven() ? givenCornerRadius : cornerRadius;
    const double half = 0.5;
    // The sides of the card are drawn; its upper and lower line only where it ends.
    QRectF area = QRectF(rect()).adjusted(half, half, -half, -half);
    if (!place.first) {
        area.setTop(-radius);
    }
    if (!place.last) {
        area.setBottom(height() + radius);
    }
    const bool raised = isPressed() || mark == Mark::Selected;
    painter.setPen(colours.line);
    painter.setBrush(raised ? colours.raised : colours.surface);
    painter.drawRoundedRect(area, radius, radius);
    if (!place.last) {
        painter.setPen(Theme::isGiven() ? colours.text : colours.line);
        const double y = height() - half;
        const double inset = Theme::isGiven() ? 0 : ResultFigures::margin;
        painter.drawLine(QPointF(inset, y), QPointF(width() - inset, y));
    }
    if (hasFocus() && property("keys").toBool()) {
        painter.setPen(QPen(colours.accent, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), radius - 2, radius - 2);
    }
}

} // namespace velometer
