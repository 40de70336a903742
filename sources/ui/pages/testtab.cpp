#include "ui/pages/testtab.h"

#include "data/result.h"
#include "ui/frame/spokenrole.h"
#include "ui/scrolling/qskineticscroller.h"
#include "ui/theme/theme.h"
#include "utils/utils.h"

#include "ui_testtab.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Between the caption of the start button and its edges, px.
constexpr int captionMargin = 16;
/// Within a card, px; the given look has its text on the ground.
constexpr int cardMargin = 14;

const QList<int> pressingKeys{Qt::Key_Return, Qt::Key_Enter, Qt::Key_Select, Qt::Key_Space};

/// The style sheet has a look for each value of a property.
void restyle(QWidget *widget, const char *property, const QVariant &value)
{
    widget->setProperty(property, value);
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}

} // namespace

TestTab::TestTab(QWidget *parent)
    : TabBase(parent)
    , ui(std::make_unique<Ui::TestTab>())
{
    ui->setupUi(this);
    fillFrame();
    // On a low screen the fields scroll under the finger, also where it lands on one.
    (new QsKineticScroller(this))->enableKineticScrollFor(ui->scrollArea);
    for (QLineEdit *field : {ui->labelDownload, ui->labelUpload, ui->labelRTT}) {
        field->setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    // The whole row leads to the popup; a finger finds a word badly.
    for (QLabel *each : {ui->label_3, ui->labelLocation}) {
        each->installEventFilter(this);
        each->setCursor(Qt::PointingHandCursor);
    }
    SpokenRole::give(ui->labelLocation, QAccessible::Link);
    ui->progressBar->hide();
    ui->buttonStop->hide();
    ui->buttonLast->hide();
    ui->labelWaiting->hide();
    ui->liveBox->hide();
    ui->progressBar->setMaximum(1);
    ui->progressBar->setValue(0);
    dress();
}

TestTab::~TestTab() = default;

void TestTab::retranslate()
{
    // The caption of a running test stays until the test writes the next one.
    const QString caption = ui->buttonStartTest->text();
    ui->retranslateUi(this);
    if (isTestShown()) {
        ui->buttonStartTest->setText(caption);
    }
    setLocation(location);
    fitCaption();
}

// The order that the eye follows: the given look has what is tested above its figures; in the
// others the figures come first, on cards, as soon as there are any.
void TestTab::dress()
{
    const bool given = Theme::isGiven();
    ui->bodyLayout->removeWidget(ui->infoCard);
    ui->bodyLayout->insertWidget(given ? 1 : 3, ui->infoCard);
    const int margin = given ? 0 : cardMargin;
    ui->gridLayout->setContentsMargins(margin, 0, margin, 0);
    ui->figuresLayout->setSpacing(given ? ui->bodyLayout->spacing() : 0);
    showCards();
    setLocation(location);
}

void TestTab::showCards()
{
    const bool figures = Theme::isGiven() || isTestShown() ||
                         !ui->labelDownload->text().isEmpty() ||
                         !ui->labelUpload->text().isEmpty() || !ui->labelRTT->text().isEmpty();
    ui->figuresCard->setVisible(figures);
    // In the given look the plot's place keeps the fields where they are.
    ui->plot->setVisible(Theme::isGiven() || !ui->plot->isEmpty());
}

void TestTab::setLocation(const QString &text)
{
    location = text;
    ui->labelLocation->setAccessibleName(ui->label_3->text() + u' ' + text);
    if (locationFixed) {
        ui->labelLocation->setText(tr("%1 (fixed for this test)").arg(text.toHtmlEscaped()));
        return;
    }
    ui->labelLocation->setText(u"<a href=\"void()\" style=\"color: %1;\">%2</a>"_s.arg(
        Theme::colours().text.name(), text));
}

void TestTab::setLocationFixed(bool fixed)
{
    locationFixed = fixed;
    ui->labelLocation->setEnabled(!fixed);
    setLocation(location);
}

bool TestTab::eventFilter(QObject *object, QEvent *event)
{
    const bool onRow = object == ui->label_3 || object == ui->labelLocation;
    const bool isTap = event->type() == QEvent::MouseButtonRelease &&
                       static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton;
    // Not those that the page starts a test with.
    const bool isKey = event->type() == QEvent::KeyPress &&
                       pressingKeys.contains(static_cast<QKeyEvent *>(event)->key());
    if (onRow && (isTap || isKey)) {
        Q_EMIT locationLinkClicked();
        return true;
    }
    return TabBase::eventFilter(object, event);
}

void TestTab::setTestserver(const QString &name, const QString &host)
{
    const bool named = !name.isEmpty() && name != host;
    ui->labelServerName->setText(name);
    ui->labelServerName->setVisible(named);
    ui->labelServer->setText(host);
    restyle(ui->labelServer, "role", named ? u"quiet"_s : u"value"_s);
}

void TestTab::setTestSeries(const QString &text)
{
    ui->labelTestSeries->setText(text);
}

void TestTab::setPosition(const QString &text)
{
    ui->labelPosition->setText(text);
}

void TestTab::setDownloadText(const QString &text)
{
    ui->labelDownload->setText(text);
    showCards();
}

void TestTab::setUploadText(const QString &text)
{
    ui->labelUpload->setText(text);
    showCards();
}

void TestTab::setRTTText(const QString &text)
{
    ui->labelRTT->setText(text);
    showCards();
}

void TestTab::setDataTransferred(const QString &text)
{
    ui->labelDataTransfered->setText(text);
}

void TestTab::addNote(const QString &text)
{
    const QString before = ui->labelDataTransfered->text();
    ui->labelDataTransfered->setText(before.isEmpty() ? text : before + u'\n' + text);
}

void TestTab::setWaiting(const QString &text)
{
    ui->labelWaiting->setText(text);
    ui->labelWaiting->setVisible(!text.isEmpty());
}

void TestTab::setLastTest(const QString &text)
{
    ui->buttonLast->setText(text);
    ui->buttonLast->setVisible(!text.isEmpty());
}

void TestTab::setStatusText(const QString &text)
{
    ui->buttonStartTest->setText(text);
    fitCaption();
}

void TestTab::setAbortCaption(const QString &text)
{
    setStartState("abort");
    setStatusText(text);
}

void TestTab::setProgressMaxValue(int max)
{
    ui->progressBar->setMaximum(max);
}

void TestTab::setProgressValue(int value)
{
    ui->progressBar->setValue(value);
}

void TestTab::showProgessBar(bool visible)
{
    ui->progressBar->setVisible(visible);
}

void TestTab::setGUIDisabled(bool disabled)
{
    ui->buttonStartTest->setDisabled(disabled);
    setStartState("start");
    showCards();
}

void TestTab::setStoppable(bool stoppable)
{
    const bool hadFocus = ui->buttonStop->hasFocus();
    ui->buttonStop->setVisible(stoppable);
    ui->buttonStop->setEnabled(stoppable);
    if (hadFocus && !stoppable) {
        ui->buttonStartTest->setFocus();
    }
}

void TestTab::setLive(int resulttype, const QString &figure, const QString &unit)
{
    const bool download = resulttype == Result::Download;
    const bool upload = resulttype == Result::Upload;
    restyle(ui->labelLive, "phase", download ? u"download"_s : upload ? u"upload"_s : u"rtt"_s);
    const QLabel *caption = download ? ui->label_13 : upload ? ui->label_4 : ui->label_5;
    ui->labelLiveCaption->setText(caption->text());
    ui->labelLive->setText(figure);
    ui->labelLiveUnit->setText(unit);
    ui->liveBox->show();
}

void TestTab::hideLive()
{
    ui->liveBox->hide();
}

void TestTab::clearThroughput()
{
    ui->plot->clear();
    showCards();
}

void TestTab::addThroughput(int resulttype, int interval, qint64 bytes)
{
    ui->plot->addValue(resulttype, interval, bytes);
    showCards();
}

void TestTab::addDelay(int resulttype, qint64 at, qint64 delay)
{
    ui->plot->addDelay(resulttype, at, delay);
}

void TestTab::setStartState(const char *state)
{
    restyle(ui->buttonStartTest, "state", QString::fromLatin1(state));
}

// While a test runs the button either waits for its end or aborts the series.
bool TestTab::isTestShown() const
{
    return !ui->buttonStartTest->isEnabled() ||
           ui->buttonStartTest->property("state").toString() == "abort"_L1;
}

// Status texts are as long as their language makes them; the button has one width.
void TestTab::fitCaption()
{
    QPushButton *button = ui->buttonStartTest;
    for (const QString &length : {u"short"_s, u"long"_s, u"very"_s}) {
        restyle(button, "long", length);
        const int wide = button->fontMetrics().horizontalAdvance(button->text());
        if (wide <= button->width() - 2 * captionMargin) {
            return;
        }
    }
}

void TestTab::resizeEvent(QResizeEvent *event)
{
    TabBase::resizeEvent(event);
    fitCaption();
}

void TestTab::on_buttonStartTest_clicked()
{
    Utils::addLogEntry(u"Start Test clicked"_s);
    Q_EMIT startClicked();
}

void TestTab::on_buttonStop_clicked()
{
    Utils::addLogEntry(u"Stop clicked"_s);
    // A second press has nothing to stop.
    ui->buttonStop->setEnabled(false);
    Q_EMIT stopClicked();
}

void TestTab::on_buttonLast_clicked()
{
    Q_EMIT lastTestClicked();
}

void TestTab::on_labelLocation_linkActivated(const QString &link)
{
    Q_UNUSED(link)
    Q_EMIT locationLinkClicked();
}

void TestTab::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        ui->buttonStartTest->click();
    } else {
        TabBase::keyPressEvent(event);
    }
}

} // namespace velometer
