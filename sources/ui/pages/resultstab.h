#pragma once

#include "ui/frame/tabbase.h"

#include <QTimer>

#include <memory>

namespace velometer {

class DBTestResults;

namespace Ui {
class ResultsTab;
}

/// The page that lists the stored tests, newest first, and how much data they have moved. While it
/// is shown it follows the store, whoever writes to it.
class ResultsTab : public TabBase
{
    Q_OBJECT

public:
    /// @p parent owns the page.
    explicit ResultsTab(QWidget *parent);
    ~ResultsTab() override;

    /// Says that it takes a moment, and reads the store a tenth of a second later, so that this is
    /// on the screen.
    void updateResults();

public Q_SLOTS:
    /// Reads the store and shows the list at once, instead of what it held; entries taken from it
    /// before are gone, so it is not for their own signals. A store that cannot be read is shown as
    /// an empty one.
    void updateResultsImpl();
    void on_pushButton_clicked();
    void on_pageButton_clicked();

Q_SIGNALS:
    void mapClicked();
    /// One of the tests in the list. @p results stay the list's.
    void resultSelected(const DBTestResults *results);

protected:
    void retranslate() override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void follow();
    void showList(bool visible);
    void showTotals();

    const std::unique_ptr<Ui::ResultsTab> ui;
    QTimer updateTimer;
    QTimer followTimer;
    QString listed; ///< the state of the store that the list shows
    double megabytes = 0;
    double megabytesOverMobile = 0;
};

} // namespace velometer
