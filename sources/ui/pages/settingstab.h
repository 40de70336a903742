#pragma once

#include "ui/pages/tabbase.h"

#include <QList>

#include <memory>

namespace velometer {

class ServerEntryWidget;
class TestServer;
class TestServerTable;

namespace Ui {
class SettingsTab;
}

/// The settings page: new series, clear the database, the test server, the language, the data
/// budget of a test, series mode. Owns the table of test servers. Reads "AdvMode" when it is made
/// and writes it with every change.
///
/// Everything may be changed at any time: what a running test or series cannot take over waits for
/// the next one, and a new series or clearing the database is refused by the main window, without a
/// word, while a test runs or one of its popups is open.
class SettingsTab : public TabBase
{
    Q_OBJECT

public:
    /// @p mainWindow is the parent and owns the page; it need not have a controller yet.
    explicit SettingsTab(MainWindow *mainWindow);
    ~SettingsTab() override;

    /// Shows the data budget and marks the server that the next test uses; no server when it is
    /// not one of the table, or before there is a controller.
    void updateSettings();
    /// Marks the entry of @p server (one of the table) alone and uses it from the next test on.
    void selectServer(TestServer *server);
    /// Hands @p server (one of the table) to the controller, which borrows and remembers it; lost
    /// when there is no controller.
    void storeTestServer(TestServer *server);
    /// The server of the table with this host name and port; null when there is none. The page
    /// keeps it.
    TestServer *getTestServer(const QString &hostname, int port) const;

protected:
    /// Gives a tap in the list to the entry below it.
    bool eventFilter(QObject *object, QEvent *event) override;
    void retranslate() override;

private Q_SLOTS:
    void on_buttonNewSeries_clicked();
    void on_buttonClearDatabase_clicked();
    void on_buttonAdvMode_clicked();
    void on_buttonGerman_clicked();
    void on_buttonEnglish_clicked();
    void on_comboBoxBudget_activated(int index);

private:
    void initializeServerList();
    void markServer(const TestServer *server);
    void showAdvMode();
    void showLanguage();
    void showBudget();

    std::unique_ptr<Ui::SettingsTab> ui;
    TestServerTable *table;
    QList<ServerEntryWidget *> serverWidgets;
    bool advmode = false;
};

} // namespace velometer
