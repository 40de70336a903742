#include "ui/scrolling/qskineticscroller.h"

#include <QAbstractScrollArea>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdlib>

namespace velometer {

namespace {

/// A finger never holds quite still: fewer moves than this are a tap.
constexpr int gMaxIgnoredMouseMoves = 4;
/// Nor does it move so far by itself: a quick flick may have no more moves than a tap.
constexpr int gFlickDistance = 48; // px
constexpr std::chrono::milliseconds gTimerInterval{30};
constexpr int gMaxDecelerationSpeed = 30; // px per tick
constexpr int gFriction = 1;              // px per tick, per tick
/// The thumb is drawn narrower than a finger; contents of less than this many pages need none.
constexpr int gThumbReach = 28; // px
constexpr int gThumbPages = 3;

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
    bool ticked = false;      ///< since the drag began
    bool thumbHeld = false;   ///< the press was on the thumb: it follows the finger
    double valuesPerPx = 1.0; ///< of the scroll bar, for a finger that drags

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

    void takeHold(QPoint point)
    {
        const QScrollBar *bar = scrollBar();
        const int range = bar->maximum() - bar->minimum();
        const int track = bar->height();
        const double pages = 1 + range / std::max(1.0, static_cast<double>(bar->pageStep()));
        const double thumb = std::max(2.0 * gThumbReach, track / pages);
        const double top =
            (track - thumb) * (bar->value() - bar->minimum()) / std::max(1.0, 1.0 * range);
        thumbHeld = bar->isVisible() && pages >= gThumbPages && track > thumb &&
                    point.x() >= scrollArea->viewport()->width() - gThumbReach &&
                    point.y() >= top && point.y() <= top + thumb;
        valuesPerPx = thumbHeld ? -range / (track - thumb) : 1;
    }
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
    d->ticked = false;
    d->takeHold(event->position().toPoint());
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
    const int distance = qRound(event->position().y() - d->lastPressPoint.y());
    const bool flick = std::abs(distance) >= gFlickDistance;
    if (!d->isMoving && d->ignoredMouseMoves < gMaxIgnoredMouseMoves && !flick) {
        ++d->ignoredMouseMoves;
        return true;
    }
    if (d->isMoving || flick) {
        d->scrollBar()->setValue(d->lastScrollBarPosition - qRound(distance * d->valuesPerPx));
    }
    if (!d->isMoving) {
        d->ignoredMouseMoves = 0;
        d->isMoving = true;
        d->lastMouseYPos = d->fingerYPos - (flick ? distance : 0);
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
    if (d->isMoving && d->thumbHeld) {
        d->stopMotion();
        return true;
    }
    if (d->isMoving && !d->ticked) {
        // All of it took less than a tick.
        d->velocity = d->fingerYPos - d->lastMouseYPos;
    }
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
        d->ticked = true;
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
