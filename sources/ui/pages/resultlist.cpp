#include "ui/pages/resultlist.h"

#include "db/dbtestresults.h"
#include "ui/pages/testresultwidget.h"

#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>

namespace velometer {

namespace {

/// Entries beyond the view, so that a row is ready before the finger pulls it in.
constexpr qsizetype spareEntries = 3;

/// No widget, and so no list, can be higher than 2^24 pixels.
constexpr size_t mostRows = 100'000;

} // namespace

ResultList::ResultList(QWidget *parent)
    : QScrollArea(parent)
{
    // The current entry has the focus, not the area around it.
    setFocusPolicy(Qt::NoFocus);
}

ResultList::~ResultList() = default;

void ResultList::setResults(std::vector<std::unique_ptr<DBTestResults>> results)
{
    clear();
    rows = std::move(results);
    if (rows.size() > mostRows) {
        rows.resize(mostRows);
    }
    current = std::max<qsizetype>(rowOf(left.currentId), 0);
    layOut();
    const qsizetype top = left.topId == 0 ? -1 : rowOf(left.topId);
    verticalScrollBar()->setValue(top < 0 ? 0 : static_cast<int>(top) * rowHeight + left.offset);
}

ResultList::Place ResultList::place() const
{
    const auto idOf = [this](qsizetype row) {
        return row < std::ssize(rows) ? rows[static_cast<size_t>(row)]->myTestId : 0;
    };
    const int position = verticalScrollBar()->value();
    if (rowHeight == 0) {
        return {};
    }
    return {position == 0 ? 0 : idOf(position / rowHeight), position % rowHeight, idOf(current)};
}

qsizetype ResultList::rowOf(qulonglong id) const
{
    const auto found = std::find_if(rows.begin(), rows.end(),
                                    [id](const auto &row) { return row->myTestId == id; });
    return found == rows.end() ? -1 : found - rows.begin();
}

void ResultList::clear()
{
    if (!rows.empty()) {
        left = place();
    }
    TestResultWidget::forgetPress();
    for (const Entry &entry : pool) {
        delete entry.widget;
    }
    pool.clear();
    rows.clear();
}

QList<TestResultWidget *> ResultList::entries() const
{
    QList<TestResultWidget *> widgets;
    for (const Entry &entry : pool) {
        widgets.append(entry.widget);
    }
    return widgets;
}

void ResultList::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    layOut();
}

void ResultList::scrollContentsBy(int dx, int dy)
{
    QScrollArea::scrollContentsBy(dx, dy);
    placeEntries();
}

bool ResultList::eventFilter(QObject *object, QEvent *event)
{
    // An entry wants another height: the font has changed.
    if (object == widget() && event->type() == QEvent::LayoutRequest) {
        layOut();
    }
    return QScrollArea::eventFilter(object, event);
}

void ResultList::layOut()
{
    if (!widget()) {
        return;
    }
    if (!rows.empty()) {
        if (pool.empty()) {
            addEntry();
        }
        const int height = pool.front().widget->sizeHint().height();
        if (height != rowHeight) {
            rowHeight = height;
            for (Entry &entry : pool) {
                entry.row = -1;
            }
        }
        const qsizetype wanted =
            std::min<qsizetype>(viewport()->height() / height + 1 + spareEntries, std::ssize(rows));
        while (std::ssize(pool) < wanted) {
            addEntry();
        }
    }
    const qsizetype height = std::min<qsizetype>(std::ssize(rows) * rowHeight, QWIDGETSIZE_MAX);
    widget()->setMinimumHeight(static_cast<int>(height));
    for (const Entry &entry : pool) {
        entry.widget->resize(viewport()->width(), rowHeight);
    }
    placeEntries();
}

void ResultList::addEntry()
{
    auto *entry = new TestResultWidget(widget());
    entry->hide();
    connect(entry, &TestResultWidget::selected, this, &ResultList::selected);
    connect(entry, &TestResultWidget::focused, this, [this, entry] {
        const auto found = std::find_if(
            pool.begin(), pool.end(), [entry](const Entry &each) { return each.widget == entry; });
        current = found->row;
    });
    pool.push_back({entry, -1});
}

ResultList::Entry &ResultList::entryOf(qsizetype row)
{
    return pool[static_cast<size_t>(row % std::ssize(pool))];
}

void ResultList::placeEntries()
{
    if (pool.empty() || rowHeight == 0) {
        return;
    }
    const qsizetype lowest = std::ssize(rows) - std::ssize(pool);
    const qsizetype top = verticalScrollBar()->value() / rowHeight;
    const qsizetype first = std::clamp<qsizetype>(top - 1, 0, lowest);
    for (qsizetype row = first; row < first + std::ssize(pool); ++row) {
        Entry &entry = entryOf(row);
        if (entry.row == row) {
            continue;
        }
        entry.row = row;
        entry.widget->setDBTestResults(rows[static_cast<size_t>(row)].get());
        entry.widget->move(0, static_cast<int>(row) * rowHeight);
        entry.widget->show();
    }
    followCurrent();
}

/// Keeps the current entry among those that exist, and the focus with it.
void ResultList::followCurrent()
{
    if (pool.empty() || rowHeight == 0) {
        return;
    }
    const qsizetype top = verticalScrollBar()->value() / rowHeight;
    if (entryOf(current).row != current) {
        current =
            std::clamp(current, top, std::min<qsizetype>(top + rowsInView(), std::ssize(rows) - 1));
    }
    TestResultWidget *target = entryOf(current).widget;
    bool hadFocus = false;
    for (const Entry &entry : pool) {
        hadFocus = hadFocus || entry.widget->hasFocus();
        entry.widget->setFocusPolicy(entry.widget == target ? Qt::TabFocus : Qt::NoFocus);
    }
    if (hadFocus && !target->hasFocus()) {
        target->setFocus();
    }
}

qsizetype ResultList::rowsInView() const
{
    return std::max<qsizetype>(viewport()->height() / rowHeight - 1, 1);
}

void ResultList::setCurrent(qsizetype row)
{
    row = std::clamp<qsizetype>(row, 0, std::ssize(rows) - 1);
    const int top = static_cast<int>(row) * rowHeight;
    QScrollBar *bar = verticalScrollBar();
    const int lowest = top + rowHeight - viewport()->height();
    bar->setValue(std::clamp(bar->value(), std::min(lowest, top), std::max(lowest, top)));
    current = row;
    followCurrent();
    entryOf(current).widget->setFocus();
}

void ResultList::keyPressEvent(QKeyEvent *event)
{
    if (pool.empty()) {
        QScrollArea::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Up: return setCurrent(current - 1);
    case Qt::Key_Down: return setCurrent(current + 1);
    case Qt::Key_PageUp: return setCurrent(current - rowsInView());
    case Qt::Key_PageDown: return setCurrent(current + rowsInView());
    case Qt::Key_Home: return setCurrent(0);
    case Qt::Key_End: return setCurrent(std::ssize(rows) - 1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Select:
    case Qt::Key_Space: return entryOf(current).widget->widgetSelected();
    default: QScrollArea::keyPressEvent(event);
    }
}

} // namespace velometer
