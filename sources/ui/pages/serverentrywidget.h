#pragma once

#include <QWidget>

#include <memory>

namespace velometer {

class TestServer;

namespace Ui {
class ServerEntryWidget;
}

/// One test server in the list of the settings page: name, address and whether it is the chosen
/// one. Mouse events pass through to the list, which may scroll and returns taps with tap().
class ServerEntryWidget : public QWidget
{
    Q_OBJECT

public:
    /// @p server is borrowed and outlives the entry.
    ServerEntryWidget(QWidget *parent, TestServer *server);
    ~ServerEntryWidget() override;

    void setServerEnabled(bool enabled);
    /// The last entry has no line below it.
    void setLastEntry(bool last);
    TestServer *getServer() const { return server; }
    void tap();
    /// Shows the server's name anew.
    void retranslate();

Q_SIGNALS:
    void chosen(TestServer *server);

private Q_SLOTS:
    void on_checkBox_clicked();

protected:
    void changeEvent(QEvent *event) override;

private:
    void dress();

    std::unique_ptr<Ui::ServerEntryWidget> ui;
    TestServer *server;
};

} // namespace velometer
