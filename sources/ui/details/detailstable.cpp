#include "ui/details/detailstable.h"

#include "data/testdetails.h"
#include "figures/testfields.h"
#include "ui/details/detailscategory.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// A stored value may be of any length; an e-mail and a page are not.
constexpr qsizetype shownLength = 500;
/// About a metre.
constexpr int degreeDecimals = 5;

/// Holds the context of the texts.
class TableTexts
{
    Q_DECLARE_TR_FUNCTIONS(velometer::DetailsWindow)
};

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

constexpr auto afterRampUp =
    QT_TRANSLATE_NOOP("velometer::DetailsWindow", "from the end of its ramp-up on");
constexpr auto median = QT_TRANSLATE_NOOP("velometer::DetailsWindow", "median");
constexpr auto most = QT_TRANSLATE_NOOP("velometer::DetailsWindow", "95 % are shorter");
constexpr auto lost = QT_TRANSLATE_NOOP("velometer::DetailsWindow", "lost, percent");
constexpr auto control =
    QT_TRANSLATE_NOOP("velometer::DetailsWindow", "congestion control of the load");

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
        {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay and Steady Rate"),
         {{QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Download Steady Rate"), afterRampUp,
           "downloadSteady"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Upload Steady Rate"), afterRampUp,
           "uploadSteady"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Idle Delay"), median, "idleMedian"_L1,
           true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Idle Jitter"), nullptr, "idleJitter"_L1,
           true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Download"), median,
           "downloadLoadMedian"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Download"), most,
           "downloadLoadPercentile95"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Download"), lost,
           "downloadLoadLost"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Download"), control,
           "downloadLoadCongestion"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Upload"), median,
           "uploadLoadMedian"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Upload"), most,
           "uploadLoadPercentile95"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Upload"), lost,
           "uploadLoadLost"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Upload"), control,
           "uploadLoadCongestion"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Extra Download"), median,
           "extraDownloadLoadMedian"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Extra Download"), control,
           "extraDownloadLoadCongestion"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Extra Upload"), median,
           "extraUploadLoadMedian"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Delay in Extra Upload"), control,
           "extraUploadLoadCongestion"_L1, true}}},
        {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Device Information"),
         {{QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Connectiontype(s)"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "during test cycle"), "connectionType"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "NetworkCell"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "at the end of the test"),
           "networkCell"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "GSM Signalstrength"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "at the end of the test"),
           "gsmSignalStrength"_L1},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "RSRP"), median, "networkRsrp"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "RSRQ"), median, "networkRsrq"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "SNR"), median, "networkSnr"_L1, true},
          {QT_TRANSLATE_NOOP("velometer::DetailsWindow", "Band"),
           QT_TRANSLATE_NOOP("velometer::DetailsWindow", "at the end of the test"),
           "networkBand"_L1, true},
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

} // namespace

QList<DetailsCategory *> DetailsTable::categories(const TestDetails &details)
{
    QList<DetailsCategory *> list;
    for (const Category &category : categoryTable()) {
        const bool isKnown =
            std::any_of(category.rows.begin(), category.rows.end(), [&](const Row &row) {
                return !row.onlyWithValue || details.contains(row.key);
            });
        if (!isKnown) {
            continue;
        }
        list.append(new DetailsCategory(TableTexts::tr(category.title)));
        for (const Row &row : category.rows) {
            const QString value = valueText(details, row.key);
            if (row.onlyWithValue && !details.contains(row.key)) {
                continue;
            }
            list.last()->addItem(TableTexts::tr(row.title),
                                 row.description ? TableTexts::tr(row.description) : QString(),
                                 value);
        }
    }
    return list;
}

} // namespace velometer
