#include "cli/textformat.h"
#include "figures/csvformat.h"
#include "figures/exportformat.h"
#include "figures/jsonformat.h"

#include "data/storeddetails.h"
#include "data/testdetails.h"
#include "figures/testfields.h"
#include "support/registeredtest.h"
#include "support/storedtests.h"
#include "support/wholetest.h"

#include <QFile>
#include <QJsonDocument>

namespace velometer {

namespace {

/// Every way to tell of a test, each under its name; JSON one field a line.
QList<std::pair<QString, QByteArray>> everything(const FinishedTest &test)
{
    QByteArray details;
    const auto data = StoredDetails::of(test)->getData();
    QStringList keys = data.keys();
    keys.sort();
    for (const QString &key : std::as_const(keys)) {
        const QVariant &value = data[key];
        details += u"%1 %2 %3\n"_s.arg(key, QString::fromLatin1(value.typeName()), value.toString())
                       .toUtf8();
    }
    return {
        {u"whole.json"_s, QJsonDocument(JsonFormat::test(test)).toJson()},
        {u"whole.csv"_s, CsvFormat::testHeader() + CsvFormat::test(test)},
        {u"whole.txt"_s,
         TextFormat::test(test, u"http://page"_s).toUtf8() + TextFormat::table({test}).toUtf8()},
        {u"whole.geojson"_s,
         ExportFormat::geoJsonBegin() + ExportFormat::geoJsonFeature(test, true) +
             ExportFormat::geoJsonFeature({}, false) + ExportFormat::geoJsonEnd()},
        {u"whole.gpx"_s, ExportFormat::gpxBegin() + ExportFormat::gpxWaypoint(test) +
                             ExportFormat::gpxWaypoint({}) + ExportFormat::gpxEnd()},
        {u"whole.details"_s, details},
    };
}

QList<QByteArray> golden(const QString &name)
{
    QFile file(QStringLiteral(GOLDEN) + u'/' + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QList<QByteArray>();
}

/// What is known of @p test: JSON without its unknown fields.
QList<QByteArray> known(const FinishedTest &test)
{
    QJsonObject object = JsonFormat::test(test);
    for (const QString &key : object.keys()) {
        QJsonObject members = object[key].toObject();
        for (const QString &member : members.keys()) {
            if (members[member].isNull()) {
                members.remove(member);
            }
        }
        const bool isGroup = object[key].isObject();
        if (isGroup) {
            object[key] = members;
        }
        if (object[key].isNull() || (isGroup && members.isEmpty())) {
            object.remove(key);
        }
    }
    return QJsonDocument(object).toJson().split('\n');
}

} // namespace

class FormatsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFigureComesOutWhereItBelongs()
    {
        FinishedTest test = WholeTest().value();
        test.storedId = 17;
        for (const auto &[name, content] : everything(test)) {
            QCOMPARE(content.split('\n'), golden(name));
        }
    }

    void aStoredTestTellsWhatTheRunningOneTold()
    {
        FinishedTest refused = WholeTest().value();
        refused.download = {{}, {}, {}, 0, 0, {}, {}, {}, false, QList<qint64>()};
        refused.position = {};
        refused.network.cell = 0; // is no unknown
        refused.budget.reached.reset();
        refused.serverMaximumRate.reset();
        for (FinishedTest test : {WholeTest().value(), refused, FinishedTest()}) {
            const StoredTests store;
            test.storedId = static_cast<qint64>(gDB->storeTest(test));
            QCOMPARE(test.storedId, 1);
            test.report.resent.reset(); // the running program's alone
            // A row has both ids, 0 where there were none.
            test.testId = test.testId.value_or(0);
            test.seriesId = test.seriesId.value_or(0);
            const auto told = everything(test);
            const auto stored = everything(gDB->getTest(*gDB->getResultsById(1)));
            for (qsizetype i = 0; i < told.size(); ++i) {
                QCOMPARE(stored[i].second.split('\n'), told[i].second.split('\n'));
            }
        }
    }

    void anOlderTestTellsWhatWasStored()
    {
        // The server measured the upload, the client did, there are no details.
        for (const auto &[clientRate, withDetails, file] :
             {std::tuple{4e6, true, u"older-server.json"_s},
              {5e6, true, u"older-client.json"_s},
              {5e6, false, u"older-row.json"_s}}) {
            StoredTests store;
            store.add({.download = 0, .upload = 5e6, .rtt = 45});
            QVERIFY(QSqlQuery().exec(
                u"UPDATE testresults SET uploadSpeedClient = %1"_s.arg(clientRate)));
            const std::pair<QString, QVariant> details[] = {
                {u"downloadMaximum"_s, -1.0},       {u"uploadMaximum"_s, 6e6},
                {u"rttAverage"_s, 45.6e6},          {u"testServerPort"_s, 8080.0},
                {u"downloadedBytes"_s, 0LL},        {u"networkCell"_s, 0.0},
                {u"gsmSignalStrength"_s, 71LL},     {u"deviceLatitude"_s, 47.5},
                {u"deviceLongitude"_s, 8.5},        {u"deviceAltitude"_s, -1.0},
                {u"deviceAccuracyVert"_s, 0.0},     {u"deviceAccuracyHor"_s, 12.0},
                {u"deviceVelocity"_s, -1001.0},     {u"testServerCity"_s, u"Bern\x1b"_s},
                {u"budgetReached"_s, u"download"_s}};
            for (const auto &[key, value] : details) {
                if (withDetails) {
                    store.addDetail(1, key, value);
                }
            }
            QCOMPARE(known(gDB->getTest(*gDB->getAllResults().front())), golden(file));
        }
    }

    void guardsTextCells()
    {
        for (const auto &[text, cell] : {std::pair{u"ä \"b\",\r\nc"_s, "\"ä \"\"b\"\",c\""},
                                         {u"=1+1"_s, "'=1+1"},
                                         {u"\t-1"_s, "'-1"}}) {
            QCOMPARE(CsvFormat::cell(text).toUtf8(), cell);
        }
    }
};

} // namespace velometer

VELOMETER_TEST(FormatsTest)
#include "formats_test.moc"
