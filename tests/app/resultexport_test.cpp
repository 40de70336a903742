#include "app/resultexport.h"

#include "support/registeredtest.h"
#include "support/storedtests.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>
#include <QStandardPaths>

namespace velometer {

class ResultExportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        store.reset(); // one at a time
        store = std::make_unique<StoredTests>();
        qputenv("HOME", QFile::encodeName(store->path()));
    }
    void cleanupTestCase()
    {
        store.reset();
        delete std::exchange(gDB, nullptr);
    }

    void writesTheChosenTests_data()
    {
        using enum ExportFormat::Kind;
        const Rows<ExportFormat::Kind, QString, QString> row("kind", "suffix", "ids");
        row("table", Csv, "csv", "9 4");
        row("lines", Json, "json", "9 4");
        row("features", GeoJson, "geojson", "9 4");
        row("waypoints, which need a position", Gpx, "gpx", "");
    }
    void writesTheChosenTests()
    {
        const auto [kind, suffix, ids] = currentRow<ExportFormat::Kind, QString, QString>();
        store->add({.id = 4, .test = 4004});
        store->add({.id = 9, .test = 9009});
        store->add({.id = 11, .test = 1111});
        ResultExport files(nullptr);
        const QSignalSpy done(&files, &ResultExport::done);
        files.start(kind, {9, 77, 4}); // one is gone meanwhile
        QCOMPARE(done.size(), 0);      // nothing is written before other events
        QTRY_COMPARE(done.size(), 1);
        QCOMPARE(done.first().at(1).toInt(), 2);
        QFile file(done.first().at(0).toString());
        QCOMPARE(QFileInfo(file).path(), ResultExport::folder());
        QCOMPARE(QFileInfo(file).suffix(), suffix);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        QCOMPARE(text.contains("9009") && text.indexOf("9009") < text.indexOf("4004"),
                 !ids.isEmpty());
        QVERIFY(!text.contains("1111"));
        QVERIFY(text.startsWith(ExportFormat::begin(kind)) &&
                text.endsWith(ExportFormat::end(kind)));
        // The next one has a name of its own.
        files.start(kind, {4});
        QTRY_COMPARE(done.size(), 2);
        QCOMPARE(done.last().at(0).toString().section(u'/', -1),
                 QFileInfo(file).completeBaseName() + u"-2."_s + suffix);
    }

    void leavesNothingBehind()
    {
        store->add({.id = 4});
        ResultExport files(nullptr);
        const QSignalSpy done(&files, &ResultExport::done);
        const QSignalSpy failed(&files, &ResultExport::failed);
        files.start(ExportFormat::Kind::Csv, {4});
        files.cancel();
        QTest::qWait(1);
        QCOMPARE(QDir(ResultExport::folder()).entryList({u"velometer-*"_s}), QStringList());

        // Its folder has gone meanwhile.
        files.start(ExportFormat::Kind::Csv, {4});
        QVERIFY(QDir(ResultExport::folder()).removeRecursively());
        QTRY_COMPARE(failed.size(), 1);
        QVERIFY(!failed.first().at(1).toString().isEmpty());
        QCOMPARE(done.size(), 0);
    }

private:
    std::unique_ptr<StoredTests> store;
};

} // namespace velometer

VELOMETER_TEST(ResultExportTest)
#include "resultexport_test.moc"
