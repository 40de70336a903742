#pragma once

#include "app/resultlisting.h"
#include "ui/frame/choice.h"
#include "ui/frame/tabbase.h"

#include <QTimer>

#include <memory>

class QPushButton;

namespace velometer {

namespace Ui {
class ResultsTab;
}

/// The page that lists the stored tests, newest first and in groups, and how much data they have
/// moved; chips above the list filter and sort it, and several tests may be chosen for an action.
/// While it is shown it follows the store, whoever writes to it.
class ResultsTab : public TabBase
{
    Q_OBJECT

public:
    /// @p parent owns the page.
    explicit ResultsTab(QWidget *parent);
    ~ResultsTab() override;

    /// Reads the store as soon as the page is on the screen; says that it takes a moment where it
    /// does.
    /// Opens the search, ready for typing.
    void search();
    void updateResults();

    /// The test that the list shows @p step lines below that with this row id, or above; null
    /// where there is none.
    const DBTestResults *neighbour(qulonglong id, int step) const;

    /// Ends the choice of several tests.
    void stopSelecting();

public Q_SLOTS:
    /// Reads the store and shows the list at once, instead of what it held; entries taken from it
    /// before are gone, so it is not for their own signals. A store that cannot be read is shown as
    /// an empty one.
    void updateResultsImpl();
    void on_pushButton_clicked();
    void on_pageButton_clicked();
    void on_buttonHistory_clicked();
    void on_buttonSelect_clicked();
    void on_buttonDone_clicked() { stopSelecting(); }
    void on_buttonClear_clicked();
    void on_buttonExport_clicked();
    void on_buttonShare_clicked();
    void on_buttonDelete_clicked();

Q_SIGNALS:
    void mapClicked();
    void historyClicked();
    /// One of the tests in the list. @p results stay the list's.
    void resultSelected(const DBTestResults *results);
    /// A chip was pressed: the user is to choose.
    void choiceAsked(const Choice &choice);
    /// What to do with the chosen tests, which are at least one.
    void exportAsked(const QList<qulonglong> &ids);
    void shareAsked(const QList<qulonglong> &ids);
    void deleteAsked(const QList<qulonglong> &ids);

protected:
    void retranslate() override;
    void dress() override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void addChips();
    void showChips();
    void showCount();
    void showEmpty();
    void showSelection();
    void askConnection();
    void askPeriod();
    void askPlace();
    void askServer();
    void askOrder();
    void searchToggled(bool on);
    void setFilter(const ResultFilter &filter);
    void follow();
    void showList(bool visible);
    void showTotals();

    const std::unique_ptr<Ui::ResultsTab> ui;
    QPushButton *connectionChip = nullptr;
    QPushButton *periodChip = nullptr;
    QPushButton *placeChip = nullptr;
    QPushButton *serverChip = nullptr;
    QPushButton *orderChip = nullptr;
    QPushButton *searchChip = nullptr;
    QTimer updateTimer;
    QTimer followTimer;
    QTimer searchTimer;
    QString listed; ///< the state of the store that the list shows
    double megabytes = 0;
    double megabytesOverMobile = 0;
};

} // namespace velometer
