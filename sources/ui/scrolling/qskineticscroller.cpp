#include "ui/scrolling/qskineticscroller.h"

#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace velometer {

namespace {

/// A finger never holds quite still: fewer moves than this are a tap.
constexpr int gMaxIgnoredMouseMoves = 4;
constexpr std::chrono::milliseconds gTimerInterval{30};
constexpr int gMaxDecelerationSpeed = 30; // px per tick
constexpr int gFriction = 1;              // px per tick, per tick

} // namespace

class QsKineticScrollerImpl
{
public:
    QPointer<QAbstractScrollArea> scrollArea;
    bool isPressed = false;
    bool isMoving = false;         ///< dragged or coasting
    QPoint lastPressPoint;         ///< in the filtered object's coordinates
    int lastMouseYPos = 0;         ///< at the last tick, in the area's coordinates
    int lastScrollBarPosition = 0; ///< at the press
    int velocity = 0;              ///< px per tick, positive when the finger moves down
    int ignoredMouseMoves = 0;     ///< since the press
    int ignoredMouseActions = 0;   ///< synthetic presses and releases still to let through
    QTimer kineticTimer;

    /// The finger at its last move, in the area's coordinates. The cursor cannot be asked instead:
    /// it is known in screen coordinates only, and where the page is shown turned or scaled these
    /// do not map back to the area.
    int fingerYPos = 0;
    bool pressStoppedMotion = false;

    void stopMotion()
    {
        velocity = 0;
        isMoving = false;
        kineticTimer.stop();
    }

    int yInArea(const QObject *object, const QMouseEvent *event) const
    {
        const int y = event->position().toPoint().y();
        return object == scrollArea ? y : y + scrollArea->viewport()->y();
    }

    QScrollBar *scrollBar() const { return scrollArea->verticalScrollBar(); }
};

QsKineticScroller::QsKineticScroller(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<QsKineticScrollerImpl>())
{
    d->kineticTimer.setInterval(gTimerInterval);
    connect(&d->kineticTimer, &QTimer::timeout, this, &QsKineticScroller::onKineticTimerElapsed);
}

QsKineticScroller::~QsKineticScroller() = default;

void QsKineticScroller::enableKineticScrollFor(QAbstractScrollArea *scrollArea)
{
    if (!scrollArea) {
        return;
    }
    if (d->scrollArea) {
        d->scrollArea->removeEventFilter(this);
        d->scrollArea->viewport()->removeEventFilter(this);
    }
    d->stopMotion();
    d->isPressed = false;
    d->ignoredMouseActions = 0;
    scrollArea->installEventFilter(this);
    scrollArea->viewport()->installEventFilter(this);
    d->scrollArea = scrollArea;
}

bool QsKineticScroller::eventFilter(QObject *object, QEvent *event)
{
    // Also called by a viewport whose area is being destroyed: other events than the mouse's do not
    // look at it.
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: // how the second of two quick flicks begins
    case QEvent::MouseButtonRelease: {
        const auto *mouse = static_cast<const QMouseEvent *>(event);
        if (d->ignoredMouseActions > 0) {
            --d->ignoredMouseActions;
            return false;
        }
        if (mouse->button() != Qt::LeftButton || !d->scrollArea) {
            return false;
        }
        return event->type() == QEvent::MouseButtonRelease ? released(object)
                                                           : pressed(object, mouse);
    }
    case QEvent::MouseMove: return moved(object, static_cast<const QMouseEvent *>(event));
    case QEvent::Hide: // the release may go to another page
        d->isPressed = false;
        d->stopMotion();
        return false;
    default: return false;
    }
}

bool QsKineticScroller::pressed(QObject *object, const QMouseEvent *event)
{
    d->isPressed = true;
    d->lastPressPoint = event->position().toPoint();
    d->fingerYPos = d->yInArea(object, event);
    d->lastScrollBarPosition = d->scrollBar()->value();
    d->ignoredMouseMoves = 0;
    d->pressStoppedMotion = d->isMoving;
    if (d->isMoving) {
        d->stopMotion();
        Q_EMIT coastingStopped();
    }
    return true;
}

bool QsKineticScroller::moved(QObject *object, const QMouseEvent *event)
{
    // A pointer that hovers over a viewport with mouse tracking drags nothing.
    if (!d->isPressed || !d->scrollArea) {
        return false;
    }
    d->fingerYPos = d->yInArea(object, event);
    if (d->isMoving) {
        const int distance = event->position().toPoint().y() - d->lastPressPoint.y();
        d->scrollBar()->setValue(d->lastScrollBarPosition - distance);
    } else if (d->ignoredMouseMoves < gMaxIgnoredMouseMoves) {
        ++d->ignoredMouseMoves;
    } else {
        d->ignoredMouseMoves = 0;
        d->isMoving = true;
        d->lastMouseYPos = d->fingerYPos;
        if (!d->kineticTimer.isActive()) {
            d->kineticTimer.start();
        }
    }
    return true;
}

bool QsKineticScroller::released(QObject *object)
{
    // The click's own release comes by once more when the viewport has no use for it and hands it
    // on to the area.
    if (!d->isPressed) {
        return false;
    }
    d->isPressed = false;
    if (d->isMoving || d->pressStoppedMotion) {
        return true;
    }

    const auto *widget = qobject_cast<QWidget *>(object);
    const QPointF point = d->lastPressPoint;
    const QPointF globalPoint = widget->mapToGlobal(point);
    d->ignoredMouseActions = 2;
    QCoreApplication::postEvent(object,
                                new QMouseEvent(QEvent::MouseButtonPress, point, globalPoint,
                                                Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
    QCoreApplication::postEvent(object,
                                new QMouseEvent(QEvent::MouseButtonRelease, point, globalPoint,
                                                Qt::LeftButton, Qt::NoButton, Qt::NoModifier));
    return true;
}

void QsKineticScroller::onKineticTimerElapsed()
{
    if (!d->scrollArea || !d->isMoving) {
        d->stopMotion();
    } else if (d->isPressed) {
        d->velocity = d->fingerYPos - d->lastMouseYPos;
        d->lastMouseYPos = d->fingerYPos;
    } else {
        int velocity = std::clamp(d->velocity, -gMaxDecelerationSpeed, gMaxDecelerationSpeed);
        if (velocity > 0) {
            velocity -= gFriction;
        } else if (velocity < 0) {
            velocity += gFriction;
        }
        d->velocity = velocity;
        if (velocity == 0) {
            d->stopMotion();
        }
        d->scrollBar()->setValue(d->scrollBar()->value() - velocity);
    }
}

} // namespace velometer
