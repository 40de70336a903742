#pragma once

#include "ui/frame/tabbase.h"

#include <QHash>
#include <QList>
#include <QObject>

namespace velometer {

class NavigationBar;

/// The pages of a window, one of which fills it. A page is never wider than is read well. In a
/// window of 1000 px and more the navigation stands at the side, and pages that belong together
/// stand beside each other. Pages are borrowed and live as long as this. Main thread only.
class PageStack : public QObject
{
    Q_OBJECT

public:
    /// @p window is the pages' parent, and this one's.
    explicit PageStack(QWidget *window);

    /// Adds a page, hidden.
    void add(TabBase *page);
    /// Where there is room, @p page stands to the right of @p other; the first of several also when
    /// @p other is shown and none of them was yet. A page that may stand beside several stays
    /// beside the one that is shown, else it comes with the first.
    void addBeside(TabBase *other, TabBase *page);
    const QList<TabBase *> &pages() const { return all; }
    TabBase *active() const { return shown; } ///< null before the first show()
    bool isWide() const;

    void show(TabBase *page);
    /// After the window's size has changed.
    void fit();
    /// Back to where the keyboard was on the active page.
    void focus();

Q_SIGNALS:
    /// A button of the navigation at the side.
    void pageClicked(Page page);

private:
    void place(TabBase *page, const QRect &room);

    QWidget *window;
    QList<TabBase *> all;
    QHash<TabBase *, QList<TabBase *>> leftsOf;
    QHash<TabBase *, TabBase *> rightOf; ///< the one that stood there last
    TabBase *shown = nullptr;
    TabBase *left = nullptr;       ///< the shown page, or what it stands beside in a wide window
    NavigationBar *side = nullptr; ///< made when a page is shown
};

} // namespace velometer
