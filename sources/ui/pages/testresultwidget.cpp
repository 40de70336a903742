#include "ui/pages/testresultwidget.h"

#include "db/dbtestresults.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include "ui_testresultwidget.h"

#include <QDateTime>
#include <QMouseEvent>

#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int tapTolerance = 4; // px, in both directions
constexpr double msPerSecond = 1000.0;
constexpr double bitPerKbit = 1000.0;
/// Where years begin to have more than four digits; the store may hold anything.
constexpr double latestTimestamp = 253'402'300'800'000.0; // ms
constexpr double greatestSpeed = 1e15;                    // bit/s
/// More of a stored text cannot be seen and would only be slow to draw.
constexpr qsizetype rowTextLength = 120;

QString speedText(double speed)
{
    return u"%1 kBit/s"_s.arg(QString::number(speed / bitPerKbit, 'f', 1));
}

} // namespace

std::optional<QPoint> TestResultWidget::pressPosition;

TestResultWidget::TestResultWidget(QWidget *parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::TestResultWidget>())
    , mobileIcon(u":/velometerres/wwan.png"_s)
    , wlanIcon(u":/velometerres/wlan.png"_s)
{
    setAttribute(Qt::WA_StyledBackground);
    ui->setupUi(this);
    ui->testserver->setText(Deployment::current().swisscom.host);
    // Only pictures: pressing one presses the entry.
    for (QPushButton *button :
         {ui->buttonConnectiontype, ui->pushButton, ui->pushButton_2, ui->pushButton_3}) {
        button->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    installEventFilter(this);
}

TestResultWidget::~TestResultWidget() = default;

void TestResultWidget::setDBTestResults(DBTestResults *results)
{
    dbTestResults = results;
    fill();
}

void TestResultWidget::fill()
{
    const DBTestResults &results = *dbTestResults;
    QDateTime time;
    if (results.timestamp >= 0 && results.timestamp < latestTimestamp) {
        time = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(results.timestamp / msPerSecond));
    }

    const auto speed = [](double value) {
        return value > 0 && value < greatestSpeed ? speedText(value) : tr("na");
    };
    ui->testid->setText(u"%0 / %1"_s.arg(results.seriesId).arg(results.testId));
    ui->labelDate->setText(time.toString(u"yyyy-MM-dd"_s));
    ui->labelTime->setText(time.toString(u"hh:mm"_s));
    ui->download->setText(speed(results.downloadSpeed));
    ui->upload->setText(speed(results.uploadSpeed));
    ui->rtt->setText(results.rtt > 0 ? u"%0 ms"_s.arg(results.rtt) : tr("na"));
    ui->buttonConnectiontype->setIcon(
        Utils::connectionTypeIsMobile(results.connectionType) ? mobileIcon : wlanIcon);
    ui->location->setText(Utils::trLocationShort(results.location));
    ui->testserver->setText(results.testServer.left(rowTextLength));
    ui->connectiontype->setText(results.connectionType.left(rowTextLength));

    setAccessibleName(tr("%1, %2 %3, %4, %5, %6, download %7, upload %8, RTT %9")
                          .arg(ui->testid->text(), ui->labelDate->text(), ui->labelTime->text(),
                               ui->location->text(), ui->connectiontype->text(),
                               ui->testserver->text(), ui->download->text(), ui->upload->text(),
                               ui->rtt->text()));
}

void TestResultWidget::widgetSelected()
{
    if (!dbTestResults) {
        return;
    }
    Utils::addLogEntry(u"Widget Selected!"_s);
    Q_EMIT selected(dbTestResults);
}

bool TestResultWidget::eventFilter(QObject * /*object*/, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type != QEvent::MouseButtonPress && type != QEvent::MouseButtonRelease &&
        type != QEvent::MouseMove) {
        return false;
    }
    const auto *mouse = static_cast<const QMouseEvent *>(event);
    const QPoint position = mapTo(window(), mouse->position().toPoint());
    if (type == QEvent::MouseButtonPress) {
        if (mouse->button() == Qt::LeftButton) {
            pressPosition = position;
        }
        return false;
    }
    if (!pressPosition) {
        return false;
    }
    const QPoint moved = position - *pressPosition;
    const bool isTap = std::abs(moved.x()) <= tapTolerance && std::abs(moved.y()) <= tapTolerance;
    if (type == QEvent::MouseMove) {
        if (!isTap) {
            forgetPress();
        }
    } else if (mouse->button() == Qt::LeftButton) {
        forgetPress();
        if (isTap) {
            widgetSelected();
        }
    }
    return false;
}

void TestResultWidget::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange && dbTestResults) {
        fill();
    }
}

void TestResultWidget::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    Q_EMIT focused();
}

} // namespace velometer
