#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <utility>

namespace velometer {

/// Static helpers that every folder uses: the clock, the version, the two settings stores, the
/// diagnostic log and the code tables of connection types and locations. No state but the log.
/// Main thread only. Nothing here fails loudly: a missing file, setting or code gives an empty
/// text.
class Utils : public QObject
{
    Q_OBJECT

public:
    explicit Utils(QObject *parent);

    /// Wall clock in milliseconds since the epoch.
    static qlonglong getTimeInMs();

    /// Nanoseconds since the epoch in whole microseconds, steady: a step of the system clock after
    /// program start does not move it, so differences are durations.
    static qlonglong getTimeInNs();

    static QString getPlainVersion(); ///< "1.3.0"
    static QString getVersion();      ///< "V1.3.0"
    static QString getAppTitle();

    /// The whole text of the file, empty when it cannot be opened.
    static QString readFile(const QString &path);

    /// The program's own settings. Opened anew on every call and written back when the call ends.
    static QString getSettingsValue(QString key);
    static void setSettingsValue(QString key, QString value);

    /// The settings shared by the family of programs: "UserId", "SeriesId", "TestId".
    static QString getSettingsCommonValue(QString key);
    static void setSettingsCommonValue(QString key, QString value);
    /// Several at once: all of them are on the disk, or none.
    static void setSettingsCommonValues(const QList<std::pair<QString, QString>> &values);
    /// The next reading takes what is on the disk, whatever this program has read before. For one
    /// who has locked out all that write: what changes meanwhile may be missed again.
    static void forgetSettingsCommonValues();

    /// Adds "TIME: text" to the diagnostic log, which keeps its first 1000 lines, and writes the
    /// line to the debug output in any case. A text from outside may be long: a line keeps its
    /// first 2000 characters, so that the log always fits into a report. A line that repeats the
    /// one before takes its place there and says how many they are: a peer that talks much must not
    /// push out what comes later. Lines of one @p kind repeat each other; otherwise equal texts do.
    static void addLogEntry(QString text, QString kind = {});

    /// All log lines, each escaped for XML and ended by CR LF. The ampersand is escaped after the
    /// angle brackets: "<" comes out as "&amp;lt;". The service undoes it in the same order.
    /// @p last comes after them, as one more line, unless it is empty.
    static QString getLogEntries(const QString &last = {});

    /// Display text of a network mode code ("GsmMode" ...); empty for an unknown code.
    static QString trConnectionType(QString code);
    /// Short display text of a network mode code: mobile, WLAN or other.
    static QString trConnectionTypeShort(QString code);
    /// The untranslated key behind trConnectionType, which is what results store. From any thread.
    static QString connectionTypeKey(const QString &code);

    /// Display texts of a location code ("Indoor" ...); empty for an unknown code.
    static QString trLocation(QString code);
    static QString trLocationShort(QString code);

    /// True when a stored connection type is mobile only: "Mobile(...)".
    static bool connectionTypeIsMobile(QString type);

    static bool isOldSymbian();
};

} // namespace velometer
