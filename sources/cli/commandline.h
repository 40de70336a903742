#pragma once

#include "app/trackrecorder.h"
#include "data/databudget.h"
#include "data/delayplan.h"
#include "platform/choice/platformchoice.h"

#include <QAbstractSocket>
#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace velometer {

/// What the user asks for: a plain value, complete and in range once parse() has returned it.
struct CommandLine
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    enum class Command {
        Test,
        Results,
        Show,
        Export,
        Servers,
        Context,
        Resend,
        NewSeries,
        Page,
        Clear,
        Track,
        Tracks,
        DeleteTrack,
    };
    enum class Format { Text, Json, JsonStream, Csv, GeoJson, Gpx };
    enum class Progress { Auto, Yes, No };

    /// A stored test by its row, or by its number in a series.
    struct StoredTest
    {
        qulonglong row = 0; ///< 0 when series and test say it
        qlonglong series = 0;
        qlonglong test = 0;
    };

    Command command = Command::Test;
    Format format = Format::Text;
    Progress progress = Progress::Auto;
    QString server; ///< name or endpoint, empty for the remembered one
    QString location = QStringLiteral("Unknown");     ///< location code
    int count = 1;                                    ///< tests, 1 to 100000
    int interval = 0;                                 ///< s from start to start, 0 to 604800
    bool resume = false;                              ///< go on with an interrupted series
    std::optional<DataBudget> budget;                 ///< none: as the settings say
    std::optional<std::chrono::seconds> waitPosition; ///< none: as it makes sense
    DelayPlan delays;
    int limit = 0; ///< most results to list, 0 for all
    bool allowRoaming = false;
    bool yes = false;
    bool open = false; ///< in the browser
    QAbstractSocket::NetworkLayerProtocol protocol = QAbstractSocket::AnyIPProtocol;
    StoredTest storedTest;
    TrackRecorder::Plan track;
    std::chrono::seconds duration{0}; ///< of a track; 0: until it is interrupted
    bool isLocal = false;             ///< the track stays on this device
    bool send = false;                ///< the tracks that wait
    qulonglong trackRow = 0;          ///< a stored track; 0: none was named
    QString configFile;               ///< empty for the usual places
    QString dataDir;                  ///< empty for the usual place
    PlatformChoice platform;
    bool watch = false; ///< print again whenever something changes
    bool verbose = false;
    QString answer; ///< print this instead of working: a help page, the version, completions

    /// Reads @p arguments (without the program's name). At the first word that makes no sense
    /// nothing comes back and @p error says in one sentence what is wrong.
    static std::optional<CommandLine> parse(const QStringList &arguments, QString *error);
};

} // namespace velometer
