#include "ui/frame/tabplace.h"

#include <QWidget>

namespace velometer {

void TabPlace::putBehind(QWidget *before, QWidget *widget)
{
    // The toolkit orders stops alone.
    const Qt::FocusPolicy ofBefore = before->focusPolicy();
    const Qt::FocusPolicy ofWidget = widget->focusPolicy();
    before->setFocusPolicy(Qt::TabFocus);
    widget->setFocusPolicy(Qt::TabFocus);
    QWidget::setTabOrder(before, widget);
    before->setFocusPolicy(ofBefore);
    widget->setFocusPolicy(ofWidget);
}

} // namespace velometer
