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
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget *, QWidget *now) { mark(byKeys ? now : nullptr); });
}

bool FocusRing::eventFilter(QObject *object, QEvent *event)
{
    const QEvent::Type type = event->type();
    const bool key = type == QEvent::KeyPress;
    if (key || type == QEvent::MouseButtonPress || type == QEvent::TouchBegin) {
        byKeys = key;
        mark(byKeys ? QApplication::focusWidget() : nullptr);
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
