#pragma once

#include <QList>
#include <QScrollArea>

#include <memory>
#include <vector>

namespace velometer {

class DBTestResults;
class TestResultWidget;

/// The list of stored tests. Only as many entries exist as fill the view and a little more; each
/// shows the row that has scrolled to its place, so ten thousand tests cost what a dozen do.
///
/// One entry is the current one and takes the keyboard's focus: Up, Down, Page Up, Page Down, Home
/// and End move it, Enter shows its details.
class ResultList : public QScrollArea
{
    Q_OBJECT

public:
    explicit ResultList(QWidget *parent = nullptr);
    ~ResultList() override;

    /// Takes @p results, newest first, in place of what was shown; of more than 100,000 the newest.
    /// What was at the top of the view stays there, and the current entry current, as long as they
    /// are in the list; a list that shows its beginning goes on to show it.
    void setResults(std::vector<std::unique_ptr<DBTestResults>> results);
    /// Deletes entries and results.
    void clear();

    /// The entries that exist, in no particular order.
    QList<TestResultWidget *> entries() const;

Q_SIGNALS:
    /// A tap on an entry, or Enter on the current one. @p results stay the list's.
    void selected(const DBTestResults *results);

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    struct Entry
    {
        TestResultWidget *widget;
        qsizetype row;
    };

    void layOut();
    void placeEntries();
    void addEntry();
    Entry &entryOf(qsizetype row);
    void followCurrent();
    void setCurrent(qsizetype row);
    qsizetype rowsInView() const;

    std::vector<std::unique_ptr<DBTestResults>> rows;
    std::vector<Entry> pool; ///< row r is shown by entry r modulo the pool's size
    int rowHeight = 0;       ///< px; 0 before the first entry
    qsizetype current = 0;
    /// What a list that is put away had in view.
    struct Place
    {
        qulonglong topId = 0; ///< of the test at the top of the view; 0 at the beginning
        int offset = 0;       ///< px of it that were scrolled away
        qulonglong currentId = 0;
    };

    Place place() const;
    qsizetype rowOf(qulonglong id) const;

    Place left;
};

} // namespace velometer
