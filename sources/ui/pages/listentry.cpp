#include "ui/pages/listentry.h"

#include <QMouseEvent>

#include <chrono>
#include <utility>

namespace velometer {

namespace {

constexpr int tapTolerance = 4; // px, in both directions
constexpr std::chrono::milliseconds holdTime{500};

} // namespace

std::optional<QPoint> ListEntry::pressPosition;
QPointer<ListEntry> ListEntry::pressed;

ListEntry::ListEntry(QWidget *parent)
    : QWidget(parent)
{
    holdTimer.setSingleShot(true);
    holdTimer.setInterval(holdTime);
    connect(&holdTimer, &QTimer::timeout, this, [this] {
        if (isPressed()) {
            forgetPress();
            Q_EMIT held();
        }
    });
    installEventFilter(this);
}

void ListEntry::forgetPress()
{
    pressPosition.reset();
    if (const QPointer<ListEntry> entry = std::exchange(pressed, nullptr)) {
        entry->holdTimer.stop();
        entry->update();
    }
}

bool ListEntry::eventFilter(QObject * /*object*/, QEvent *event)
{
    const QEvent::Type type = event->type();
    // The second of two quick taps is a tap, too.
    const bool isPress = type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick;
    if (!isPress && type != QEvent::MouseButtonRelease && type != QEvent::MouseMove) {
        return false;
    }
    const auto *mouse = static_cast<const QMouseEvent *>(event);
    const QPoint position = mapTo(window(), mouse->position().toPoint());
    if (isPress) {
        if (mouse->button() == Qt::LeftButton) {
            forgetPress();
            pressPosition = position;
            pressed = this;
            holdTimer.start();
            update();
        }
        return false;
    }
    if (!pressPosition) {
        return false;
    }
    const QPoint moved = position - *pressPosition;
    const bool isTap = std::abs(moved.x()) <= tapTolerance && std::abs(moved.y()) <= tapTolerance;
    if (type == QEvent::MouseMove) {
        if (!isTap) {
            forgetPress();
        }
    } else if (mouse->button() == Qt::LeftButton) {
        forgetPress();
        if (isTap) {
            Q_EMIT tapped();
        }
    }
    return false;
}

void ListEntry::focusInEvent(QFocusEvent *event)
{
    QWidget::focusInEvent(event);
    Q_EMIT focused();
}

} // namespace velometer
