#pragma once

#include "app/resultlisting.h"
#include "ui/pages/resultfigures.h"

#include <QHash>
#include <QList>
#include <QScrollArea>
#include <QSet>

#include <functional>
#include <vector>

namespace velometer {

class ListEntry;
class ResultGroupHeader;
class TestResultWidget;

/// The list of stored tests, in groups that open and close. Only as many entries exist as fill the
/// view and a little more; each shows the line that has scrolled to its place, so ten thousand
/// tests cost what a dozen do.
///
/// One entry is the current one and takes the keyboard's focus: Up, Down, Page Up, Page Down, Home
/// and End move it, Enter shows its details or opens its group, Left and Right close and open the
/// group. A press that is held, or startSelecting(), begins to choose several.
class ResultList : public QScrollArea
{
    Q_OBJECT

public:
    explicit ResultList(QWidget *parent = nullptr);
    ~ResultList() override;

    const ResultListing &listing() const { return content; }
    /// Lets @p how change what is listed, of more than 100,000 lines the first. What was at the top
    /// of the view stays there, and the current entry current, as long as they are in the list; a
    /// list that shows its beginning goes on to show it.
    void change(const std::function<void(ResultListing &)> &how);

    /// Taps choose from now on, or open details again; nothing is chosen at first.
    void startSelecting();
    void stopSelecting();
    bool isSelecting() const { return selecting; }
    /// Chooses everything that is listed, in closed groups too; nothing when everything was chosen.
    void selectAll();
    /// Row ids, in the order of the list.
    QList<qulonglong> selection() const;

    /// The entries of tests that exist, in no particular order.
    QList<TestResultWidget *> entries() const { return tests; }

Q_SIGNALS:
    /// A tap on an entry, or Enter on the current one. @p results stay the list's.
    void selected(const DBTestResults *results);
    /// Of what is chosen, or whether something can be.
    void selectionChanged();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    using Item = ResultListing::Item;

    /// What a list that changes had in view.
    struct Place
    {
        qulonglong id = 0; ///< of the line's test; 0: a heading
        QDate day;         ///< of the heading
        qlonglong series = 0;
        int offset = 0; ///< px of it that were scrolled away
    };

    void layOut();
    void measure();
    void placeEntries();
    void place(qsizetype line, ListEntry *entry);
    ListEntry *entryFor(qsizetype line, QList<ListEntry *> &spare);
    TestResultWidget *addTest();
    ResultGroupHeader *addHeader();
    void followCurrent(bool hadFocus);
    void setCurrent(qsizetype line);
    void activate(qsizetype line);
    void openGroup(bool open);
    void lineTapped(const ListEntry *entry);
    void lineHeld(const ListEntry *entry);
    void toggleSelected(qulonglong id);

    qsizetype count() const { return std::ssize(tops) - 1; }
    const Item &item(qsizetype line) const { return content.items()[static_cast<size_t>(line)]; }
    int top(qsizetype line) const { return tops[static_cast<size_t>(line)]; }
    qsizetype lineAt(int y) const;
    qsizetype lineOf(const ListEntry *entry) const;
    Place placeOf(qsizetype line, int offset) const;
    qsizetype lineOf(const Place &place) const;

    ResultListing content;
    QList<TestResultWidget *> tests;
    QList<ResultGroupHeader *> headers;
    QHash<qsizetype, ListEntry *> placed; ///< by line
    std::vector<int> tops{0};             ///< of each line, px, and the end
    ResultFigures::Greatest greatest;
    ResultFigures::Columns columns;
    int testHeight = 0; ///< px; 0 before the first entry
    qsizetype current = 0;
    bool selecting = false;
    QSet<qulonglong> chosen;
};

} // namespace velometer
