#include "ui/details/detailswindow.h"

#include "data/result.h"
#include "data/testdetails.h"
#include "db/databasemanager.h"
#include "db/dbtestresults.h"
#include "figures/testfields.h"
#include "ui/details/detailscategory.h"
#include "ui/details/testdetailwidget.h"
#include "ui/plot/throughputplot.h"
#include "ui/scrolling/qskineticscroller.h"
#include "utils/deployment.h"
#include "utils/utils.h"

#include "ui_detailswindow.h"

#include <QScrollBar>

#include <chrono>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Lets the page be painted before the rows are built.
constexpr std::chrono::milliseconds detailsPaintTime{50};
/// A stored value may be of any length; an e-mail and a page are not.
constexpr qsizetype shownLength = 500;
/// About a metre.
constexpr int degreeDecimals = 5;
constexpr qsizetype loggedLength = 30;
constexpr auto separatorLine = "-------------------------------------------------\n"_L1;

struct Row
{
    const char *title;
    const char *description; ///< null when there is none
    QLatin1StringView key;   ///< of a stored field
    bool onlyWithValue = false;
};

struct Category
{
    const char *title;
    QList<Row> rows;
};

// The device's own address is the one the server does not see: the keys are named from the other
// side.
const QList<Category> &categoryTable()
{
    static const QList<Category> table{
        {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Performance Data"),
         {{QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Download Average"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "over 5 seconds"), "downloadAverage"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Download Maximum"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "fastest second"), "downloadMaximum"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Upload Average"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "over 5 seconds"), "uploadAverage"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Upload Maximum"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "fastest second"), "uploadMaximum"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "RTT Average"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "over 3 \"TCP Connect Time\""),
           "rttAverage"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "RTT Minimum"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "min \"TCP Connect Time\""),
           "rttMinimum"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Downloaded Bytes"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "whole test"), "downloadedBytes"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Uploaded Bytes"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "whole test"), "uploadedBytes"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Total transferred Bytes"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "whole test"), "totalBytes"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Data Budget"), nullptr,
           "budgetReached"_L1, true}}},
        {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Device Information"),
         {{QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Connectiontype(s)"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "during test cycle"), "connectionType"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "NetworkCell"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "at the end of the test"),
           "networkCell"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "GSM Signalstrength"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "at the end of the test"),
           "gsmSignalStrength"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "External IP"), nullptr, "deviceIP"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Device IP"), nullptr, "externalIP"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Device Latitude"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "at the end of the test"),
           "deviceLatitude"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Device Longitude"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "at the end of the test"),
           "deviceLongitude"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Device Altitude"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "at the end of the test"),
           "deviceAltitude"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Distance Traveled"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "during test, in meters"),
           "deviceDistance"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Average Velocity"), nullptr,
           "deviceVelocity"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Vert. Accuracy of GPS/Network"), nullptr,
           "deviceAccuracyVert"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Hor. Accuracy of GPS/Network"), nullptr,
           "deviceAccuracyHor"_L1}}},
        {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Test Server Info"),
         {{QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Server Name"), nullptr,
           "testServerName"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Server Domain"), nullptr,
           "testServerDomain"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Server IP"), nullptr, "testServerIP"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Server Port"), nullptr,
           "testServerPort"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Server Country"), nullptr,
           "testServerCountry"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Server State"), nullptr,
           "testServerState"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Server City"), nullptr,
           "testServerCity"_L1}}},
        {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Test Info"),
         {{QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Date of Test"), nullptr, "testDate"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Time of Test"), nullptr, "testTime"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Test Series ID"), nullptr,
           "testSeriesId"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Test ID"), nullptr, "testTestId"_L1}}},
    };
    return table;
}

/// As the details format it, but for degrees, which they would cut to whole ones.
QString valueText(const TestDetails &details, const QString &key)
{
    const TestField *field = TestFields::ofDetail(key);
    if (!field || field->unit != Unit::Degrees) {
        return details.getFormatedStringByKey(key).left(shownLength);
    }
    if (!details.hasGPSCoordinates()) {
        return TestDetails::tr("n/a");
    }
    return QString::number(details.getDouble(key), 'f', degreeDecimals).left(shownLength);
}

/// Escapes what would end the body of the address early or be read as an escape itself.
QString escapedForBody(QString text)
{
    return text.replace(u'%', "%25"_L1)
        .replace(u'#', "%23"_L1)
        .replace(u'&', "%26"_L1)
        .replace(u'\n', "<br>"_L1);
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
    showTimer.setSingleShot(true);
    showTimer.setInterval(detailsPaintTime);
    connect(&showTimer, &QTimer::timeout, this, &DetailsWindow::setTestResultsImpl);
    showPleaseWait(false);
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

void DetailsWindow::setTestResults(const DBTestResults *results)
{
    shownId = results->myTestId;
    clearExistingWidgets();
    showPleaseWait(true);
    showTimer.start();
}

void DetailsWindow::setTestResultsImpl()
{
    clearExistingWidgets();
    showPleaseWait(false);
    Utils::addLogEntry(u"Setup Details Window for TestId: %1"_s.arg(shownId));
    const auto details = readDetails();
    if (!details) {
        return;
    }
    categories = setupDetailsCategories(details.get());
    addRows();
    ui->scrollArea->verticalScrollBar()->setValue(0);
}

std::unique_ptr<TestDetails> DetailsWindow::readDetails() const
{
    auto details = gDB->getDetailsById(shownId);
    if (!details) {
        Utils::addLogEntry(u"NO DETAILS FOUND FOR ID: %1"_s.arg(shownId));
    }
    return details;
}

void DetailsWindow::addRows()
{
    QWidget *contents = ui->scrollAreaWidgetContents;
    for (const DetailsCategory *category : std::as_const(categories)) {
        auto *heading = new TestDetailWidget(contents);
        heading->setTitle(category->getTitle());
        ui->contentsLayout->addWidget(heading);
        for (const DetailsItem &item : category->getItems()) {
            auto *row = new TestDetailWidget(contents);
            row->setData(item.title, item.description, item.value);
            ui->contentsLayout->addWidget(row);
        }
        if (category == categories.first()) {
            addPlot();
        }
    }
    ui->contentsLayout->addStretch();
}

void DetailsWindow::addPlot()
{
    auto plot = std::make_unique<ThroughputPlot>(ui->scrollAreaWidgetContents);
    plot->setProperty("onPaper", true);
    plot->setValues(Result::Download, gDB->getIntervals(shownId, Result::Download));
    plot->setValues(Result::Upload, gDB->getIntervals(shownId, Result::Upload));
    if (!plot->isEmpty()) {
        ui->contentsLayout->addWidget(plot.release());
    }
}

void DetailsWindow::clearExistingWidgets()
{
    ui->notice->hide();
    deleteCategories(categories);
    while (QLayoutItem *item = ui->contentsLayout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
}

void DetailsWindow::showPleaseWait(bool visible)
{
    ui->labelPleaseWait->setVisible(visible);
    ui->scrollArea->setVisible(!visible);
    ui->pushButton->setVisible(!visible);
    // Without the list something else has to fill the page.
    ui->verticalSpacer->changeSize(0, 0, QSizePolicy::Minimum,
                                   visible ? QSizePolicy::Expanding : QSizePolicy::Fixed);
    ui->bodyLayout->invalidate();
}

QList<DetailsCategory *> DetailsWindow::setupDetailsCategories(const TestDetails *details)
{
    QList<DetailsCategory *> list;
    for (const Category &category : categoryTable()) {
        list.append(new DetailsCategory(tr(category.title)));
        for (const Row &row : category.rows) {
            const QString value = valueText(*details, row.key);
            if (row.onlyWithValue && value.isEmpty()) {
                continue;
            }
            list.last()->addItem(tr(row.title), row.description ? tr(row.description) : QString(),
                                 value);
        }
    }
    return list;
}

void DetailsWindow::deleteCategories(QList<DetailsCategory *> &list)
{
    qDeleteAll(list);
    list.clear();
}

void DetailsWindow::on_pushButton_clicked()
{
    const auto details = readDetails();
    if (!details) {
        return;
    }
    Utils::addLogEntry(u"Setup Details Window for TestId: %1"_s.arg(shownId));
    QList<DetailsCategory *> summary = setupDetailsCategories(details.get());

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
