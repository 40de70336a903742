#include "ui/frame/firstframe.h"

#include <QEvent>
#include <QWidget>

#include <chrono>

namespace velometer {

namespace {

/// A window that is minimised goes on with its series all the same.
constexpr std::chrono::milliseconds unseenTime{1000};

} // namespace

FirstFrame::FirstFrame(QWidget *widget)
    : QObject(widget)
{
    timer.setSingleShot(true);
    connect(&timer, &QTimer::timeout, this, &FirstFrame::shown);
    timer.start(unseenTime);
    widget->installEventFilter(this);
}

bool FirstFrame::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        if (timer.isActive()) {
            timer.start(0); // what is painted now goes to the screen before
        }
    }
    return false;
}

} // namespace velometer
