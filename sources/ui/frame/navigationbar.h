#pragma once

#include "ui/frame/page.h"

#include <QString>
#include <QWidget>

#include <memory>

namespace velometer {

namespace Ui {
class NavigationBar;
}

/// The two rows of buttons at the bottom of every page, icons over names: buttonTest1 and
/// buttonTest2 lead to the test page, and so on. The one that belongs to the page is lit up. In a
/// wide window one bar stands at the side instead, with the same buttons below each other.
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
    /// Stands at the side from now on, where nobody else listens to its buttons: see pageClicked().
    void standBeside();
    void retranslate();

Q_SIGNALS:
    void pageClicked(Page page);

protected:
    void changeEvent(QEvent *event) override;

private:
    void light();

    std::unique_ptr<Ui::NavigationBar> ui;
    QString current;
};

} // namespace velometer
