#pragma once

#include "reports/connectionclass.h"
#include "reports/testquery.h"

#include <QByteArray>
#include <QDataStream>
#include <QString>

#include <array>
#include <map>
#include <set>
#include <vector>

namespace velometer {

enum class StatisticsBy { Month, Type, Operator, Server, Cell };

/// Figures of all users' verified tests that may be told to everybody.
struct Statistics
{
    /// At least minTests tests of at least minUsers users, else there is no figure.
    struct Figure
    {
        qint64 count = 0;
        qint64 p10 = 0, median = 0, p90 = 0;
    };
    struct Place
    {
        double latitude = 0, longitude = 0; ///< of the south-western corner, degrees
        double height = 0, width = 0;       ///< degrees
    };
    struct Row
    {
        QString key;                         ///< "2024-05", "lte", "228-01", a host, "ROW,COLUMN"
        std::optional<ConnectionClass> type; ///< nothing: all types
        std::optional<Place> place;          ///< of a cell
        std::optional<Figure> download, upload, rtt;
        std::optional<Figure> downloadRtt, uploadRtt; ///< under load that BBR made
        std::optional<Figure> rsrp;                   ///< of tracks, in a cell: dBm; counts points
    };
    static constexpr qint64 minTests = 10;
    static constexpr std::size_t minUsers = 3;

    qint64 updated = 0; ///< ms since 1970
    QList<Row> rows;    ///< by key, all types before the single ones; none without a figure
};

/// Counts tests, one after the other, into histograms whose bins are 3 per cent wide: what is read
/// from them is right to within 2 per cent, and a million tests take no more room than a thousand.
class StatisticsTable
{
public:
    struct Test
    {
        qint64 user = 0;
        qint64 time = 0; ///< ms since 1970
        ConnectionClass type = ConnectionClass::Other;
        QString operatorCode; ///< empty when unknown
        QString server;
        std::optional<double> latitude, longitude;
        std::optional<qint64> download, upload, rtt, downloadRtt, uploadRtt;
    };
    void add(const Test &test);

    /// What tracks heard in a cell: @p points at @p rsrp dBm.
    struct Signal
    {
        qint64 user = 0;
        ConnectionClass type = ConnectionClass::Other;
        double latitude = 0, longitude = 0;
        int rsrp = 0;
        qint64 points = 0;
    };
    void add(const Signal &heard);

    /// The key of the cell around a place; empty near the poles.
    static QString cellOf(double latitude, double longitude);

    /// Without the time.
    Statistics figures(StatisticsBy by) const;

    /// What was counted for one key, to be kept and loaded again.
    struct Rolled
    {
        StatisticsBy by = StatisticsBy::Month;
        QString key;
        QByteArray counts;
    };
    /// All that have changed since the last time.
    QList<Rolled> takeChanged();
    /// False when it is damaged.
    bool load(const Rolled &rolled);

private:
    /// How often what was counted, by whom.
    struct Counts
    {
        std::map<int, qint64> bins;
        qint64 count = 0;
        std::vector<qint64> users; ///< the first of them, as many as are needed

        void add(qint64 user, int bin, qint64 times);
        bool mayBeTold() const;
        int at(double share) const;
    };
    struct Histogram : Counts
    {
        void add(qint64 user, const std::optional<qint64> &value);
        std::optional<Statistics::Figure> figure() const;
    };
    /// Of whole dBm, each a bin.
    struct Levels : Counts
    {
        std::optional<Statistics::Figure> figure() const;
    };
    struct Histograms
    {
        Histogram download, upload, rtt, downloadRtt, uploadRtt;
        Levels rsrp;
    };
    struct Group
    {
        Histograms all;
        std::map<ConnectionClass, Histograms> types;
    };
    void count(StatisticsBy by, const QString &key, const Test &test);
    Group *group(StatisticsBy by, const QString &key);
    static void write(QDataStream &stream, const Histograms &histograms);
    static bool read(QDataStream &stream, Histograms &histograms);

    std::map<std::pair<StatisticsBy, QString>, Group> groups;
    std::set<std::pair<StatisticsBy, QString>> changed;
};

} // namespace velometer
