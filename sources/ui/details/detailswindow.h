#pragma once

#include "ui/frame/tabbase.h"

#include <QList>
#include <QPoint>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace velometer {

class DBTestResults;
class DetailsCategory;
class TestDetails;
struct FinishedTest;

namespace Ui {
class DetailsWindow;
}

/// The page that shows one stored test: which it is, its figures and its curve, and everything that
/// was recorded about it in four categories. Leads on to the tests before and after it in the list,
/// by buttons, a swipe, or Left and Right; sends a summary by e-mail. What the store holds is text
/// from outside: it is shown without markup, and of a long value the first 500 characters. The
/// database of the program (gDB) is open while the page lives.
class DetailsWindow : public TabBase
{
    Q_OBJECT

public:
    /// @p parent owns the page.
    explicit DetailsWindow(QWidget *parent);
    ~DetailsWindow() override;

    /// Shows the test of @p results, which is not kept. The rows follow a moment later, so that the
    /// page is on the screen first.
    void setTestResults(const DBTestResults *results);
    bool hasTest() const { return shownId != 0; } ///< one was set
    /// Two panes are no empty one: the newest test of the store, unless one was set before.
    void showNewest();

    /// Finds the test so many steps below that with a row id in the list, or above it; null where
    /// there is none.
    using Neighbour = std::function<const DBTestResults *(qulonglong id, int step)>;
    void setNeighbours(const Neighbour &finds) { neighbour = finds; }

public Q_SLOTS:
    /// Reads the details of the test set last and shows them at once, from their start. A test that
    /// the store has no details of, and none set yet, leave the page empty and a line in the log.
    void setTestResultsImpl();
    /// Opens the e-mail program with the summary; where there is none, the page says so and shows
    /// the maker's mailbox. Without details nothing happens.
    void on_pushButton_clicked();
    /// Opens the test's page on the service; where nothing opens addresses, shows it.
    void on_pageButton_clicked();
    /// Shows what the program's log has of the time of the test, or hides it again.
    void on_logButton_clicked();
    void on_buttonBack_clicked() { Q_EMIT backClicked(); }
    void on_buttonPrevious_clicked() { step(-1); }
    void on_buttonNext_clicked() { step(1); }
    void on_buttonShare_clicked() { Q_EMIT shareAsked({shownId}); }

Q_SIGNALS:
    void shareAsked(const QList<qulonglong> &ids);

protected:
    void retranslate() override;
    void dress() override;
    void keyPressEvent(QKeyEvent *event) override;
    /// Sees swipes; takes no event.
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    static void deleteCategories(QList<DetailsCategory *> &list);
    std::unique_ptr<TestDetails> readDetails() const;
    QString pageAddress() const;
    void clearExistingWidgets();
    void showPleaseWait(bool visible);
    void addPlot(const FinishedTest &test);
    void addRows(const FinishedTest &test);
    void showHead(const FinishedTest &test);
    void step(int by);

    const std::unique_ptr<Ui::DetailsWindow> ui;
    QTimer showTimer;
    qulonglong shownId = 0; ///< row id of the test; 0 before there is one
    qint64 shownTime = 0;   ///< of the test, ms
    QList<DetailsCategory *> categories;
    Neighbour neighbour;
    std::optional<QPoint> swipeStart;
};

} // namespace velometer
