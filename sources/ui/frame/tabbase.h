#pragma once

#include "ui/frame/page.h"

#include <QWidget>

namespace velometer {

/// A page of the application: the frame that all of them share, with a header row (the maker's
/// mark, title, version, close) and the navigation bar at the bottom. A page's form holds both
/// under the object names that the slots below are named after; each slot writes a line to the
/// diagnostic log and says what the user wants. Whether he gets it is decided by whoever listens.
/// Main thread only.
class TabBase : public QWidget
{
    Q_OBJECT

public:
    /// @p parent owns the page.
    explicit TabBase(QWidget *parent);

    /// Whether the window has a navigation of its own beside the pages.
    void setNavigationBeside(bool beside);
    /// What runs now, shown in the header; empty: nothing.
    virtual void setRunning(const QString &text);

public Q_SLOTS:
    void on_buttonRunning_clicked();
    void on_buttonTest1_clicked();
    void on_buttonTest2_clicked();
    void on_buttonResults1_clicked();
    void on_buttonResults2_clicked();
    void on_buttonSettings1_clicked();
    void on_buttonSettings2_clicked();
    void on_buttonLinks1_clicked();
    void on_buttonLinks2_clicked();
    void on_buttonAbout1_clicked();
    void on_buttonAbout2_clicked();
    void on_orvakLink_clicked();
    void on_buttonClose_clicked();

Q_SIGNALS:
    void pageClicked(Page page);
    /// The maker's mark, which stands for his web page.
    void makerClicked();
    void exitClicked();
    /// Of a page that results lead to: back to them.
    void backClicked();

protected:
    /// Title and version of the header; once the form is built, and again in another language or
    /// look.
    void fillFrame();
    /// The look has changed, or the form is built: what no style sheet can say.
    virtual void dress() {}
    /// The language has changed: sets every text of the page anew.
    virtual void retranslate() = 0;
    void changeEvent(QEvent *event) override;
    /// Escape, Back and Alt+Left lead back.
    void keyPressEvent(QKeyEvent *event) override;
};

} // namespace velometer
