#pragma once

#include "reports/testquery.h"

#include <QHash>

#include <functional>
#include <vector>

namespace velometer {

/// The figures of all tests of one user in memory: what summaries, charts and maps are computed
/// from without a look at the reports, in about a millisecond for ten thousand tests. Computing is
/// safe from every thread while nobody adds.
class TestTable
{
public:
    /// Beyond these the oldest rows are left out of figures: a user's share of the memory.
    static constexpr int maxTests = 500'000;

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
    qint64 count(const TestScope &scope) const;
    Summary summary(const TestScope &scope) const;
    Buckets buckets(const TestScope &scope, const BucketQuery &query) const;
    Distribution distribution(const TestScope &scope, const DistributionQuery &query) const;
    MapData map(const TestScope &scope, const MapQuery &query) const;
    Facets facets(const TestScope &scope) const;

private:
    /// Smaller than a Row; -1 and NaN where nothing is known.
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
