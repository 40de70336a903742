#pragma once

#include <QWidget>

namespace velometer {

class MainWindow;

/// A panel that asks or tells something over the current page. Created once and hidden; the main
/// window fills it, centres it, shows it and takes its answer. While it is shown the keyboard stays
/// inside it: Tab goes round, Escape is its cancel button. A screen reader is told its title
/// (labelTitle or labelLocation in the form) and its question (labelMessage). Main thread only.
///
/// A button only reports: whether the answer may still count, and that the popup closes, is the
/// main window's business. Nothing is decided twice by a second press, for the popup is hidden by
/// then.
class PopupBase : public QWidget
{
    Q_OBJECT

public:
    /// @p mainWindow is the parent and owns the popup.
    explicit PopupBase(MainWindow *mainWindow);

protected:
    /// The language has changed: sets every text of the form anew.
    virtual void retranslate() = 0;
    /// Where the keyboard begins each time the popup is shown: the first stop, or the popup itself
    /// when it has none, so that the button pressed below does not keep it.
    virtual QWidget *focusedFirst();
    /// Tells a screen reader title and question as the labels have them now. Done on every showing;
    /// a popup whose texts change while it is shown does it again.
    void describe();
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    bool focusNextPrevChild(bool next) override;

    MainWindow *const mw;

private:
    QList<QWidget *> stops() const;
};

} // namespace velometer
