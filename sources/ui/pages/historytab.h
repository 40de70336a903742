#pragma once

#include "app/history.h"
#include "ui/frame/choice.h"
#include "ui/frame/tabbase.h"

#include <QTimer>

#include <memory>
#include <vector>

class QPushButton;

namespace velometer {

class HistoryPlot;

namespace Ui {
class HistoryTab;
}

/// The page that shows how download, upload and RTT went over time, by kind of connection, with
/// their medians. Chips choose the time and the connection. It reads the store when it is shown,
/// and again when somebody has changed it.
class HistoryTab : public TabBase
{
    Q_OBJECT

public:
    /// @p parent owns the page.
    explicit HistoryTab(QWidget *parent);
    ~HistoryTab() override;

public Q_SLOTS:
    void on_buttonBack_clicked() { Q_EMIT backClicked(); }

Q_SIGNALS:
    /// A chip was pressed: the user is to choose.
    void choiceAsked(const Choice &choice);

protected:
    void retranslate() override;
    void dress() override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void read();
    void draw();
    void showChips();
    bool takes(const HistoryPoint &point) const;

    const std::unique_ptr<Ui::HistoryTab> ui;
    QPushButton *connectionChip = nullptr;
    QList<QPushButton *> periodChips;
    QList<HistoryPlot *> plots;
    QTimer followTimer;
    QString listed; ///< the state of the store that is shown
    ResultFilter filter;
    std::vector<HistoryPoint> points;
};

} // namespace velometer
