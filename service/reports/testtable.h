#pragma once

#include "reports/testquery.h"

#include <QHash>

#include <functional>
#include <vector>

namespace velometer {

/// The figures of all tests of one user in memory: what lists, summaries, charts and maps are made
/// from without a look at the reports, in about a millisecond for ten thousand tests. Computing is
/// safe from every thread while nobody adds.
class TestTable
{
public:
    /// Beyond these the oldest tests are left out of lists and figures: a user's share of the
    /// memory, and two years with a test a minute.
    static constexpr int maxTests = 1'000'000;

    /// One test; server, location and operator as in TestRow, their texts are kept once.
    struct Row
    {
        qint64 id = 0;
        qint64 time = 0;
        qint64 series = 0;
        std::optional<qint64> download, upload, rtt;
        qint64 bytes = 0;
        std::optional<double> latitude, longitude, accuracy;
        ConnectionClass type = ConnectionClass::Other;
        bool verified = false;
        QString server, location, operatorCode, network;
    };
    void add(const Row &row);

    qint64 size() const { return static_cast<qint64>(entries.size()); }
    qint64 lastId() const { return greatestId; } ///< 0 without tests

    // Each looks at the tests of the filter and bounds of @p scope.
    /// Some ids of a sorted list of tests.
    struct Listed
    {
        QList<qint64> ids;
        qint64 count = 0; ///< of the whole list
        QString next;     ///< cursor of what follows; empty at the end
    };
    Listed list(const TestScope &scope, const TestOrder &order) const;
    Summary summary(const TestScope &scope) const;
    Buckets buckets(const TestScope &scope, const BucketQuery &query) const;
    Distribution distribution(const TestScope &scope, const DistributionQuery &query) const;
    MapData map(const TestScope &scope, const MapQuery &query) const;
    Facets facets(const TestScope &scope) const;

private:
    /// Where no figure is known.
    static constexpr qint64 none = -1;

    /// Smaller than a Row; none and NaN where nothing is known.
    struct Entry
    {
        qint64 id;
        qint64 time;
        qint64 series;
        qint64 download, upload, rtt;
        qint64 bytes;
        double latitude, longitude;
        float accuracy;
        quint32 server, location, operatorCode; ///< indices into the texts
        ConnectionClass type;
        bool verified;
    };
    /// Texts by the order of their first coming.
    struct Texts
    {
        QStringList list;
        QHash<QString, quint32> numbers;
        quint32 number(const QString &text);
    };
    class Selection;
    struct SortKey;
    class Sorting;

    void forEach(const TestScope &scope, const std::function<void(const Entry &)> &visit) const;
    static qint64 figure(const Entry &entry, Metric metric);

    std::vector<Entry> entries;
    qint64 greatestId = 0;
    Texts servers, locations, operators;
    struct Name
    {
        qint64 id = 0; ///< of the test that told it
        QString text;
    };
    QHash<quint32, Name> operatorNames; ///< as the latest network of each called itself
};

} // namespace velometer
