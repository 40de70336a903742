#pragma once

#include "ui/pages/tabbase.h"

#include <QTimer>

#include <memory>

namespace velometer {

class TestResultWidget;

namespace Ui {
class ResultsTab;
}

/// The page that lists the stored tests, newest first, and how much data they have moved.
class ResultsTab : public TabBase
{
    Q_OBJECT

public:
    /// @p mainWindow is the parent and owns the page.
    explicit ResultsTab(MainWindow *mainWindow);
    ~ResultsTab() override;

    /// Says that it takes a moment, and reads the store a tenth of a second later, so that this is
    /// on the screen.
    void updateResults();

public Q_SLOTS:
    /// Reads the store and shows the list at once, instead of what it held; entries taken from it
    /// before are gone, so it is not for their own signals. A store that cannot be read is shown as
    /// an empty one.
    void updateResultsImpl();
    /// Asks for the map. The main window refuses while one of its popups is open.
    void on_pushButton_clicked();

protected:
    void retranslate() override;

private:
    void clearCurrentResults();
    void showList(bool visible);
    void showTotals();

    const std::unique_ptr<Ui::ResultsTab> ui;
    QTimer updateTimer;
    double megabytes = 0;
    double megabytesOverMobile = 0;
};

} // namespace velometer
