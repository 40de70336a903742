#include "ui/pages/resultlist.h"

#include "ui/frame/tabplace.h"
#include "ui/pages/resultgroupheader.h"
#include "ui/pages/testresultwidget.h"

#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>

namespace velometer {

namespace {

/// Lines beyond the view, so that one is ready before the finger pulls it in.
constexpr qsizetype spareLines = 1;

/// No widget, and so no list, can be higher than 2^24 pixels.
constexpr qsizetype mostLines = 100'000;

} // namespace

ResultList::ResultList(QWidget *parent)
    : QScrollArea(parent)
{
    // The current entry has the focus, not the area around it.
    setFocusPolicy(Qt::NoFocus);
}

ResultList::~ResultList() = default;

// ---- What is listed

void ResultList::change(const std::function<void(ResultListing &)> &how)
{
    const int position = verticalScrollBar()->value();
    Place atTop;
    Place atCurrent;
    if (count() > 0) {
        const qsizetype line = lineAt(position);
        atTop = placeOf(line, position - top(line));
        atCurrent = placeOf(current, 0);
    }
    ListEntry::forgetPress();
    placed.clear(); // they show what may be gone
    how(content);
    QSet<qulonglong> still;
    if (!chosen.isEmpty()) {
        for (const qulonglong id : content.ids()) {
            if (chosen.contains(id)) {
                still.insert(id);
            }
        }
    }
    const bool lost = still.size() != chosen.size();
    chosen = still;

    greatest = {};
    for (const Item &each : content.items()) {
        if (each.test) {
            greatest.download = std::max(greatest.download, each.test->downloadSpeed);
            greatest.upload = std::max(greatest.upload, each.test->uploadSpeed);
            greatest.rtt = std::max(greatest.rtt, static_cast<double>(each.test->rtt));
        }
    }
    measure();
    current = std::max<qsizetype>(lineOf(atCurrent), 0);
    layOut();
    const qsizetype line = position == 0 ? -1 : lineOf(atTop);
    verticalScrollBar()->setValue(line < 0 ? 0 : top(line) + atTop.offset);
    if (lost) {
        Q_EMIT selectionChanged();
    }
}

ResultList::Place ResultList::placeOf(qsizetype line, int offset) const
{
    const Item &at = item(line);
    const ResultListing::Group &group = content.group(at.group);
    return {at.test ? at.test->myTestId : 0, group.day, group.series, offset};
}

qsizetype ResultList::lineOf(const Place &place) const
{
    for (qsizetype line = 0; line < count(); ++line) {
        const Item &at = item(line);
        if (place.id != 0 ? at.test && at.test->myTestId == place.id
                          : !at.test && content.group(at.group).day == place.day &&
                                content.group(at.group).series == place.series) {
            return line;
        }
    }
    return -1;
}

// ---- Where it stands

void ResultList::measure()
{
    const auto lines = std::min<qsizetype>(std::ssize(content.items()), mostLines);
    tops.assign(1, 0);
    tops.reserve(static_cast<size_t>(lines) + 1);
    if (lines > 0 && tests.isEmpty()) {
        addTest();
    }
    columns = ResultFigures::columnsFor(viewport()->width(), greatest, font());
    for (TestResultWidget *entry : std::as_const(tests)) {
        entry->setColumns(columns);
    }
    testHeight = tests.isEmpty() ? 0 : tests.constFirst()->sizeHint().height();
    const int heights[] = {ResultGroupHeader::heightOf(false), ResultGroupHeader::heightOf(true)};
    for (qsizetype line = 0; line < lines; ++line) {
        const Item &at = content.items()[static_cast<size_t>(line)];
        const int height = at.test ? testHeight : heights[content.group(at.group).open ? 1 : 0];
        tops.push_back(tops.back() + height);
    }
}

qsizetype ResultList::lineAt(int y) const
{
    const auto below = std::upper_bound(tops.begin(), tops.end(), y);
    return std::clamp<qsizetype>(below - tops.begin() - 1, 0, std::max<qsizetype>(count() - 1, 0));
}

qsizetype ResultList::lineOf(const ListEntry *entry) const
{
    const auto found = std::find(placed.begin(), placed.end(), entry);
    return found == placed.end() ? -1 : found.key();
}

void ResultList::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    measure();
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
    if (object == widget() && event->type() == QEvent::LayoutRequest && !tests.isEmpty() &&
        tests.constFirst()->sizeHint().height() != testHeight) {
        measure();
        layOut();
    }
    return QScrollArea::eventFilter(object, event);
}

void ResultList::layOut()
{
    if (!widget()) {
        return;
    }
    widget()->setMinimumHeight(std::min(tops.back(), QWIDGETSIZE_MAX));
    placed.clear();
    placeEntries();
}

TestResultWidget *ResultList::addTest()
{
    auto *entry = new TestResultWidget(widget());
    entry->hide();
    TabPlace::putBehind(this, entry); // where the list stands
    connect(entry, &TestResultWidget::selected, this, [this, entry] { lineTapped(entry); });
    connect(entry, &ListEntry::held, this, [this, entry] { lineHeld(entry); });
    connect(entry, &ListEntry::focused, this, [this, entry] { current = lineOf(entry); });
    tests.append(entry);
    return entry;
}

ResultGroupHeader *ResultList::addHeader()
{
    auto *entry = new ResultGroupHeader(widget());
    entry->hide();
    TabPlace::putBehind(this, entry);
    connect(entry, &ListEntry::tapped, this, [this, entry] { lineTapped(entry); });
    connect(entry, &ListEntry::focused, this, [this, entry] { current = lineOf(entry); });
    headers.append(entry);
    return entry;
}

/// One of @p spare of the kind that the line needs, or a new one.
ListEntry *ResultList::entryFor(qsizetype line, QList<ListEntry *> &spare)
{
    const bool isTest = item(line).test != nullptr;
    const auto found = std::find_if(spare.begin(), spare.end(), [isTest](ListEntry *each) {
        return (qobject_cast<TestResultWidget *>(each) != nullptr) == isTest;
    });
    if (found != spare.end()) {
        ListEntry *entry = *found;
        spare.erase(found);
        return entry;
    }
    return isTest ? static_cast<ListEntry *>(addTest()) : addHeader();
}

void ResultList::placeEntries()
{
    if (!widget()) {
        return;
    }
    const bool hadFocus = widget()->isAncestorOf(focusWidget()) && focusWidget()->hasFocus();
    const int y = verticalScrollBar()->value();
    const qsizetype first = std::max<qsizetype>(lineAt(y) - spareLines, 0);
    const qsizetype last =
        std::min<qsizetype>(lineAt(y + viewport()->height()) + spareLines, count() - 1);
    QList<ListEntry *> spare;
    for (auto each = placed.begin(); each != placed.end();) {
        each = each.key() < first || each.key() > last ? placed.erase(each) : std::next(each);
    }
    const auto isSpare = [this](ListEntry *entry) { return lineOf(entry) < 0; };
    std::copy_if(tests.begin(), tests.end(), std::back_inserter(spare), isSpare);
    std::copy_if(headers.begin(), headers.end(), std::back_inserter(spare), isSpare);
    for (qsizetype line = first; line <= last; ++line) {
        if (!placed.contains(line)) {
            place(line, entryFor(line, spare));
        }
    }
    followCurrent(hadFocus);
    for (ListEntry *entry : std::as_const(spare)) {
        entry->hide();
    }
}

void ResultList::place(qsizetype line, ListEntry *entry)
{
    placed.insert(line, entry);
    const Item &at = item(line);
    const ResultListing::Group &group = content.group(at.group);
    if (auto *row = qobject_cast<TestResultWidget *>(entry)) {
        using Mark = TestResultWidget::Mark;
        row->setColumns(columns);
        row->setDBTestResults(at.test);
        row->setPlace({.first = !item(line - 1).test,
                       .last = line + 1 == count() || !item(line + 1).test,
                       .dated = !group.closable});
        row->setMark(!selecting                           ? Mark::None
                     : chosen.contains(at.test->myTestId) ? Mark::Selected
                                                          : Mark::Unselected);
    } else if (auto *header = qobject_cast<ResultGroupHeader *>(entry)) {
        header->setGroup(group, group.open ? ResultListing::Medians() : content.medians(at.group),
                         content.order());
        header->setColumns(columns);
    }
    entry->setGeometry(0, top(line), viewport()->width(), top(line + 1) - top(line));
    entry->show();
}

// ---- The keyboard

/// Keeps the current entry among those that exist, and the focus with it.
void ResultList::followCurrent(bool hadFocus)
{
    if (placed.isEmpty()) {
        return;
    }
    if (!placed.contains(current)) {
        const int y = verticalScrollBar()->value();
        const qsizetype lowest = lineAt(y + viewport()->height() - testHeight);
        const qsizetype highest = lineAt(y + testHeight / 2);
        current = std::clamp(current, std::min(highest, lowest), std::max(highest, lowest));
    }
    ListEntry *target = placed.value(current);
    for (ListEntry *entry : std::as_const(placed)) {
        entry->setFocusPolicy(entry == target ? Qt::TabFocus : Qt::NoFocus);
    }
    if (hadFocus && target && !target->hasFocus()) {
        target->setFocus();
    }
}

void ResultList::setCurrent(qsizetype line)
{
    line = std::clamp<qsizetype>(line, 0, count() - 1);
    QScrollBar *bar = verticalScrollBar();
    const int lowest = top(line + 1) - viewport()->height();
    current = line;
    bar->setValue(
        std::clamp(bar->value(), std::min(lowest, top(line)), std::max(lowest, top(line))));
    followCurrent(false);
    placed.value(current)->setFocus();
}

void ResultList::keyPressEvent(QKeyEvent *event)
{
    if (count() == 0) {
        QScrollArea::keyPressEvent(event);
        return;
    }
    const int page = std::max(viewport()->height() - testHeight, testHeight);
    switch (event->key()) {
    case Qt::Key_Up: return setCurrent(current - 1);
    case Qt::Key_Down: return setCurrent(current + 1);
    case Qt::Key_PageUp: return setCurrent(lineAt(top(current) - page));
    case Qt::Key_PageDown: return setCurrent(lineAt(top(current) + page));
    case Qt::Key_Home: return setCurrent(0);
    case Qt::Key_End: return setCurrent(count() - 1);
    case Qt::Key_Left: return openGroup(false);
    case Qt::Key_Right: return openGroup(true);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Select:
    case Qt::Key_Space: return activate(current);
    default: QScrollArea::keyPressEvent(event);
    }
}

/// Closes or opens the group of the current line, whose heading is then current.
void ResultList::openGroup(bool open)
{
    const size_t group = item(current).group;
    if (!content.group(group).closable || content.group(group).open == open) {
        return;
    }
    while (item(current).test) {
        --current;
    }
    change([group](ResultListing &listing) { listing.toggle(group); });
    setCurrent(current);
}

// ---- What is chosen

void ResultList::activate(qsizetype line)
{
    const Item &at = item(line);
    if (!at.test) {
        change([&at](ResultListing &listing) { listing.toggle(at.group); });
    } else if (selecting) {
        toggleSelected(at.test->myTestId);
    } else {
        Q_EMIT selected(at.test);
    }
}

void ResultList::lineTapped(const ListEntry *entry)
{
    if (const qsizetype line = lineOf(entry); line >= 0) {
        activate(line);
    }
}

void ResultList::lineHeld(const ListEntry *entry)
{
    const qsizetype line = lineOf(entry);
    if (line < 0 || selecting) {
        return;
    }
    const qulonglong id = item(line).test->myTestId;
    startSelecting();
    toggleSelected(id);
}

void ResultList::startSelecting()
{
    selecting = true;
    layOut();
    Q_EMIT selectionChanged();
}

void ResultList::stopSelecting()
{
    selecting = false;
    chosen.clear();
    layOut();
    Q_EMIT selectionChanged();
}

void ResultList::toggleSelected(qulonglong id)
{
    if (!chosen.remove(id)) {
        chosen.insert(id);
    }
    layOut();
    Q_EMIT selectionChanged();
}

void ResultList::selectAll()
{
    const QList<qulonglong> all = content.ids();
    const bool hadAll = chosen.size() == all.size();
    chosen = hadAll ? QSet<qulonglong>() : QSet<qulonglong>(all.begin(), all.end());
    layOut();
    Q_EMIT selectionChanged();
}

QList<qulonglong> ResultList::selection() const
{
    QList<qulonglong> ids = content.ids();
    ids.removeIf([this](qulonglong id) { return !chosen.contains(id); });
    return ids;
}

} // namespace velometer
