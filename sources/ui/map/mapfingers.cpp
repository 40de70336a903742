#include "ui/map/mapfingers.h"

#include <QGuiApplication>
#include <QLineF>
#include <QStyleHints>
#include <QTouchEvent>

#include <algorithm>

namespace velometer {

namespace {

/// Nearer than this, a pixel's tremble of a finger would be a leap of the map.
constexpr double nearest = 20; // px

const QEventPoint *pointOf(const QTouchEvent &event, int id)
{
    const auto &points = event.points();
    const auto found = std::find_if(points.cbegin(), points.cend(),
                                    [id](const QEventPoint &point) { return point.id() == id; });
    return found == points.cend() ? nullptr : &*found;
}

bool isDown(const QEventPoint *point)
{
    return point && point->state() != QEventPoint::Released;
}

} // namespace

void MapFingers::forget()
{
    if (state == State::OneFinger || state == State::TwoFingers) {
        handling.letGo();
    }
    state = State::Free;
}

void MapFingers::begin(const QTouchEvent &event)
{
    const QEventPoint &point = event.points().front();
    const auto *hints = QGuiApplication::styleHints();
    first = point.id();
    at = point.position();
    pressedAt = at;
    state = State::OneFinger;
    const bool again =
        lastTapMs > 0 &&
        event.timestamp() - lastTapMs < static_cast<quint64>(hints->mouseDoubleClickInterval()) &&
        QLineF(lastTap, at).length() < hints->touchDoubleTapDistance();
    lastTapMs = 0;
    if (again) {
        handling.pressedTwice(at);
    } else {
        handling.pressed(at);
    }
}

void MapFingers::take(const QTouchEvent &event)
{
    if (event.type() == QEvent::TouchCancel) {
        return forget();
    }
    if (event.type() == QEvent::TouchBegin && !event.points().isEmpty()) {
        forget();
        begin(event);
    }
    const QEventPoint *finger = pointOf(event, first);
    if (state == State::OneFinger && isDown(finger)) {
        for (const QEventPoint &point : event.points()) {
            if (point.id() != first && isDown(&point)) {
                handling.letGo();
                state = State::TwoFingers;
                second = point.id();
                at = (finger->position() + point.position()) / 2;
                apart = QLineF(finger->position(), point.position()).length();
                return;
            }
        }
    }
    if (state == State::OneFinger && finger) {
        if (finger->position() != at) {
            handling.dragged(at, finger->position());
            at = finger->position();
        }
        if (!isDown(finger)) {
            state = State::Free;
            lastTap = at;
            const bool still =
                QLineF(pressedAt, at).length() < QGuiApplication::styleHints()->startDragDistance();
            lastTapMs = still ? event.timestamp() : 0;
            handling.released(at);
        }
    } else if (state == State::TwoFingers) {
        pinch(event);
    }
    if (event.type() == QEvent::TouchEnd) {
        state = State::Free;
    }
}

void MapFingers::pinch(const QTouchEvent &event)
{
    const QEventPoint *one = pointOf(event, first);
    const QEventPoint *other = pointOf(event, second);
    if (!isDown(one) || !isDown(other)) {
        state = State::Done;
        return handling.letGo();
    }
    const QPointF middle = (one->position() + other->position()) / 2;
    const double now = QLineF(one->position(), other->position()).length();
    handling.pinched(at, middle, std::max(now, nearest) / std::max(apart, nearest));
    at = middle;
    apart = now;
}

} // namespace velometer
