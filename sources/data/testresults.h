#pragma once

#include "context/doublelocation.h"
#include "data/databudget.h"
#include "data/remoteinitialvalues.h"
#include "figures/finishedtest.h"
#include "figures/mylocation.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace velometer {

class Result;
class TestResultLog;

/// Everything that one test collects while it runs, and what follows from it (distance, velocity,
/// connection type). Whoever shows, stores or reports a test takes its finished() value.
/// Measurements, log entries and phase results are children of their record and go with it.
class TestResults : public QObject
{
    Q_OBJECT

public:
    /// Keys of the server's upload speeds.
    enum UploadSpeed { TR_MIN = 0, TR_AVG = 1, TR_MAX = 2 };

    /// No rating was given.
    static constexpr float noRating = -2.0F;

    explicit TestResults(QObject *parent);
    TestResults(qlonglong seriesid, qlonglong testid, QObject *parent);
    ~TestResults() override;

    void initialize();

    qlonglong getMyTestId() const { return myTestId; } ///< database row, 0 before it is stored
    void setMyTestId(qlonglong id) { myTestId = id; }
    qlonglong getTimestamp() const { return timestamp; } ///< ms, 0 before it is set
    void setTimestamp(qlonglong ms) { timestamp = ms; }
    qlonglong getSeriesId() const { return seriesid; }
    qlonglong getTestId() const { return testid; }
    QString getTestServer() const { return testServer; } ///< host name
    void setTestServer(const QString &host) { testServer = host; }
    QString getConnectionType() const { return connectionType; } ///< mode code at the start
    void setConnectionType(const QString &type) { connectionType = type; }
    QString getUserLocation() const { return userLocation; } ///< location code
    void setUserLocation(const QString &code) { userLocation = code; }
    float getUserRating() const { return userRating; }
    void setUserRating(float rating) { userRating = rating; }

    /// Phase results are borrowed: they are children of this record, or outlive it.
    void setDownloadResult(Result *result) { downloadResult = result; }
    void setUploadResult(Result *result) { uploadResult = result; }
    void setRTTResult(Result *result) { rttResult = result; }
    /// Load that ran for its delays alone.
    void setExtraDownloadResult(Result *result) { extraDownloadResult = result; }
    void setExtraUploadResult(Result *result) { extraUploadResult = result; }
    Result *getDownloadResult() const { return downloadResult; }
    Result *getUploadResult() const { return uploadResult; }
    Result *getRTTResult() const { return rttResult; }
    Result *getExtraDownloadResult() const { return extraDownloadResult; }
    Result *getExtraUploadResult() const { return extraUploadResult; }
    /// All round-trip times of the idle line, where more were taken than the result counts.
    void setIdleDelays(const Delays &delays) { idleDelays = delays; }
    bool hasIdleDelays() const { return idleDelays.has_value(); }

    /// The data budget that the test runs with.
    void setDataBudget(DataBudget budget) { dataBudget = budget; }
    DataBudget getDataBudget() const { return dataBudget; }
    /// The measurements that it ended early, in order: "download", "upload".
    QStringList phasesCutByBudget() const;

    /// The name of the congestion control that the upload ran with; empty when unknown.
    QString getCongestionControl() const;

    qlonglong getSizeOfXmInBytes() const { return sizeOfXmInBytes; }
    void setSizeOfXmInBytes(qlonglong bytes) { sizeOfXmInBytes = bytes; }
    const QList<MyLocation> &getAllLocations() const { return allLocations; }
    void setAllLocations(const QList<MyLocation> &locations) { allLocations = locations; }

    using Location = std::unique_ptr<DoubleLocation>;
    void setDownloadLocationStart(Location location)
    {
        downloadLocationStart = std::move(location);
    }
    void setDownloadLocationEnd(Location location) { downloadLocationEnd = std::move(location); }
    void setUploadLocationStart(Location location) { uploadLocationStart = std::move(location); }
    void setUploadLocationEnd(Location location) { uploadLocationEnd = std::move(location); }
    void setRttLocationStart(Location location) { rttLocationStart = std::move(location); }
    void setRttLocationEnd(Location location) { rttLocationEnd = std::move(location); }

    RemoteInitialValues *getInitialValues() const { return initValues; }

    /// Appends the entry and numbers it, from 1 on. Borrowed like a phase result.
    void addTestResultLog(TestResultLog *entry);
    const QList<TestResultLog *> &getTestResultLogs() const { return log; }

    /// bit/s as the server measured them.
    void setServerSideUploadSpeeds(qint64 min, qint64 avg, qint64 max);
    /// Takes "min;avg;max"; anything that has not three parts is logged and changes nothing.
    void setServerSideUpload(const QString &answer);
    /// The server's speeds are those of the upload: it had one that was long enough for a rate.
    bool hasServerUpload() const;
    qint64 getServerUploadMin() const { return ssUploadSpeeds.value(TR_MIN); }
    qint64 getServerUploadAvg() const { return ssUploadSpeeds.value(TR_AVG); }
    qint64 getServerUploadMax() const { return ssUploadSpeeds.value(TR_MAX); }

    /// The cell ids of the log entries, separated by commas.
    QString getCsvStringWithCellIds() const;

    /// Great-circle distance by the haversine formula on a sphere of radius 6371 km.
    static double distanceInKMFrom(const DoubleLocation &a, const DoubleLocation &b);
    static double deg2rad(double degrees);

    /// Fills velocity, distance, duration and accuracies from the first and the last position.
    void calculateAdditionalValues();
    double getVelocity() const { return velocity; } ///< km/h in steps of 5; negative when unknown
    double getDistance() const { return distance; } ///< m, -1 when unknown
    // Means of what is known of both positions, m; 0 and below when nothing is.
    double getAccuracyVert() const { return accuracyvert; }
    double getAccuracyHor() const { return accuracyhor; }
    double getDistanceDurationInSeconds() const { return distanceDurationInSeconds; }

    /// The connection type over the whole test as the report names it: the one mode code, or a
    /// "Mixed(WLAN,Mobile)" or "Mobile(mixed)" of several.
    QString reportConnectionType() const;
    /// The same as results store it: the one mode's untranslated display key, or the mixed texts.
    QString storedConnectionType() const;

    /// Everything that is known of the test now: @p surroundings with the figures put in.
    FinishedTest finished(FinishedTest surroundings) const;

private:
    void fillReportOnly(FinishedTest::ReportOnly &report) const;

    RemoteInitialValues *initValues;
    qlonglong myTestId = 0;
    qlonglong timestamp = 0;
    qlonglong testid = 0;
    qlonglong seriesid = 0;
    QString connectionType;
    float userRating = noRating;
    QString userLocation;
    QString testServer;
    double velocity = -1.0;
    double distance = -1.0;
    double accuracyvert = 0;
    double accuracyhor = 0;
    double distanceDurationInSeconds = -1.0;
    Result *downloadResult = nullptr;
    Result *uploadResult = nullptr;
    Result *rttResult = nullptr;
    Result *extraDownloadResult = nullptr;
    Result *extraUploadResult = nullptr;
    std::optional<Delays> idleDelays;
    DataBudget dataBudget;
    qlonglong sizeOfXmInBytes = 0;
    QList<MyLocation> allLocations;
    QList<TestResultLog *> log;
    Location downloadLocationStart;
    Location downloadLocationEnd;
    Location uploadLocationStart;
    Location uploadLocationEnd;
    Location rttLocationStart;
    Location rttLocationEnd;
    QHash<int, qint64> ssUploadSpeeds;
};

} // namespace velometer
