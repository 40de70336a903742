#pragma once

#include "figures/finishedtest.h"

#include <QCoreApplication>
#include <QList>
#include <QString>
#include <QStringList>

#include <chrono>

namespace velometer {

class TestServer;

/// What a person reads, translated. Every text ends with a line end.
class TextFormat
{
    Q_DECLARE_TR_FUNCTIONS(TextFormat)

public:
    /// One test on a few lines. @p pageAddress shows all of the user's tests, empty when unknown.
    static QString test(const FinishedTest &finished, const QString &pageAddress);

    /// A line for each test under a line of headings.
    static QString table(const QList<FinishedTest> &tests);

    static QString servers(const QList<TestServer *> &servers, const TestServer *selected);

    /// @p rows under each other; unknown values are said to be so.
    static QString facts(const QList<std::pair<QString, FinishedTest::Text>> &rows);

    /// A stored connection type in the user's language.
    static QString connectionType(const QString &stored);

    /// Rows of cells under each other, in columns.
    static QString aligned(const QList<QStringList> &rows);
    /// A moment in ms since the epoch, by the clock of this place.
    static QString localTime(const FinishedTest::Number &ms);
    /// "1:02:03".
    static QString duration(std::chrono::milliseconds time);

    static QString rate(const FinishedTest::Number &bitsPerSecond);
    static QString milliseconds(const FinishedTest::Number &ns);
    static QString megabytes(const FinishedTest::Number &bytes);
    static QString unknown();
};

} // namespace velometer
