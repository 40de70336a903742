#pragma once

#include <QString>
#include <QWidget>

#include <memory>

namespace velometer {

namespace Ui {
class NavigationBar;
}

/// The two rows of buttons at the bottom of every page, icons over names: buttonTest1 and
/// buttonTest2 lead to the test page, and so on. The one that belongs to the page is lit up and
/// carries a bar above it.
class NavigationBar : public QWidget
{
    Q_OBJECT
    /// The page that is lit up: "Test", "Results", "Settings", "Links" or "About". Set in the form.
    Q_PROPERTY(QString page READ currentPage WRITE setCurrentPage)

public:
    explicit NavigationBar(QWidget *parent);
    ~NavigationBar() override;

    QString currentPage() const { return current; }
    void setCurrentPage(const QString &page);
    void retranslate();

private:
    std::unique_ptr<Ui::NavigationBar> ui;
    QString current;
};

} // namespace velometer
