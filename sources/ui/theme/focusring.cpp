#include "ui/theme/focusring.h"

#include <QApplication>
#include <QEvent>
#include <QStyle>

namespace velometer {

namespace {

void setMark(QWidget *widget, bool on)
{
    if (widget) {
        widget->setProperty("keys", on);
        widget->style()->unpolish(widget);
        widget->style()->polish(widget);
    }
}

} // namespace

FocusRing::FocusRing(QObject *parent)
    : QObject(parent)
{
    qApp->installEventFilter(this);
}

// A page in a turned view gets the focus from that view, of which alone the application knows: so
// the events are what counts.
bool FocusRing::eventFilter(QObject *object, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::FocusIn || type == QEvent::FocusOut) {
        if (auto *widget = qobject_cast<QWidget *>(object)) {
            focused = type == QEvent::FocusIn ? widget : nullptr;
            mark(byKeys ? focused : nullptr);
        }
        return false;
    }
    const bool key = type == QEvent::KeyPress;
    if (key || type == QEvent::MouseButtonPress || type == QEvent::TouchBegin) {
        byKeys = key;
        mark(byKeys ? focused : nullptr);
    }
    return QObject::eventFilter(object, event);
}

void FocusRing::mark(QWidget *widget)
{
    if (widget != marked) {
        setMark(marked, false);
        marked = widget;
        setMark(marked, true);
    }
}

} // namespace velometer
