#pragma once

#include <QWidget>

class MainWindow;

/// A panel that asks or tells something over the current page. Created once and hidden; the main
/// window fills it, centres it, shows it and takes its answer. While it is shown the keyboard stays
/// inside it: Tab goes round, Escape is its cancel button. Main thread only.
class PopupBase : public QWidget
{
    Q_OBJECT

public:
    /// @p mainWindow is the parent and owns the popup.
    explicit PopupBase(MainWindow *mainWindow);

protected:
    /// The language has changed: sets every text of the form anew.
    virtual void retranslate() = 0;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    bool focusNextPrevChild(bool next) override;

    MainWindow *const mw;

private:
    QList<QWidget *> stops() const;
};
