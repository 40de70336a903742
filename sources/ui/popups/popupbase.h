#pragma once

#include <QWidget>

namespace velometer {

/// A panel that asks or tells something over the current page. Created once and hidden; its owner
/// fills it, centres it, shows it and takes its answer. While it is shown the keyboard stays inside
/// it: Tab goes round, Escape is its cancel button, or the only one. A screen reader is told its
/// title (labelTitle or labelLocation in the form) and its question (labelMessage). Main thread
/// only.
///
/// A button only signals: whether the answer still counts is for the owner to say, who also closes
/// the popup. A second press decides nothing, because the popup is hidden by then.
class PopupBase : public QWidget
{
    Q_OBJECT

public:
    /// @p parent owns the popup.
    explicit PopupBase(QWidget *parent);

Q_SIGNALS:
    void cancelled();

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

private:
    QList<QWidget *> stops() const;
};

} // namespace velometer
