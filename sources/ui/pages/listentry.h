#pragma once

#include <QPoint>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <optional>

namespace velometer {

/// A line of a list that scrolls under the finger: knows a tap from a drag, and a press that is
/// held. Never consumes an event, so that the list below it gets them all. Main thread only.
class ListEntry : public QWidget
{
    Q_OBJECT

public:
    explicit ListEntry(QWidget *parent);

    /// The press under way, if any, becomes no tap.
    static void forgetPress();

Q_SIGNALS:
    void tapped();
    /// Pressed for half a second without moving.
    void held();
    /// The entry has got the keyboard.
    void focused();

protected:
    bool isPressed() const { return pressed == this; }
    /// Recognises taps.
    bool eventFilter(QObject *object, QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    /// Shared by all entries: there is one finger. In the window's coordinates, since the entry
    /// moves with the finger.
    static std::optional<QPoint> pressPosition;
    static QPointer<ListEntry> pressed;

    QTimer holdTimer;
};

} // namespace velometer
