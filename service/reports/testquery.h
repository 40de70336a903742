#pragma once

#include "net/urlquery.h"
#include "reports/connectionclass.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

/// What is asked about a user's tests, and what comes back: plain values. Times are ms since 1970,
/// rates bit/s, round-trip times ns, positions degrees; nothing where nothing is known. A figure of
/// a test is there only when it may be shown: rates of reports that no stream backs, and what no
/// network gives, are left out and count nowhere.
namespace velometer {

/// Which tests. What is empty does not restrict.
struct TestFilter
{
    std::optional<qint64> from; ///< first moment
    std::optional<qint64> to;   ///< first moment after
    QList<ConnectionClass> types;
    QStringList servers;
    QList<qint64> series;
    QStringList locations;      ///< codes
    QStringList operators;      ///< "228-01"
    bool verified = false;      ///< those alone
    std::optional<qint64> test; ///< the one with this row's id

    /// Reads from, to, type, server, series, location, operator, verified and test. Days are UTC
    /// and `to` is still within; other parameters are not looked at. The text is one sentence that
    /// says what is wrong.
    static std::variant<TestFilter, QString> parse(const UrlQuery &query);

    /// The parameters again, always written the same way; empty when nothing restricts.
    QString toQuery() const;

    bool operator==(const TestFilter &) const = default;
};

/// Whose tests, and which of them: both filters must hold.
struct TestScope
{
    qint64 userId = 0;
    TestFilter filter;
    TestFilter bounds; ///< of the share through which somebody looks
};

/// What an address, or a share's key, lets one see.
struct Access
{
    enum class State {
        Granted,
        Unknown, ///< no such user; no such share, or one that has expired
        Deleted, ///< the user has had everything deleted
    };
    State state = State::Unknown;
    qint64 userId = 0;
    bool isShare = false;
    bool showsPositions = true;
    TestFilter bounds;
};

/// One share. Its key is the capability to see what it covers.
struct Share
{
    QString key;
    TestFilter bounds;
    bool showsPositions = false;
    qint64 created = 0;
    qint64 expires = 0;
};

enum class Metric { Download, Upload, Rtt };

/// Where a page of a list ended: the sorted figure of its last test, and its row. Stays good when
/// that test is deleted.
struct Cursor
{
    std::optional<QString> value;
    qint64 id = 0;

    /// Nothing when @p text was not made by toText().
    static std::optional<Cursor> parse(const QString &text);
    QString toText() const; ///< for an address
};

/// Sort order and page of a list of tests.
struct TestOrder
{
    enum class By { Time, Download, Upload, Rtt, Type, Server };
    static constexpr int maxLimit = 500;

    By by = By::Time;
    bool ascending = false; ///< tests without the figure come last in either direction
    int limit = 100;
    std::optional<Cursor> after; ///< a page's `next`, for the same order

    /// Reads sort, order, limit and after; the text is one sentence that says what is wrong.
    static std::variant<TestOrder, QString> parse(const UrlQuery &query);
};

/// One test: by its row, or as its device counts it.
struct TestName
{
    qint64 id = 0;
    qint64 series = 0; ///< 0 where the row says it
    qint64 test = 0;
};

struct TestRow
{
    qint64 id = 0; ///< the row: never given to another test
    qint64 testId = 0;
    qint64 seriesId = 0;
    qint64 time = 0; ///< the client's clock, whatever that says
    QString server;
    ConnectionClass type = ConnectionClass::Other;
    QString connectionType; ///< as in the report
    QString network;
    QString operatorCode; ///< "228-01", empty when unknown
    QString location;
    std::optional<qint64> download, upload, rtt;
    std::optional<double> latitude, longitude, accuracy; ///< accuracy in m
    bool verified = false;
    bool contradicting = false; ///< what the service saw of it tells something else
    bool serviceLate = false;
    QString note;
};

struct TestPage
{
    QList<TestRow> rows;
    qint64 count = 0; ///< of all that the filter lets through
    QString next;     ///< cursor of what follows; empty at the end
};

/// Percentiles by linear interpolation between neighbours, rounded.
struct Spread
{
    qint64 count = 0;
    std::optional<qint64> p10, median, p90;
};

struct Summary
{
    struct Figures
    {
        Spread download, upload, rtt;
    };
    struct OfType
    {
        ConnectionClass type = ConnectionClass::Other;
        qint64 tests = 0;
        Figures figures;
    };
    qint64 tests = 0;
    std::optional<qint64> first, last; ///< of the tests' times
    qint64 bytes = 0;                  ///< moved by download and upload together
    Figures figures;
    QList<OfType> types; ///< those with tests, in the order of all classes
};

struct BucketQuery
{
    static constexpr int maxBuckets = 1000; ///< of all types together

    Metric metric = Metric::Download;
    int buckets = 300; ///< of one type over the whole period, at most
};

struct Buckets
{
    struct Point
    {
        qint64 time = 0; ///< mean of those in the bucket
        qint64 count = 0;
        qint64 min = 0, median = 0, max = 0;
    };
    struct Series
    {
        ConnectionClass type = ConnectionClass::Other;
        QList<Point> points; ///< by time, without empty ones
    };
    qint64 from = 0, to = 0; ///< the filter's period, else that of the tests
    QList<Series> series;    ///< those with points
};

struct DistributionQuery
{
    enum class By { Hour, Type };
    Metric metric = Metric::Download;
    By by = By::Hour;
    int offsetMinutes = 0; ///< of the hours from UTC
};

struct Distribution
{
    struct Group
    {
        int hour = 0;                                  ///< 0 to 23, by hour
        ConnectionClass type = ConnectionClass::Other; ///< by type
        qint64 count = 0;
        qint64 min = 0, p25 = 0, median = 0, p75 = 0, max = 0;
    };
    QList<Group> groups; ///< without empty ones
};

struct MapQuery
{
    double west = -180, south = -90, east = 180, north = 90; ///< degrees; west > east: across 180
    int zoom = 0;                                            ///< of web map tiles, 0 to 22
};

struct MapData
{
    static constexpr int maxPoints = 2000;

    struct Point
    {
        qint64 id = 0;
        qint64 time = 0;
        qint64 seriesId = 0;
        double latitude = 0, longitude = 0;
        std::optional<double> accuracy; ///< m
        ConnectionClass type = ConnectionClass::Other;
        std::optional<qint64> download;
    };
    struct Cell
    {
        double latitude = 0, longitude = 0; ///< of its south-western corner
        double size = 0;                    ///< degrees
        qint64 count = 0;
        std::optional<qint64> median; ///< of the downloads
    };
    QList<Point> points; ///< by time; empty when there are more than maxPoints
    QList<Cell> cells;
};

/// What the tests can be filtered by, with the number of tests; the most frequent, at most 200
/// each.
struct Facets
{
    struct Value
    {
        QString key;
        QString name; ///< of an operator, as networks call themselves; else empty
        qint64 count = 0;
    };
    QList<Value> types, servers, series, locations, operators;
};

} // namespace velometer
