#pragma once

#include <QObject>
#include <QString>

namespace velometer {

class TestResults;

/// One row of the results table: the figures of a finished test.
class DBTestResults : public QObject
{
    Q_OBJECT

public:
    explicit DBTestResults(QObject *parent = nullptr);

    /// The row that @p results makes. Upload is the server's average when there is one, else the
    /// client's; the round-trip time is in whole milliseconds, 0 when there is none.
    void createDBTestResultFromTestResult(const TestResults *results);

    qulonglong myTestId = 0; ///< row id
    double timestamp = 0;    ///< ms
    qlonglong seriesId = 0;
    qlonglong testId = 0;
    double downloadSpeed = 0;     ///< bit/s
    double uploadSpeed = 0;       ///< bit/s
    double uploadSpeedClient = 0; ///< bit/s
    qlonglong rtt = 0;            ///< ms
    QString connectionType;       ///< untranslated
    QString location;             ///< location code
    QString testServer;           ///< host name
    double velocity = -1;         ///< km/h
    double distance = -1;         ///< m
    double accuracyvert = 0;
    double accuracyhor = 0;
    double distanceDurationInSeconds = -1;
};

} // namespace velometer
