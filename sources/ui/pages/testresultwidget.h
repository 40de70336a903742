#pragma once

#include <QIcon>
#include <QPoint>
#include <QWidget>

#include <memory>
#include <optional>

namespace velometer {

class DBTestResults;

namespace Ui {
class TestResultWidget;
}

/// One stored test in the list of the results page: ids, time, place, server, connection and
/// figures on three lines. A tap on it, or widgetSelected(), selects the test.
class TestResultWidget : public QWidget
{
    Q_OBJECT

public:
    explicit TestResultWidget(QWidget *parent);
    ~TestResultWidget() override;

    /// Shows @p results, which are borrowed and outlive their being shown here.
    void setDBTestResults(DBTestResults *results);
    DBTestResults *getDBTestResults() const { return dbTestResults; }

    /// The press under way, if any, becomes no tap.
    static void forgetPress() { pressPosition.reset(); }

public Q_SLOTS:
    /// Before there is a test nothing happens.
    void widgetSelected();

Q_SIGNALS:
    void selected(const DBTestResults *results);
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

    const std::unique_ptr<Ui::TestResultWidget> ui;
    const QIcon mobileIcon;
    const QIcon wlanIcon;
    DBTestResults *dbTestResults = nullptr;
};

} // namespace velometer
