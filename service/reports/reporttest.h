#pragma once

#include "figures/finishedtest.h"

#include <QList>
#include <QString>

#include <optional>

namespace velometer {

/// A stored report read back: the inverse of what the client writes. Rates and times are the
/// client's own, whether or not a stream of the service backs them.
struct ReportTest
{
    /// One sample of the test's surroundings.
    struct Phase
    {
        QString name;               ///< "DownloadStart", "RttEnd" ...
        std::optional<qint64> time; ///< ms since 1970
        std::optional<double> latitude, longitude;
        std::optional<qint64> cell;
        QString mode;                 ///< code
        std::optional<qint64> signal; ///< percent
        bool hasLock = false;         ///< the fix was three-dimensional
    };

    /// What the report has no place for is not known: the server's name and address, samples of the
    /// round-trip time, the budget, the report's own fate. Positions have six decimals.
    FinishedTest test;
    QList<Phase> phases; ///< at most maxPhases
    QString log;         ///< the device's diagnostic log, lines as they were written

    /// What the service wrote into the document when it came.
    std::optional<qint64> sentBytes, sentMs;                     ///< of the download
    std::optional<qint64> receivedMin, receivedAvg, receivedMax; ///< bit/s, of the upload

    static constexpr qsizetype maxPhases = 1000;

    /// Of the text in a report, with lines that end in LF.
    static QString unescapedLog(QString text);

    /// Nothing when @p document is damaged. From any thread.
    static std::optional<ReportTest> read(const QString &document);
};

} // namespace velometer
