#include "ui/popups/popuplayer.h"

#include "ui/popups/popupbase.h"

#include <QApplication>
#include <QKeyEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int popupWidth = 400; ///< px
constexpr int popupMargin = 16; ///< px
/// Longer than the pause between two taps that are meant as one.
constexpr qint64 settleMs = 400;

bool isPress(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
    case QEvent::KeyPress: return true;
    default: return false;
    }
}

} // namespace

PopupLayer::PopupLayer(QWidget *parent)
    : QObject(parent)
    , window(parent)
    , shade(new QWidget(parent))
{
    shade->setObjectName(u"shade"_s);
    shade->hide();
    qApp->installEventFilter(this);
}

bool PopupLayer::eventFilter(QObject *watched, QEvent *event)
{
    const auto *target = qobject_cast<const QWidget *>(watched);
    if (isPress(*event) && !isSettled() && target &&
        (target == open || open->isAncestorOf(target))) {
        return true;
    }
    if (event->type() == QEvent::KeyPress) {
        const auto *press = static_cast<QKeyEvent *>(event);
        const bool enter = press->key() == Qt::Key_Return || press->key() == Qt::Key_Enter;
        if (enter && press->isAutoRepeat()) {
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

bool PopupLayer::isSettled() const
{
    return !open || shown.hasExpired(settleMs);
}

void PopupLayer::show(PopupBase *popup)
{
    shown.start();
    if (open && open != popup) {
        open->setVisible(false);
    }
    open = popup;
    place();
    popup->setVisible(true);
}

void PopupLayer::place()
{
    if (!open) {
        return;
    }
    const int wide = std::min(popupWidth, window->width() - 2 * popupMargin);
    const int high = open->heightForWidth(wide);
    open->setFixedSize(wide,
                       std::min(high > 0 ? high : open->sizeHint().height(), window->height()));
    open->move((window->width() - open->width()) / 2, (window->height() - open->height()) / 2);
    shade->setGeometry(window->rect());
    shade->show();
    shade->raise();
    open->raise();
}

void PopupLayer::close(PopupBase *popup)
{
    if (open != popup) {
        return;
    }
    popup->setVisible(false);
    open = nullptr;
    shade->hide();
    Q_EMIT closed();
}

} // namespace velometer
