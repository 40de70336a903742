#pragma once

#include <QWidget>

namespace velometer {

class MainWindow;

/// A page of the application: the frame that all of them share, with a header row (the maker's
/// mark, title, version, close) and the navigation bar at the bottom. A page's form holds both
/// under the object names that the slots below are named after; each slot writes a line to the
/// diagnostic log and asks the main window, which refuses while one of its popups is open. Main
/// thread only.
class TabBase : public QWidget
{
    Q_OBJECT

public:
    /// @p mainWindow is the parent and owns the page.
    explicit TabBase(MainWindow *mainWindow);

public Q_SLOTS:
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

protected:
    /// Title and version of the header; once the form is built, and again in another language.
    void fillFrame();
    /// The language has changed: sets every text of the page anew.
    virtual void retranslate() = 0;
    void changeEvent(QEvent *event) override;

    MainWindow *const mw;
};

} // namespace velometer
