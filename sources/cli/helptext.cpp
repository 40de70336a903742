// The help pages: CommandLine::helpText.

#include "cli/commandline.h"

using namespace Qt::StringLiterals;

namespace velometer {

QString CommandLine::helpText(Command command, bool overview)
{
    const QString common =
        tr("Everywhere:\n"
           "  --config FILE     where the service lives (else VELOMETER_CONFIG, else\n"
           "                    velometer/deployment.conf)\n"
           "  --data-dir DIR    keep the results there\n"
           "  --verbose         the diagnostic log, to standard error\n"
           "  --version, --help\n");
    const QString statuses =
        tr("Exit status: 0 done, 1 the service refused or broke the test, 2 wrong usage,\n"
           "3 the store cannot be opened or written, 4 roaming or over the data budget,\n"
           "5 no network or no server, 130 interrupted, 143 terminated.\n");
    if (overview) {
        return tr("velometer-cli measures download, upload and round-trip time of this "
                  "connection.\n"
                  "\n"
                  "  velometer-cli [test]       run a test, or a series of them\n"
                  "  velometer-cli results      list the stored tests\n"
                  "  velometer-cli show ID      one stored test\n"
                  "  velometer-cli export       all stored tests for other programs\n"
                  "  velometer-cli servers      the servers to test against\n"
                  "  velometer-cli context      what the device tells about itself right now\n"
                  "  velometer-cli resend       deliver the reports that wait\n"
                  "  velometer-cli new-series   start a new series of tests\n"
                  "  velometer-cli clear        delete all stored tests and waiting reports\n"
                  "\n"
                  "COMMAND --help tells more about each.\n") +
               u'\n' + common + u'\n' + statuses;
    }
    switch (command) {
    case Command::Test:
        return tr("velometer-cli [test] [options]\n"
                  "\n"
                  "  --server NAME|HOST[:PORT]  a server of the list, or any other (port 80)\n"
                  "  --location CODE            Unknown, Indoor, Outdoor, Train, Car or Other\n"
                  "  --count N                  so many tests (1 to 100000)\n"
                  "  --interval SECONDS         from start to start (0 to 604800)\n"
                  "  --resume                   go on with a series that was interrupted\n"
                  "  --max-bytes N              download and upload of a test end when they have "
                  "moved\n"
                  "                             N bytes together (from 100000; 500k, 10M, 2G), 0 "
                  "for\n"
                  "                             no limit; else what the settings page says\n"
                  "  --format text|json|csv     also --json, --csv\n"
                  "  --json-stream              events as they happen, one JSON object a line\n"
                  "  --progress auto|yes|no     to standard error; auto: on a terminal\n"
                  "  --allow-roaming            test even when it may be expensive\n"
                  "  -4, -6                     only IPv4, only IPv6\n"
                  "  --platform system|scripted:FILE|none\n"
                  "                             ask the device, replay a recorded one, or do\n"
                  "                             without modem and position\n"
                  "  --position nmea:FILE|nmea:socket://HOST:PORT|gpsd[://HOST[:PORT]]\n"
                  "                             positions from a receiver, or from a recording at\n"
                  "                             its pace, whatever the platform\n"
                  "\n"
                  "Examples:\n"
                  "  velometer-cli --location train\n"
                  "  velometer-cli test --server sunrise --count 12 --interval 300 --csv\n"
                  "  velometer-cli --position gpsd --count 60 --interval 60\n"
                  "  velometer-cli --json | jq .download.avg_bps\n") +
               u'\n' + common + u'\n' + statuses;
    case Command::Results:
        return tr("velometer-cli results [--format text|json|csv] [--limit N]\n"
                  "\n"
                  "Lists the stored tests, the newest first.\n"
                  "\n"
                  "Examples:\n"
                  "  velometer-cli results --limit 10\n"
                  "  velometer-cli results --json\n") +
               u'\n' + common;
    case Command::Show:
        return tr("velometer-cli show ID [--format text|json|csv]\n"
                  "\n"
                  "One stored test: ID as results lists it, or SERIES/TEST.\n"
                  "\n"
                  "Examples:\n"
                  "  velometer-cli show 17\n"
                  "  velometer-cli show 3/12 --json\n") +
               u'\n' + common;
    case Command::Export:
        return tr("velometer-cli export --format csv|json|geojson|gpx\n"
                  "\n"
                  "All stored tests, the newest first: a table, a JSON object a line, a GeoJSON\n"
                  "collection, or a GPX waypoint for each test whose position is known.\n"
                  "\n"
                  "Examples:\n"
                  "  velometer-cli export --format csv > tests.csv\n"
                  "  velometer-cli export --format gpx > tests.gpx\n") +
               u'\n' + common;
    case Command::Servers:
        return tr("velometer-cli servers [--format text|json|csv]\n"
                  "\n"
                  "The servers to test against; a star marks the one used last.\n"
                  "\n"
                  "Example:\n"
                  "  velometer-cli servers\n") +
               u'\n' + common;
    case Command::Context:
        return tr("velometer-cli context [--watch] [--format text|json|csv]\n"
                  "                      [--platform system|scripted:FILE|none]\n"
                  "                      [--position nmea:FILE|nmea:socket://HOST:PORT|gpsd]\n"
                  "\n"
                  "What the device tells about network, position and itself, and what it does "
                  "not.\n"
                  "With --watch again after every change, until interrupted.\n"
                  "\n"
                  "Examples:\n"
                  "  velometer-cli context --json\n"
                  "  velometer-cli context --position nmea:/dev/ttyACM0\n"
                  "  velometer-cli context --watch\n") +
               u'\n' + common;
    case Command::Resend:
        return tr("velometer-cli resend [--server NAME|HOST[:PORT]] [-4|-6]\n"
                  "\n"
                  "Offers the waiting reports to the service once. Exit status 0: none waits any\n"
                  "more, 1: the service did not take them all, 5: it cannot be reached.\n"
                  "\n"
                  "Example:\n"
                  "  velometer-cli resend\n") +
               u'\n' + common;
    case Command::NewSeries:
        return tr("velometer-cli new-series\n"
                  "\n"
                  "The tests from now on belong to a new series and are counted from 1.\n"
                  "\n"
                  "Example:\n"
                  "  velometer-cli new-series && velometer-cli --count 5 --interval 60\n") +
               u'\n' + common;
    case Command::Clear:
        return tr("velometer-cli clear --yes\n"
                  "\n"
                  "Deletes all stored tests and all waiting reports. Without --yes it only says\n"
                  "what it would delete.\n"
                  "\n"
                  "Example:\n"
                  "  velometer-cli clear --yes\n") +
               u'\n' + common;
    }
    Q_UNREACHABLE();
}

} // namespace velometer
