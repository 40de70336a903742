#include "ui/frame/pagestack.h"

namespace velometer {

PageStack::PageStack(QWidget *parent)
    : QObject(parent)
    , window(parent)
{}

void PageStack::add(TabBase *page)
{
    page->hide();
    all.append(page);
}

void PageStack::show(TabBase *page)
{
    for (TabBase *each : std::as_const(all)) {
        if (each != page) {
            each->hide();
        }
    }
    shown = page;
    fit();
    focus();
}

void PageStack::fit()
{
    if (!shown) {
        return;
    }
    shown->move(0, 0);
    shown->setFixedSize(window->size());
    shown->show();
    shown->activateWindow();
}

void PageStack::focus()
{
    if (!shown) {
        return;
    }
    QWidget *last = shown->focusWidget();
    (last && last->isVisible() && last->isEnabled() ? last : shown)->setFocus();
}

} // namespace velometer
