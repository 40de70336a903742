#pragma once

#include <QElapsedTimer>
#include <QObject>

class QWidget;

namespace velometer {

class PopupBase;

/// Puts popups over the page of a window, one at a time, centred, with the page darkened below. For
/// its first 400 ms a popup takes no press: one that was meant for what stood there before answers
/// no question that nobody has read. Popups are borrowed and live as long as this. Main thread
/// only.
class PopupLayer : public QObject
{
    Q_OBJECT

public:
    /// @p window is the popups' parent, and this one's.
    explicit PopupLayer(QWidget *window);

    bool isOpen() const { return open != nullptr; }
    /// Presses count: the open popup has stood there for a while, or none is open.
    bool isSettled() const;
    /// Takes the place of one that is open.
    void show(PopupBase *popup);
    /// Does nothing when it is not the one that is open.
    void close(PopupBase *popup);
    /// Fits the open popup after the window's size, or its own text, has changed.
    void place();

Q_SIGNALS:
    /// The page has the keyboard again.
    void closed();

protected:
    /// Takes presses away from a popup that has just appeared, and the repetitions of Enter: a
    /// finger that rests on it answers one question, not all that follow.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *window;
    QWidget *shade;
    PopupBase *open = nullptr;
    QElapsedTimer shown; ///< since the open popup, or another text in it, came up
};

} // namespace velometer
