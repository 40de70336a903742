#include "ui/pages/testtab.h"

#include "ui/scrolling/qskineticscroller.h"
#include "utils/utils.h"

#include "ui_testtab.h"

#include <QKeyEvent>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Between the caption of the start button and its edges, px.
constexpr int captionMargin = 16;

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
    ui->progressBar->hide();
    ui->progressBar->setMaximum(1);
    ui->progressBar->setValue(0);
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
    fitCaption();
}

void TestTab::setLocation(const QString &text)
{
    ui->labelLocation->setText(u"<a href=\"void()\" style=\"color: white;\">"_s + text + "</a>"_L1);
}

void TestTab::setTestserver(const QString &text)
{
    ui->labelServer->setText(text);
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
}

void TestTab::setUploadText(const QString &text)
{
    ui->labelUpload->setText(text);
}

void TestTab::setRTTText(const QString &text)
{
    ui->labelRTT->setText(text);
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
}

void TestTab::clearThroughput()
{
    ui->plot->clear();
}

void TestTab::addThroughput(int resulttype, int interval, qint64 bytes)
{
    ui->plot->addValue(resulttype, interval, bytes);
}

// The style sheet has a look for each state, and one for the disabled button.
void TestTab::setStartState(const char *state)
{
    ui->buttonStartTest->setProperty("state", QString::fromLatin1(state));
    ui->buttonStartTest->style()->polish(ui->buttonStartTest);
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
    button->setProperty("long", false);
    button->style()->polish(button);
    const int wide = button->fontMetrics().horizontalAdvance(button->text());
    if (wide <= button->width() - 2 * captionMargin) {
        return;
    }
    button->setProperty("long", true);
    button->style()->polish(button);
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
