#include "ui/frame/touchcombobox.h"

#include <QAbstractItemView>
#include <QGraphicsProxyWidget>
#include <QStyledItemDelegate>

#include <algorithm>

namespace velometer {

namespace {
constexpr int rowHeight = 44; ///< px
}

TouchComboBox::TouchComboBox(QWidget *parent)
    : QComboBox(parent)
{
    // The box's own delegate draws a menu and takes no colours from the style sheet.
    setItemDelegate(new QStyledItemDelegate(this));
}

void TouchComboBox::addChoice(const QString &text, const QVariant &value)
{
    addItem(text, value);
    setItemData(count() - 1, QSize(0, rowHeight), Qt::SizeHintRole);
    setMaxVisibleItems(count());
}

void TouchComboBox::showPopup()
{
    QComboBox::showPopup();
    const QWidget *list = view()->parentWidget();
    QGraphicsProxyWidget *proxy = list->graphicsProxyWidget();
    if (!proxy) {
        return;
    }
    const QPoint below = mapTo(window(), QPoint(0, height()));
    const int highest = std::max(0, window()->height() - list->height());
    proxy->setPos(below.x(), std::min(below.y(), highest));
}

} // namespace velometer
