#pragma once

#include "ui/frame/tabbase.h"

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
/// budget of a test, its delays under load, series mode. Reads "AdvMode" when it is made and writes
/// it with every change.
///
/// Everything may be pressed at any time; whether it can be done now, or waits for the next test,
/// is the business of whoever listens.
class SettingsTab : public TabBase
{
    Q_OBJECT

public:
    /// @p parent owns the page, which offers no server before setServers().
    explicit SettingsTab(QWidget *parent);
    ~SettingsTab() override;

    /// Offers the servers of @p servers (borrowed, outlives the page) and marks the one with the
    /// host name and port of @p current: none where the table has no such server, or for null. The
    /// page shows the names that the table has at the moment; a table that is translated anew is so
    /// before the page hears of the new language.
    void setServers(const TestServerTable *servers, const TestServer *current);

    /// While a test or a series runs, what would disturb it cannot be chosen, and the page says
    /// why.
    void setRunning(const QString &text) override;
    /// Shows what a test may move, and whether for delays too, as it is remembered now.
    void updateSettings();

    /// As a tap on @p server (one of the table) does.
    void selectServer(TestServer *server);

    bool isSeriesMode() const { return advmode; }

Q_SIGNALS:
    void serverChosen(TestServer *server);
    void newSeriesClicked();
    void clearDatabaseClicked();
    void seriesModeChosen(bool on);
    /// "de" or "en".
    void languageChosen(const QString &language);
    /// As Appearance calls them.
    void lookChosen(const QString &name);
    void textSizeChosen(bool larger);

protected:
    /// Gives a tap in the list to the entry below it.
    bool eventFilter(QObject *object, QEvent *event) override;
    void retranslate() override;
    void dress() override;

private Q_SLOTS:
    void on_comboBoxLook_activated(int index);
    void on_buttonLargerText_clicked();
    void on_buttonNewSeries_clicked();
    void on_buttonClearDatabase_clicked();
    void on_buttonAdvMode_clicked();
    void on_buttonGerman_clicked();
    void on_buttonEnglish_clicked();
    void on_comboBoxBudget_activated(int index);
    void on_buttonUnderLoad_clicked();

private:
    void initializeServerList();
    void fillServerList();
    void markServer(const TestServer *server);
    void showAdvMode();
    void showLanguage();
    void showData();
    void showLook();

    std::unique_ptr<Ui::SettingsTab> ui;
    const TestServerTable *table = nullptr;
    QList<ServerEntryWidget *> serverWidgets;
    bool advmode = false;
};

} // namespace velometer
