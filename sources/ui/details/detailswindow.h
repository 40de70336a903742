#pragma once

#include "ui/frame/tabbase.h"

#include <QList>
#include <QTimer>

#include <memory>

namespace velometer {

class DBTestResults;
class DetailsCategory;
class TestDetails;

namespace Ui {
class DetailsWindow;
}

/// The page that shows everything recorded about one stored test, in four categories, and sends a
/// summary of it by e-mail. What the store holds is text from outside: it is shown without markup,
/// and of a long value the first 500 characters. The database of the program (gDB) is open while
/// the page lives.
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

public Q_SLOTS:
    /// Reads the details of the test set last and shows them at once, from their start. A test that
    /// the store has no details of, and none set yet, leave the page empty and a line in the log.
    void setTestResultsImpl();
    /// Opens the e-mail program with the summary; where there is none, the page says so and shows
    /// the maker's mailbox. Without details nothing happens.
    void on_pushButton_clicked();
    /// Opens the test's page on the service; where nothing opens addresses, shows it.
    void on_pageButton_clicked();

protected:
    void retranslate() override;

private:
    static QList<DetailsCategory *> setupDetailsCategories(const TestDetails *details);
    static void deleteCategories(QList<DetailsCategory *> &list);
    std::unique_ptr<TestDetails> readDetails() const;
    QString pageAddress() const;
    void clearExistingWidgets();
    void showPleaseWait(bool visible);
    void addPlot();
    void addRows();

    const std::unique_ptr<Ui::DetailsWindow> ui;
    QTimer showTimer;
    qulonglong shownId = 0; ///< row id of the test; 0 before there is one
    QList<DetailsCategory *> categories;
};

} // namespace velometer
