#include "ui/frame/pagestack.h"

#include "ui/frame/navigationbar.h"

#include <algorithm>

namespace velometer {

namespace {

// px
constexpr int wideWindow = 1000;
constexpr int widestPage = 720;
constexpr int sideWidth = 104;
constexpr int narrowestLeft = 400;
constexpr int widestLeft = 520;

} // namespace

PageStack::PageStack(QWidget *parent)
    : QObject(parent)
    , window(parent)
{}

void PageStack::add(TabBase *page)
{
    page->hide();
    all.append(page);
}

void PageStack::addBeside(TabBase *other, TabBase *page)
{
    leftsOf[page].append(other);
    if (!rightOf.contains(other)) {
        rightOf.insert(other, page);
    }
}

bool PageStack::isWide() const
{
    return window->width() >= wideWindow;
}

void PageStack::show(TabBase *page)
{
    if (!side) {
        // Behind all pages in the order of Tab, and above what the window has below them.
        side = new NavigationBar(window);
        side->standBeside();
        connect(side, &NavigationBar::pageClicked, this, &PageStack::pageClicked);
    }
    shown = page;
    const QList<TabBase *> lefts = leftsOf.value(page);
    if (!lefts.contains(left)) {
        left = lefts.value(0, page);
    }
    if (left != page) {
        rightOf.insert(left, page);
    }
    fit();
    focus();
}

void PageStack::place(TabBase *page, const QRect &room)
{
    const int width = std::min(room.width(), widestPage);
    page->setNavigationBeside(isWide());
    page->move(room.left() + (room.width() - width) / 2, room.top());
    page->setFixedSize(width, room.height());
    page->show();
}

void PageStack::fit()
{
    if (!shown) {
        return;
    }
    TabBase *first = isWide() ? left : shown;
    TabBase *right = isWide() ? rightOf.value(first) : nullptr;
    for (TabBase *each : std::as_const(all)) {
        if (each != first && each != right) {
            each->hide();
        }
    }
    QRect room(QPoint(0, 0), window->size());
    side->setVisible(isWide());
    if (isWide()) {
        side->setGeometry(0, 0, sideWidth, room.height());
        side->setCurrentPage(first->findChild<NavigationBar *>()->currentPage());
        room.setLeft(sideWidth);
    }
    if (right) {
        const int width = std::clamp(room.width() * 2 / 5, narrowestLeft, widestLeft);
        place(first, {room.left(), 0, width, room.height()});
        room.setLeft(room.left() + width);
        place(right, room);
    } else {
        place(first, room);
    }
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
