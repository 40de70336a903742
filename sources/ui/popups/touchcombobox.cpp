#include "ui/popups/touchcombobox.h"

#include <QAbstractItemView>
#include <QGraphicsProxyWidget>

#include <algorithm>

TouchComboBox::TouchComboBox(QWidget *parent)
    : QComboBox(parent)
{}

void TouchComboBox::showPopup()
{
    QComboBox::showPopup();
    const QWidget *list = view()->parentWidget();
    QGraphicsProxyWidget *proxy = list->graphicsProxyWidget();
    if (!proxy)
        return;
    const QPoint below = mapTo(window(), QPoint(0, height()));
    const int highest = std::max(0, window()->height() - list->height());
    proxy->setPos(below.x(), std::min(below.y(), highest));
}
