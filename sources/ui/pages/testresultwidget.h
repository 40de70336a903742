#pragma once

#include "ui/pages/listentry.h"
#include "ui/pages/resultfigures.h"

#include <memory>

namespace velometer {

class DBTestResults;

namespace Ui {
class TestResultWidget;
}

/// One stored test in the list of the results page: its connection's sign, ids and time, place,
/// connection and server, and a line of figures. A tap on it, or widgetSelected(), selects the
/// test. Paints its part of the card that holds the tests of a group.
class TestResultWidget : public ListEntry
{
    Q_OBJECT

public:
    explicit TestResultWidget(QWidget *parent);
    ~TestResultWidget() override;

    /// Of the group's card.
    struct Place
    {
        bool first = true;
        bool last = true;
        bool dated = true; ///< shows the day: no heading does

        bool operator==(const Place &) const = default;
    };

    /// Whether it may be chosen for an action on several, and is.
    enum class Mark { None, Unselected, Selected };

    /// Shows @p results, which are borrowed and outlive their being shown here.
    void setDBTestResults(const DBTestResults *results);
    const DBTestResults *getDBTestResults() const { return dbTestResults; }
    void setPlace(const Place &place);
    void setMark(Mark mark);
    void setColumns(const ResultFigures::Columns &columns);
    /// The same height for every entry of a list.
    QSize sizeHint() const override;

public Q_SLOTS:
    /// Before there is a test nothing happens.
    void widgetSelected();

Q_SIGNALS:
    void selected(const DBTestResults *results);

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void fill();
    void showIcons();
    void showSign();

    const std::unique_ptr<Ui::TestResultWidget> ui;
    const DBTestResults *dbTestResults = nullptr;
    Place place;
    Mark mark = Mark::None;
    ResultFigures::Columns columns;
};

} // namespace velometer
