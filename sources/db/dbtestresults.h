#pragma once

#include <QString>

namespace velometer {

/// One row of the results table: what a list shows of a test.
class DBTestResults
{
public:
    qulonglong myTestId = 0; ///< row id
    double timestamp = 0;    ///< ms
    qlonglong seriesId = 0;
    qlonglong testId = 0;
    double downloadSpeed = 0;     ///< bit/s
    double uploadSpeed = 0;       ///< bit/s, the server's figure where there is one
    double uploadSpeedClient = 0; ///< bit/s
    qlonglong rtt = 0;            ///< ms, 0 when there is none
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
