#include "utils/utils.h"

#include "utils/clock.h"

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStringList>
#include <QTextStream>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr qsizetype maxLogLines = 1000;
constexpr qsizetype maxLogLineLength = 2000;

QStringList logentries;

struct LastEntry
{
    QString kind;
    int count = 0;
    bool isKept = false; ///< it stands at the end of the log
};
LastEntry lastEntry;

struct Code
{
    QLatin1StringView code;
    const char *longKey;
    const char *shortKey;
};

constexpr const char *shortMobile = QT_TRANSLATE_NOOP("velometer::Utils", "conntypeMobile");
constexpr const char *shortWlan = QT_TRANSLATE_NOOP("velometer::Utils", "conntypeWLAN");
constexpr const char *shortOther = QT_TRANSLATE_NOOP("velometer::Utils", "conntypeother");

const Code connectionTypes[] = {
    {"Unknown"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "Unknown"), shortOther},
    {"GsmMode"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "Mobile(GSM)"), shortMobile},
    {"CdmaMode"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "Mobile(CDMA)"), shortMobile},
    {"WcdmaMode"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "Mobile(UMTS)"), shortMobile},
    {"WlanMode"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "WLAN"), shortWlan},
    {"EthernetMode"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "Ethernet"), shortOther},
    {"BluetoothMode"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "Bluetooth"), shortOther},
    {"WimaxMode"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "Wimax"), shortOther},
    {"LteMode"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "Mobile(LTE)"), shortMobile},
    {"NrMode"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "Mobile(5G)"), shortMobile},
};

const Code locations[] = {
    {"Unknown"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "LocationUnknown"),
     QT_TRANSLATE_NOOP("velometer::Utils", "LocationUnknownShort")},
    {"Indoor"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "LocationIndoor"),
     QT_TRANSLATE_NOOP("velometer::Utils", "LocationIndoorShort")},
    {"Outdoor"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "LocationOutdoor"),
     QT_TRANSLATE_NOOP("velometer::Utils", "LocationOutdoorShort")},
    {"Train"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "LocationTrain"),
     QT_TRANSLATE_NOOP("velometer::Utils", "LocationTrainShort")},
    {"Car"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "LocationCar"),
     QT_TRANSLATE_NOOP("velometer::Utils", "LocationCarShort")},
    {"Other"_L1, QT_TRANSLATE_NOOP("velometer::Utils", "LocationOther"),
     QT_TRANSLATE_NOOP("velometer::Utils", "LocationOtherShort")},
};

template <typename Table>
const Code *find(const Table &table, const QString &code)
{
    const auto *row = std::find_if(std::begin(table), std::end(table),
                                   [&](const Code &each) { return each.code == code; });
    return row == std::end(table) ? nullptr : row;
}

QString logLine(const QString &text)
{
    return u"%1: %2"_s.arg(QString::number(Utils::getTimeInMs()), text.left(maxLogLineLength));
}

QString read(const QString &application, const QString &key)
{
    return QSettings(u"orvak"_s, application).value(key).toString();
}

void write(const QString &application, const QString &key, const QString &value)
{
    QSettings(u"orvak"_s, application).setValue(key, value);
}

const QString ownStore = u"Velometer"_s;
const QString commonStore = u"VelometerCommon"_s;

} // namespace

Utils::Utils(QObject *parent)
    : QObject(parent)
{}

qlonglong Utils::getTimeInMs()
{
    return Clock::current().wallMs();
}

qlonglong Utils::getTimeInNs()
{
    return Clock::current().steadyUs() * 1000;
}

QString Utils::getPlainVersion()
{
    return QStringLiteral(VELOMETER_VERSION);
}

QString Utils::getVersion()
{
    return u'V' + getPlainVersion();
}

QString Utils::getAppTitle()
{
    return u"Velometer"_s;
}

QString Utils::readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return {};
    }
    return QTextStream(&file).readAll();
}

QString Utils::getSettingsValue(QString key)
{
    return read(ownStore, key);
}

void Utils::setSettingsValue(QString key, QString value)
{
    write(ownStore, key, value);
}

QString Utils::getSettingsCommonValue(QString key)
{
    return read(commonStore, key);
}

void Utils::setSettingsCommonValue(QString key, QString value)
{
    write(commonStore, key, value);
}

void Utils::setSettingsCommonValues(const QList<std::pair<QString, QString>> &values)
{
    QSettings settings(u"orvak"_s, commonStore);
    for (const auto &[key, value] : values) {
        settings.setValue(key, value);
    }
    settings.sync();
}

void Utils::forgetSettingsCommonValues()
{
    // The program's copy of the file is renewed when the file's size or time is another. Neither
    // tells enough: the copy may have been read from the file that another program replaced at that
    // moment and carry the new one's time. A time that nobody can have seen settles it.
    QFile file(QSettings(u"orvak"_s, commonStore).fileName());
    if (file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)) {
        const QDateTime before = file.fileTime(QFileDevice::FileModificationTime);
        file.setFileTime(std::max(QDateTime::currentDateTime(), before.addMSecs(1)),
                         QFileDevice::FileModificationTime);
    }
}

void Utils::addLogEntry(QString text, QString kind)
{
    if (kind.isEmpty()) {
        kind = text;
    }
    const bool repeats = kind == lastEntry.kind;
    if (!repeats) {
        lastEntry = {kind, 0, logentries.size() < maxLogLines};
    }
    ++lastEntry.count;
    if (lastEntry.isKept && repeats) {
        logentries.last() = logLine(text) + u" (%1 times)"_s.arg(lastEntry.count);
    } else if (lastEntry.isKept) {
        logentries.append(logLine(text));
    }
    qDebug().noquote() << logLine(text);
}

QString Utils::getLogEntries(const QString &last)
{
    QString all;
    for (QString line : last.isEmpty() ? logentries : logentries + QStringList(last)) {
        line.replace(u'<', "&lt;"_L1);
        line.replace(u'>', "&gt;"_L1);
        line.replace(u'&', "&amp;"_L1);
        line.replace(u'\'', "&apos;"_L1);
        line.replace(u'"', "&quot;"_L1);
        all += line + "\r\n"_L1;
    }
    return all;
}

QString Utils::trConnectionType(QString code)
{
    const Code *row = find(connectionTypes, code);
    return row ? tr(row->longKey) : QString();
}

QString Utils::trConnectionTypeShort(QString code)
{
    const Code *row = find(connectionTypes, code);
    return tr(row ? row->shortKey : shortOther);
}

QString Utils::connectionTypeKey(const QString &code)
{
    const Code *row = find(connectionTypes, code);
    return row ? QString::fromLatin1(row->longKey) : QString();
}

QString Utils::trLocation(QString code)
{
    const Code *row = find(locations, code);
    return row ? tr(row->longKey) : QString();
}

QString Utils::trLocationShort(QString code)
{
    const Code *row = find(locations, code);
    return row ? tr(row->shortKey) : QString();
}

bool Utils::connectionTypeIsMobile(QString type)
{
    return type.contains("Mobile("_L1);
}

bool Utils::isOldSymbian()
{
    return qstrcmp(qVersion(), "4.6.3") == 0;
}

} // namespace velometer
