#pragma once

#include "cli/commandline.h"
#include "cli/exitstatus.h"
#include "cli/output.h"
#include "cli/progressline.h"
#include "cli/testrunner.h"

#include <QObject>

#include <memory>
#include <vector>

namespace velometer {

class DBTestResults;
class Platform;
class ServerSelection;
class TestIds;
class TestPrinter;
class TestServer;
class TestServerTable;
class TrackRunner;

/// One call of the program: the command of a command line, from start() to finished(). The
/// deployment and the database's directory are set. Main thread only, needs an event loop.
class Program : public QObject
{
    Q_OBJECT

public:
    /// The outputs are borrowed. @p language of pages on the web: "de" or "en".
    Program(CommandLine options, Output &standardOutput, Output &standardError, QString language);
    ~Program() override;

    /// Does the command; ends in exactly one finished(), which may come before this returns.
    void start();
    /// Ends the running command with @p status as soon as what it has is kept.
    void stop(ExitStatus status);

Q_SIGNALS:
    void finished(ExitStatus status);

private:
    // Commands that are done when they return.
    ExitStatus listResults();
    ExitStatus showTest();
    ExitStatus exportTests();
    ExitStatus listServers();
    ExitStatus clearStore();
    ExitStatus showPage();
    ExitStatus exportTrack();
    ExitStatus deleteTrack();
    // Commands that take their time, and end in end().
    void runTests();
    void recordTrack();
    void listTracks();
    void printTracks(ExitStatus status);
    void resendReports();
    void describeContext();
    void startSeries();

    void printContext();
    void end(ExitStatus status);
    ExitStatus refuse(ExitStatus status, const QString &sentence);
    bool createPlatform();
    bool prepareTests();
    bool createRunner();
    TestRunner::Plan testPlan() const;
    bool openStore();
    ExitStatus storeFailure();
    /// False when there is a store that cannot be opened, or can be none; see gDB->isOpen().
    bool openStoreIfThere();
    /// The newest first; at most @p limit, 0 for all.
    std::vector<std::unique_ptr<DBTestResults>> storedTests(int limit, bool *ok);
    const TestServer *selectedServer() const;

    const CommandLine options;
    Output &out;
    Output &err;
    const QString language;
    ProgressLine progress;
    std::unique_ptr<TestServerTable> table;
    std::unique_ptr<TestPrinter> printer;
    std::unique_ptr<Platform> platform;
    std::unique_ptr<ServerSelection> servers;
    std::unique_ptr<TestIds> ids;
    std::unique_ptr<TestRunner> runner;
    std::unique_ptr<TrackRunner> tracker;
    std::unique_ptr<class TrackUpload> upload;
    std::unique_ptr<class DeviceContext> context;
};

} // namespace velometer
