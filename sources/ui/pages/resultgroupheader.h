#pragma once

#include "app/resultlisting.h"
#include "ui/pages/listentry.h"
#include "ui/pages/resultfigures.h"

namespace velometer {

/// The heading of a group in the list of results: day and series, how many tests, and the unit of
/// all rates below. A closed group's heading is a card with the medians of its tests, in the
/// columns of the tests' figures. A tap, or toggled(), opens or closes it.
class ResultGroupHeader : public ListEntry
{
    Q_OBJECT

public:
    explicit ResultGroupHeader(QWidget *parent);

    /// px, of an open or a closed one, with the texts as large as they are now.
    static int heightOf(bool open);
    /// "Today", "Yesterday", or the weekday and the date; @p today by this machine's clock.
    static QString dayText(const QDate &day, const QDate &today);

    void setGroup(const ResultListing::Group &group, const ResultListing::Medians &medians,
                  ResultListing::Order order);
    void setColumns(const ResultFigures::Columns &wanted) { columns = wanted; }

    /// As a tap on it.
    void toggle() { Q_EMIT tapped(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintFigures(class QPainter &painter, const QRect &card) const;

    QString title;
    qsizetype count = 0;
    bool open = true;
    bool closable = true;
    ResultFigures::Columns columns;
    ResultListing::Medians medians;
};

} // namespace velometer
