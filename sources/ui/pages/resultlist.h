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
    /// The place in the list is kept while its first test is the same.
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
    qulonglong firstId = 0; ///< of the results shown last
    int lastPosition = 0;   ///< and where they had been scrolled to
};

} // namespace velometer
