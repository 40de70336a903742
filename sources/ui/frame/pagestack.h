#pragma once

#include "ui/frame/tabbase.h"

#include <QList>
#include <QObject>

namespace velometer {

/// The pages of a window, one of which fills it. Pages are borrowed and live as long as this. Main
/// thread only.
class PageStack : public QObject
{
    Q_OBJECT

public:
    /// @p window is the pages' parent, and this one's.
    explicit PageStack(QWidget *window);

    /// Adds a page, hidden.
    void add(TabBase *page);
    const QList<TabBase *> &pages() const { return all; }
    TabBase *active() const { return shown; } ///< null before the first show()

    void show(TabBase *page);
    /// After the window's size has changed.
    void fit();
    /// Back to where the keyboard was on the active page.
    void focus();

private:
    QWidget *window;
    QList<TabBase *> all;
    TabBase *shown = nullptr;
};

} // namespace velometer
