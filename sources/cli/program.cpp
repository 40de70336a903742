#include "cli/program.h"

#include "app/desktopopener.h"
#include "app/serverselection.h"
#include "app/trackupload.h"
#include "app/userpage.h"
#include "cli/devicecontext.h"
#include "cli/pageprinter.h"
#include "cli/serverformat.h"
#include "cli/testprinter.h"
#include "cli/testrunner.h"
#include "cli/textformat.h"
#include "cli/trackrunner.h"
#include "data/testdetails.h"
#include "data/testservertable.h"
#include "db/databasemanager.h"
#include "figures/csvformat.h"
#include "figures/exportformat.h"
#include "figures/finishedtest.h"
#include "figures/jsonformat.h"
#include "measurement/testids.h"
#include "platform/platform.h"
#include "utils/deployment.h"
#include "utils/sockets.h"
#include "utils/utils.h"

#include <QFile>
#include <QSettings>
#include <QUrl>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <utility>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace velometer {

using Command = CommandLine::Command;
using Format = CommandLine::Format;

namespace {

ProgressLine::Mode progressMode(const CommandLine &options, const Output &err)
{
    // Log lines would tear a line that rewrites itself.
    const bool rewritable =
        err.isTerminal() && !options.verbose && qEnvironmentVariable("TERM") != "dumb"_L1;
    const auto shown = rewritable ? ProgressLine::Mode::Rewriting : ProgressLine::Mode::Lines;
    switch (options.progress) {
    case CommandLine::Progress::No: return ProgressLine::Mode::Silent;
    case CommandLine::Progress::Yes: return shown;
    case CommandLine::Progress::Auto: break;
    }
    // The events of a stream are its progress.
    const bool wanted = err.isTerminal() && options.format != Format::JsonStream;
    return wanted ? shown : ProgressLine::Mode::Silent;
}

bool settingsWritable()
{
    // The ids of user, series and test stand there: without them tests could not be told apart.
    return QSettings(u"orvak"_s, u"Velometer"_s).isWritable() &&
           QSettings(u"orvak"_s, u"VelometerCommon"_s).isWritable();
}

} // namespace

Program::Program(CommandLine commandLine, Output &standardOutput, Output &standardError,
                 QString languageOfPages)
    : options(std::move(commandLine))
    , out(standardOutput)
    , err(standardError)
    , language(std::move(languageOfPages))
    , progress(err, progressMode(options, err))
    , table(std::make_unique<TestServerTable>(Deployment::current(), nullptr))
{}

Program::~Program() = default;

void Program::start()
{
    switch (options.command) {
    case Command::Test: return runTests();
    case Command::Results: return end(listResults());
    case Command::Show: return end(showTest());
    case Command::Export: return end(exportTests());
    case Command::Servers: return end(listServers());
    case Command::Context: return describeContext();
    case Command::Resend: return resendReports();
    case Command::NewSeries: return startSeries();
    case Command::Page: return end(showPage());
    case Command::Clear: return end(clearStore());
    case Command::Track: return recordTrack();
    case Command::Tracks: return listTracks();
    case Command::DeleteTrack: return end(deleteTrack());
    }
}

void Program::stop(ExitStatus status)
{
    if (runner) {
        return runner->stop(status);
    }
    if (tracker) {
        return tracker->stop(status);
    }
    end(status);
}

void Program::end(ExitStatus status)
{
    if (!out.error().isEmpty() && status == ExitStatus::Done) {
        status = refuse(ExitStatus::Store,
                        tr("Standard output cannot be written: %1.").arg(out.error()));
    }
    Q_EMIT finished(status);
}

ExitStatus Program::refuse(ExitStatus status, const QString &sentence)
{
    progress.message(sentence);
    return status;
}

// ---- Tests and reports

bool Program::createPlatform()
{
    QString error;
    platform = Platform::create(options.platform, &error);
    if (!platform) {
        refuse(ExitStatus::Usage, error);
    }
    return platform != nullptr;
}

TestRunner::Plan Program::testPlan() const
{
    return {{options.location, options.count, std::chrono::seconds(options.interval)},
            options.allowRoaming,
            options.budget.value_or(DataBudget::remembered()),
            options.waitPosition,
            options.delays};
}

bool Program::prepareTests()
{
    if (!createPlatform()) {
        end(ExitStatus::Usage);
        return false;
    }
    servers = std::make_unique<ServerSelection>(*platform, nullptr);
    QString error;
    if (!options.server.isEmpty()) {
        // Waiting reports go there once; the tests go on where they went.
        const bool found = options.command == Command::Resend
                               ? servers->chooseForNow(options.server, &error)
                               : servers->choose(options.server, &error);
        if (!found) {
            end(refuse(ExitStatus::Usage, error));
            return false;
        }
    }
    if (!settingsWritable()) {
        end(refuse(ExitStatus::Store, tr("The settings cannot be written.")));
        return false;
    }
    if (!openStore()) {
        end(storeFailure());
        return false;
    }
    Sockets::setProtocol(options.protocol);
    return true;
}

bool Program::createRunner()
{
    if (!prepareTests()) {
        return false;
    }
    printer = std::make_unique<TestPrinter>(options.format, out, language);
    runner = std::make_unique<TestRunner>(testPlan(), *servers, *printer, progress, *platform);
    connect(runner.get(), &TestRunner::finished, this, &Program::end);
    return true;
}

void Program::runTests()
{
    if (!createRunner()) {
        return;
    }
    if (!options.resume) {
        runner->start();
    } else if (!runner->resume()) {
        end(refuse(ExitStatus::Usage, tr("No interrupted series waits to be continued.")));
    }
}

void Program::resendReports()
{
    if (!openStoreIfThere()) {
        return end(storeFailure());
    }
    if (!gDB->isOpen() || gDB->countUnsentXMLFiles() == 0) {
        out.line(tr("No report waits."));
        return end(ExitStatus::Done);
    }
    if (!createRunner()) {
        return;
    }
    const auto print = [this](ExitStatus) {
        const TestOutcome &outcome = runner->getController().getOutcome();
        out.line(tr("Reports delivered: %1, still waiting: %2.")
                     .arg(outcome.resent)
                     .arg(outcome.waiting));
    };
    disconnect(runner.get(), &TestRunner::finished, this, &Program::end);
    connect(runner.get(), &TestRunner::finished, this, print);
    connect(runner.get(), &TestRunner::finished, this, &Program::end);
    runner->resend();
}

void Program::startSeries()
{
    if (!settingsWritable()) {
        return end(refuse(ExitStatus::Store, tr("The settings cannot be written.")));
    }
    ids = std::make_unique<TestIds>();
    ids->startNewSeries(this, [this] {
        out.line(tr("Series %1").arg(ids->getSeriesId()));
        end(ExitStatus::Done);
    });
}

ExitStatus Program::showPage()
{
    const QString address = UserPage::address(language);
    if (address.isEmpty()) {
        return refuse(ExitStatus::Broken,
                      tr("You have no page yet: the service gives you one with the first test."));
    }
    PagePrinter::print(address, out);
    return !options.open || DesktopOpener::open(QUrl(address))
               ? ExitStatus::Done
               : refuse(ExitStatus::Broken, tr("Nothing opens addresses here (xdg-open is "
                                               "missing); open it in a browser by hand."));
}

// ---- The store

bool Program::openStore()
{
    if (gDB->isOpen()) {
        return true;
    }
    const bool opened = gDB->openDB();
    if (const QString file = gDB->getAsideFile(); !file.isEmpty()) {
        progress.message(
            tr("The results of another version of this program are kept in %1.").arg(file));
    }
    return opened;
}

bool Program::openStoreIfThere()
{
    // Who only looks leaves no empty store behind. Only a missing file is an empty store: a path
    // that leads through a file or a closed directory is a mistake.
    const QByteArray file = QFile::encodeName(DatabaseManager::databaseFile());
    if (::access(file.constData(), F_OK) != 0) {
        return errno == ENOENT;
    }
    return openStore();
}

ExitStatus Program::storeFailure()
{
    return refuse(
        ExitStatus::Store,
        tr("The results in %1 cannot be opened or written.").arg(DatabaseManager::databaseFile()));
}

std::vector<std::unique_ptr<DBTestResults>> Program::storedTests(int limit, bool *ok)
{
    *ok = openStoreIfThere();
    if (!gDB->isOpen()) {
        return {};
    }
    auto rows = gDB->getAllResults();
    if (limit > 0 && rows.size() > static_cast<size_t>(limit)) {
        rows.resize(static_cast<size_t>(limit));
    }
    return rows;
}

ExitStatus Program::listResults()
{
    bool ok = false;
    const auto rows = storedTests(options.limit, &ok);
    if (!ok) {
        return storeFailure();
    }
    QList<FinishedTest> tests;
    if (options.format == Format::Csv) {
        out.write(CsvFormat::testHeader());
    }
    for (const auto &row : rows) {
        const FinishedTest test = gDB->getTest(*row);
        if (options.format == Format::Json) {
            out.write(JsonFormat::line(JsonFormat::test(test)));
        } else if (options.format == Format::Csv) {
            out.write(CsvFormat::test(test));
        } else {
            tests.append(test);
        }
    }
    if (options.format == Format::Text) {
        out.write(TextFormat::table(tests).toUtf8());
    }
    return ExitStatus::Done;
}

ExitStatus Program::showTest()
{
    bool ok = false;
    const auto rows = storedTests(0, &ok);
    if (!ok) {
        return storeFailure();
    }
    const auto &wanted = options.storedTest;
    const auto isWanted = [&](const std::unique_ptr<DBTestResults> &row) {
        if (wanted.row != 0) {
            return row->myTestId == wanted.row;
        }
        return row->seriesId == wanted.series && row->testId == wanted.test;
    };
    const auto row = std::find_if(rows.begin(), rows.end(), isWanted);
    if (row == rows.end()) {
        const QString name = wanted.row != 0 ? QString::number(wanted.row)
                                             : u"%1/%2"_s.arg(wanted.series).arg(wanted.test);
        return refuse(ExitStatus::Usage, tr("There is no stored test %1.").arg(name));
    }
    const FinishedTest test = gDB->getTest(**row);
    if (options.format == Format::Json) {
        out.write(JsonFormat::line(JsonFormat::test(test)));
    } else if (options.format == Format::Csv) {
        out.write(CsvFormat::testHeader() + CsvFormat::test(test));
    } else {
        out.write(TextFormat::test(test, QString()).toUtf8());
    }
    return ExitStatus::Done;
}

ExitStatus Program::exportTests()
{
    if (options.trackRow > 0) {
        return exportTrack();
    }
    bool ok = false;
    const auto rows = storedTests(0, &ok);
    if (!ok) {
        return storeFailure();
    }
    const auto kind = options.format == Format::Csv       ? ExportFormat::Kind::Csv
                      : options.format == Format::GeoJson ? ExportFormat::Kind::GeoJson
                      : options.format == Format::Gpx     ? ExportFormat::Kind::Gpx
                                                          : ExportFormat::Kind::Json;
    out.write(ExportFormat::begin(kind));
    bool first = true;
    for (const auto &row : rows) {
        out.write(ExportFormat::piece(kind, gDB->getTest(*row), std::exchange(first, false)));
    }
    out.write(ExportFormat::end(kind));
    return ExitStatus::Done;
}

ExitStatus Program::clearStore()
{
    bool ok = false;
    const auto tests = storedTests(0, &ok).size();
    if (!ok) {
        return storeFailure();
    }
    const int reports = gDB->isOpen() ? gDB->countUnsentXMLFiles() : 0;
    if (!options.yes) {
        return refuse(ExitStatus::Usage,
                      tr("This would delete %1 stored tests and %2 waiting reports in %3; say "
                         "--yes to do it.")
                          .arg(QString::number(tests), QString::number(reports),
                               DatabaseManager::databaseFile()));
    }
    if (gDB->isOpen()) {
        if (!gDB->resetDB()) {
            return storeFailure();
        }
    }
    out.line(tr("Deleted %1 stored tests and %2 waiting reports.")
                 .arg(QString::number(tests), QString::number(reports)));
    return ExitStatus::Done;
}

// ---- Servers and device

const TestServer *Program::selectedServer() const
{
    return table->find(Utils::getSettingsValue(u"TestServer.Hostname"_s),
                       Utils::getSettingsValue(u"TestServer.Port"_s).toInt());
}

ExitStatus Program::listServers()
{
    const TestServer *selected = selectedServer();
    if (options.format == Format::Csv) {
        out.write(ServerFormat::csvHeader());
    }
    for (const TestServer *server : table->servers()) {
        if (options.format == Format::Json) {
            out.write(JsonFormat::line(ServerFormat::json(*server, server == selected)));
        } else if (options.format == Format::Csv) {
            out.write(ServerFormat::csv(*server, server == selected));
        }
    }
    if (options.format == Format::Text) {
        out.write(TextFormat::servers(table->servers(), selected).toUtf8());
    }
    return ExitStatus::Done;
}

void Program::describeContext()
{
    if (!createPlatform()) {
        return end(ExitStatus::Usage);
    }
    context = std::make_unique<DeviceContext>(*platform);
    connect(context.get(), &DeviceContext::ready, this, &Program::printContext);
    context->look(options.watch ? DeviceContext::Until::Interrupted : DeviceContext::Until::Ready);
}

void Program::printContext()
{
    if (options.format == Format::Json) {
        out.write(context->json());
    } else if (options.format == Format::Csv) {
        out.write(context->csv());
    } else {
        out.write(context->text().toUtf8() + (options.watch ? "\n" : ""));
    }
    // A watcher goes on until it is interrupted, or until nobody reads any more.
    if (!options.watch || !out.error().isEmpty() || out.isGone()) {
        end(ExitStatus::Done);
    }
}

} // namespace velometer
