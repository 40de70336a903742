#include "ui/details/detailswindow.h"

#include "app/sharetext.h"
#include "app/userpage.h"
#include "data/result.h"
#include "data/testdetails.h"
#include "db/databasemanager.h"
#include "db/dbtestresults.h"
#include "figures/loadwords.h"
#include "ui/details/detailscategory.h"
#include "ui/details/detailstable.h"
#include "ui/details/testdetailwidget.h"
#include "ui/plot/throughputplot.h"
#include "ui/scrolling/qskineticscroller.h"
#include "ui/theme/theme.h"
#include "utils/deployment.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include "ui_detailswindow.h"

#include <QDateTime>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include <chrono>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qsizetype loggedLength = 30;
constexpr int swipeLength = 80; // px
constexpr int swipeSlope = 2;   ///< this much more to the side than up or down
/// What the log holds of a test, before and after the moment that names it.
constexpr qint64 logAroundMs = 120'000;
constexpr auto separatorLine = "-------------------------------------------------\n"_L1;

/// Escapes what would end the body of the address early or be read as an escape itself.
QString escapedForBody(QString text)
{
    return text.replace(u'%', "%25"_L1)
        .replace(u'#', "%23"_L1)
        .replace(u'&', "%26"_L1)
        .replace(u'\n', "<br>"_L1);
}

/// The lines of the diagnostic log around a moment, without the escapes of its place in a report.
QString logOf(qint64 timeMs)
{
    QStringList lines;
    const QStringList all = Utils::getLogEntries().split("\r\n"_L1, Qt::SkipEmptyParts);
    for (QString line : all) {
        const qint64 time = line.section(u':', 0, 0).toLongLong();
        if (std::abs(time - timeMs) > logAroundMs) {
            continue;
        }
        for (const auto &[escape, character] : {std::pair{"&quot;"_L1, "\""_L1},
                                                {"&apos;"_L1, "'"_L1},
                                                {"&amp;"_L1, "&"_L1},
                                                {"&gt;"_L1, ">"_L1},
                                                {"&lt;"_L1, "<"_L1}}) {
            line.replace(escape, character);
        }
        lines.append(QDateTime::fromMSecsSinceEpoch(time).toString(u"hh:mm:ss "_s) +
                     line.section(u':', 1).trimmed());
    }
    return lines.join(u'\n');
}

} // namespace

DetailsWindow::DetailsWindow(QWidget *parent)
    : TabBase(parent)
    , ui(std::make_unique<Ui::DetailsWindow>())
{
    ui->setupUi(this);
    fillFrame();
    auto *scroller = new QsKineticScroller(this);
    scroller->enableKineticScrollFor(ui->scrollArea);
    ui->scrollArea->viewport()->installEventFilter(this); // sees a swipe before the scroller
    showTimer.setSingleShot(true);
    showTimer.setInterval(0);
    connect(&showTimer, &QTimer::timeout, this, &DetailsWindow::setTestResultsImpl);
    dress();
    showPleaseWait(false);
    showHead({});
}

DetailsWindow::~DetailsWindow()
{
    deleteCategories(categories);
}

void DetailsWindow::retranslate()
{
    ui->retranslateUi(this);
    if (shownId != 0 && !showTimer.isActive()) {
        setTestResultsImpl();
    }
}

void DetailsWindow::dress()
{
    const Theme::Colours &colours = Theme::colours();
    ui->buttonBack->setIcon(Theme::icon(u"back"_s, colours.text));
    ui->buttonPrevious->setIcon(Theme::icon(u"back"_s, colours.text));
    ui->buttonNext->setIcon(Theme::icon(u"next"_s, colours.text));
}

// ---- What is shown

void DetailsWindow::setTestResults(const DBTestResults *results)
{
    shownId = results->myTestId;
    clearExistingWidgets();
    showPleaseWait(true);
    // What was there stays on the screen for the moment that this takes.
    ui->body->setUpdatesEnabled(false);
    showTimer.start();
}

void DetailsWindow::showNewest()
{
    const auto newest = shownId == 0 ? gDB->getNewestResults() : nullptr;
    if (newest) {
        setTestResults(newest.get());
    }
}

void DetailsWindow::setTestResultsImpl()
{
    ui->body->setUpdatesEnabled(true);
    clearExistingWidgets();
    showPleaseWait(false);
    Utils::addLogEntry(u"Setup Details Window for TestId: %1"_s.arg(shownId));
    const auto details = readDetails();
    const auto row = gDB->getResultsById(shownId);
    const FinishedTest test = row ? gDB->getTest(*row) : FinishedTest();
    showHead(test);
    ui->figures->setVisible(details && row);
    ui->buttonShare->setEnabled(row != nullptr);
    if (!details) {
        return;
    }
    categories = DetailsTable::categories(*details);
    addRows(test);
    ui->scrollArea->verticalScrollBar()->setValue(0);
}

void DetailsWindow::showHead(const FinishedTest &test)
{
    shownTime = test.timestamp.value_or(0);
    ui->labelTest->setText(test.testId ? tr("Test %1").arg(ShareText::name(test)) : QString());
    ui->labelWhere->setText(
        test.testId ? u"%1 · %2"_s.arg(ShareText::time(test), ShareText::where(test)) : QString());
    const auto figure = [](FigureCards::Kind kind, const QString &text) {
        return FigureCards::Figure{kind, text.section(u' ', 0, 0), text.section(u' ', 1), {}};
    };
    ui->figures->setFigures(
        {figure(FigureCards::Kind::Download, ShareText::rate(test.download.averageRate)),
         figure(FigureCards::Kind::Upload, ShareText::rate(test.uploadRate())),
         figure(FigureCards::Kind::Rtt, ShareText::roundTrip(test))});
    const QStringList suffering = LoadWords::sentences(test);
    ui->labelLoad->setText(suffering.join(u'\n'));
    ui->labelLoad->setVisible(!suffering.isEmpty());
    ui->buttonPrevious->setEnabled(neighbour && neighbour(shownId, -1));
    ui->buttonNext->setEnabled(neighbour && neighbour(shownId, 1));
}

std::unique_ptr<TestDetails> DetailsWindow::readDetails() const
{
    auto details = gDB->getDetailsById(shownId);
    if (!details) {
        Utils::addLogEntry(u"NO DETAILS FOUND FOR ID: %1"_s.arg(shownId));
    }
    return details;
}

void DetailsWindow::addRows(const FinishedTest &test)
{
    addPlot(test);
    for (const DetailsCategory *category : std::as_const(categories)) {
        auto *card = new QFrame(ui->rows);
        card->setProperty("role", u"sheet"_s);
        auto *lines = new QVBoxLayout(card);
        lines->setContentsMargins(1, 1, 1, 1);
        lines->setSpacing(0);
        auto *heading = new TestDetailWidget(card);
        heading->setTitle(category->getTitle());
        lines->addWidget(heading);
        const DetailsItem *last = &category->getItems().constLast();
        for (const DetailsItem &item : category->getItems()) {
            auto *row = new TestDetailWidget(card);
            row->setData(item.title, item.description, item.value);
            row->setLast(&item == last);
            lines->addWidget(row);
        }
        ui->rowsLayout->addWidget(card);
    }
}

void DetailsWindow::addPlot(const FinishedTest &test)
{
    auto plot = std::make_unique<ThroughputPlot>(ui->rows);
    plot->setValues(Result::Download, gDB->getIntervals(shownId, Result::Download));
    plot->setValues(Result::Upload, gDB->getIntervals(shownId, Result::Upload));
    plot->setDelays(Result::Download, test.downloadLoad);
    plot->setDelays(Result::Upload, test.uploadLoad);
    if (!plot->isEmpty()) {
        ui->rowsLayout->addWidget(plot.release());
    }
}

void DetailsWindow::clearExistingWidgets()
{
    ui->notice->hide();
    ui->log->hide();
    deleteCategories(categories);
    while (QLayoutItem *item = ui->rowsLayout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

void DetailsWindow::showPleaseWait(bool visible)
{
    ui->labelPleaseWait->setVisible(visible);
    ui->scrollArea->setVisible(!visible);
    ui->pushButton->setVisible(!visible);
    ui->pageButton->setVisible(!visible && !pageAddress().isEmpty());
    // Without the list something else has to fill the page.
    ui->verticalSpacer->changeSize(0, 0, QSizePolicy::Minimum,
                                   visible ? QSizePolicy::Expanding : QSizePolicy::Fixed);
    ui->bodyLayout->invalidate();
}

// ---- The log

void DetailsWindow::on_logButton_clicked()
{
    if (ui->log->isVisible()) {
        return ui->log->hide();
    }
    const QString lines = logOf(shownTime);
    ui->log->setPlainText(lines.isEmpty()
                              ? tr("This program has nothing in its log of the time of this test: "
                                   "it was started later.")
                              : lines);
    ui->log->show();
    QTimer::singleShot(0, this, [this] { ui->scrollArea->ensureWidgetVisible(ui->log); });
}

// ---- The other tests

void DetailsWindow::step(int by)
{
    const DBTestResults *next = neighbour ? neighbour(shownId, by) : nullptr;
    if (next) {
        setTestResults(next);
    }
}

void DetailsWindow::keyPressEvent(QKeyEvent *event)
{
    const bool plain = event->modifiers() == Qt::NoModifier;
    if (plain && (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)) {
        step(event->key() == Qt::Key_Left ? -1 : 1);
    } else {
        TabBase::keyPressEvent(event);
    }
}

bool DetailsWindow::eventFilter(QObject *object, QEvent *event)
{
    if (object == ui->scrollArea->viewport()) {
        const auto *mouse = static_cast<const QMouseEvent *>(event);
        if (event->type() == QEvent::MouseButtonPress) {
            swipeStart = mouse->position().toPoint();
        } else if (event->type() == QEvent::MouseButtonRelease && swipeStart) {
            const QPoint moved = mouse->position().toPoint() - *swipeStart;
            swipeStart.reset();
            if (std::abs(moved.x()) >= swipeLength &&
                std::abs(moved.x()) > swipeSlope * std::abs(moved.y())) {
                step(moved.x() < 0 ? 1 : -1);
            }
        }
    }
    return TabBase::eventFilter(object, event);
}

void DetailsWindow::deleteCategories(QList<DetailsCategory *> &list)
{
    qDeleteAll(list);
    list.clear();
}

QString DetailsWindow::pageAddress() const
{
    const auto row = gDB->getResultsById(shownId);
    return row ? UserPage::addressOf(gDB->getTest(*row), Translations::language()) : QString();
}

void DetailsWindow::on_pageButton_clicked()
{
    ui->notice->openPage(pageAddress());
}

void DetailsWindow::on_pushButton_clicked()
{
    const auto details = readDetails();
    if (!details) {
        return;
    }
    Utils::addLogEntry(u"Setup Details Window for TestId: %1"_s.arg(shownId));
    QList<DetailsCategory *> summary = DetailsTable::categories(*details);

    const QString userId = Utils::getSettingsCommonValue(u"UserId"_s);
    const Deployment &deployment = Deployment::current();
    QString body = tr("Summary for the current measurement:") + "\n\n"_L1;
    for (const DetailsCategory *category : std::as_const(summary)) {
        body += category->getTitle() + u'\n' + separatorLine;
        for (const DetailsItem &item : category->getItems()) {
            body += u"%1:\t%2\n"_s.arg(item.title, item.value);
        }
        body += "\n\n"_L1;
    }
    body += tr("Link to the measurements:") + u'\n' +
            deployment.userPageAddress(userId.toLongLong(), u"de"_s) + "\n\n"_L1;
    deleteCategories(summary);

    const QString subject =
        tr("orvak Velometer for Zenta (UserId:%1 Version:%2)").arg(userId, Utils::getVersion());
    const QString address = "mailto:?cc="_L1 + deployment.feedbackMailbox +
                            u"&subject=%1&body=%2"_s.arg(subject, escapedForBody(body));
    ui->notice->openMail(address, deployment.feedbackMailbox);
    Utils::addLogEntry(u"URL (Qt): %1..."_s.arg(address.left(loggedLength)));
}

} // namespace velometer
