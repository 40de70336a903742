#pragma once

#include <QIcon>
#include <QPoint>
#include <QWidget>

#include <memory>
#include <optional>

namespace velometer {

class DBTestResults;
class MainWindow;

namespace Ui {
class TestResultWidget;
}

/// One stored test in the list of the results page: ids, time, place, server, connection and
/// figures on three lines. A tap on it, or widgetSelected(), shows the test's details.
class TestResultWidget : public QWidget
{
    Q_OBJECT

public:
    /// @p parent owns the entry. @p mainWindow is borrowed, outlives it and shows the details.
    TestResultWidget(MainWindow *mainWindow, QWidget *parent);
    ~TestResultWidget() override;

    /// Shows @p results, which are borrowed and outlive their being shown here.
    void setDBTestResults(DBTestResults *results);
    DBTestResults *getDBTestResults() const { return dbTestResults; }

    /// The press under way, if any, becomes no tap.
    static void forgetPress() { pressPosition.reset(); }

public Q_SLOTS:
    /// Hands the test to the details page and asks for that page; the main window refuses while one
    /// of its popups is open. Before there is a test nothing happens.
    void widgetSelected();

Q_SIGNALS:
    /// The entry has got the keyboard.
    void focused();

protected:
    /// Recognises taps; never consumes the event.
    bool eventFilter(QObject *object, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    void fill();

    /// Shared by all entries: there is one finger. In the window's coordinates, since the entry
    /// moves with the finger.
    static std::optional<QPoint> pressPosition;

    MainWindow *const mw;
    const std::unique_ptr<Ui::TestResultWidget> ui;
    const QIcon mobileIcon;
    const QIcon wlanIcon;
    DBTestResults *dbTestResults = nullptr;
};

} // namespace velometer
