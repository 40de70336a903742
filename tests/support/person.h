#pragma once

#include "ui/mainwindow.h"
#include "ui/pages/listentry.h"
#include "ui/pages/resultlist.h"
#include "ui/popups/popupbase.h"
#include "ui/popups/popuplayer.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QComboBox>
#include <QGraphicsProxyWidget>
#include <QGraphicsView>
#include <QLabel>
#include <QLineEdit>
#include <QPointingDevice>
#include <QTest>
#include <QTextDocumentFragment>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace velometer {

/// A person at the application's window who has one finger or a keyboard, knows controls by what
/// they are called, and presses what is in view and nothing else. What cannot be reached so fails
/// the test that runs; after that nothing is done any more.
class Person
{
public:
    enum class Hand { Touch, Keys };

    /// @p screen is the top level that shows @p window: itself, or the view it is turned in.
    Person(MainWindow &mainWindow, QWidget &screen, Hand usedHand)
        : window(mainWindow)
        , top(screen)
        , hand(usedHand)
    {
        top.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&top));
    }

    bool isTouching() const { return hand == Hand::Touch; }

    /// Whether a text with @p part in it is on the screen.
    bool sees(const QString &part) const
    {
        const auto all = window.findChildren<QWidget *>();
        return std::any_of(all.begin(), all.end(), [&part](const QWidget *each) {
            return !each->visibleRegion().isEmpty() && textOf(each).contains(part);
        });
    }

    /// Presses what is called @p name, or begins so.
    void press(const QString &name)
    {
        if (QWidget *target = reach(name)) {
            isTouching() ? tap(middleOf(target)) : key(Qt::Key_Return);
        }
    }

    /// Where @p name stands and can be pressed now; null when it cannot, which fails the test.
    QWidget *reach(const QString &name)
    {
        if (QTest::currentTestFailed()) {
            return nullptr;
        }
        // A popup that has just come takes no press.
        (void)QTest::qWaitFor([this] { return window.findChild<PopupLayer *>()->isSettled(); });
        QTest::qWait(0); // nobody aims before the page has laid out
        QWidget *target = isTouching() ? scrollTo(name) : focusOn(name);
        if (!target) {
            fail(QStringLiteral("cannot be reached"), name);
        } else if (!isOnTop(target)) {
            fail(QStringLiteral("is covered or out of view"), name);
        } else if (!isTouching() && !target->property("keys").toBool() &&
                   !qobject_cast<QGraphicsView *>(target)) {
            fail(QStringLiteral("does not show that it has the focus"), name);
        } else {
            return target;
        }
        return nullptr;
    }

    void key(int pressed, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(top.windowHandle(), Qt::Key(pressed), modifiers);
    }

    /// px of the window.
    void tap(QPoint at) const
    {
        touch().press(0, onScreen(at), top.windowHandle());
        touch().release(0, onScreen(at), top.windowHandle());
    }

    /// The finger rests at the end: nothing coasts.
    void drag(QPoint from, QPoint by) const
    {
        constexpr int steps = 12;
        touch().press(0, onScreen(from), top.windowHandle());
        for (int step = 1; step <= steps; ++step) {
            touch().move(0, onScreen(from + by * step / steps), top.windowHandle());
        }
        QTest::qWait(restMs);
        touch().release(0, onScreen(from + by), top.windowHandle());
        QTest::qWait(restMs);
    }

    QPoint middleOf(const QWidget *target) const
    {
        return target->mapTo(&window, target->rect().center());
    }

private:
    static constexpr int restMs = 70; ///< two ticks of what coasts
    static constexpr int mostStops = 80;
    static constexpr int edge = 8; ///< px of a view that a finger keeps from

    static QString nameOf(const QWidget *widget)
    {
        auto *face = QAccessible::queryAccessibleInterface(const_cast<QWidget *>(widget));
        return face ? face->text(QAccessible::Name) : QString();
    }

    static QString textOf(const QWidget *widget)
    {
        if (const auto *label = qobject_cast<const QLabel *>(widget)) {
            return QTextDocumentFragment::fromHtml(label->text()).toPlainText();
        }
        if (const auto *field = qobject_cast<const QLineEdit *>(widget)) {
            return field->text();
        }
        const bool isControl = qobject_cast<const QAbstractButton *>(widget) ||
                               qobject_cast<const ListEntry *>(widget) ||
                               !widget->accessibleName().isEmpty();
        return isControl ? nameOf(widget) : QString();
    }

    static bool isCalled(const QWidget *widget, const QString &name)
    {
        const bool isControl =
            qobject_cast<const QAbstractButton *>(widget) ||
            qobject_cast<const QComboBox *>(widget) || qobject_cast<const QLineEdit *>(widget) ||
            qobject_cast<const QGraphicsView *>(widget) || qobject_cast<const ListEntry *>(widget);
        return isControl && widget->isVisible() && widget->isEnabled() &&
               nameOf(widget).startsWith(name);
    }

    /// What a person can turn to now: the open popup, or the page.
    QWidget *scope() const
    {
        for (auto *popup : window.findChildren<PopupBase *>()) {
            if (popup->isVisible()) {
                return popup;
            }
        }
        return &window;
    }

    QWidget *find(const QString &name) const
    {
        const auto all = scope()->findChildren<QWidget *>();
        const auto found = std::find_if(all.begin(), all.end(), [&](const QWidget *each) {
            return isCalled(each, name) && !each->testAttribute(Qt::WA_TransparentForMouseEvents);
        });
        return found == all.end() ? nullptr : *found;
    }

    bool isOnTop(const QWidget *target) const
    {
        const QWidget *there = window.childAt(middleOf(target));
        return there && (there == target || target->isAncestorOf(there));
    }

    /// Drags what scrolls until what is called @p name is in view.
    QWidget *scrollTo(const QString &name) const
    {
        QWidget *target = find(name);
        for (int tries = 0; tries < mostStops; ++tries) {
            const QWidget *list = window.findChild<ResultList *>();
            const QWidget *area = target ? scrolling(target) : list->isVisible() ? list : nullptr;
            if (!area) {
                return target;
            }
            // A long list has no widgets for what is far out of view: it is below.
            const QRect view(area->mapTo(&window, QPoint()), area->size());
            const QPoint aim = target ? middleOf(target) : view.bottomLeft();
            if (target && view.contains(aim)) {
                return target;
            }
            const QPoint wanted = view.center() - aim;
            const int wide = view.width() / 2 - edge;
            const int high = view.height() / 2 - edge;
            drag(view.center(), {target ? std::clamp(wanted.x(), -wide, wide) : 0,
                                 std::clamp(wanted.y(), -high, high)});
            const QWidget *before = std::exchange(target, find(name));
            if (target && target == before && middleOf(target) == aim) {
                break;
            }
        }
        return nullptr;
    }

    static const QWidget *scrolling(const QWidget *target)
    {
        for (; target; target = target->parentWidget()) {
            if (const auto *area =
                    qobject_cast<const QAbstractScrollArea *>(target->parentWidget())) {
                return area->viewport();
            }
        }
        return nullptr;
    }

    /// Goes from stop to stop, and through the rows of a list, until one is called so.
    QWidget *focusOn(const QString &name) const
    {
        const QWidget *list = nullptr;
        for (int stops = 0; stops < mostStops; ++stops) {
            QWidget *here = window.focusWidget();
            // Who has not pressed a key yet does not know where the keyboard is.
            if (here && isCalled(here, name) && (stops > 0 || here->property("keys").toBool())) {
                return here;
            }
            const auto *row = qobject_cast<ListEntry *>(here);
            if (row && row->parentWidget() != list) {
                list = row->parentWidget();
                key(Qt::Key_Home);
                continue;
            }
            if (row) {
                const QString before = nameOf(row);
                key(Qt::Key_Down);
                if (nameOf(window.focusWidget()) != before) {
                    continue;
                }
            }
            key(Qt::Key_Tab);
        }
        return nullptr;
    }

    QPoint onScreen(QPoint inWindow) const
    {
        const QGraphicsProxyWidget *proxy = window.graphicsProxyWidget();
        if (!proxy) {
            return inWindow;
        }
        const auto *view = proxy->scene()->views().constFirst();
        return view->viewport()->mapTo(&top, view->mapFromScene(proxy->mapToScene(inWindow)));
    }

    QTest::QTouchEventSequence touch() const
    {
        static QPointingDevice *device = QTest::createTouchDevice();
        return QTest::touchEvent(top.windowHandle(), device);
    }

    void fail(const QString &what, const QString &name) const
    {
        QStringList there;
        for (const QWidget *each : scope()->findChildren<QWidget *>()) {
            if (isCalled(each, {}) && !nameOf(each).isEmpty()) {
                there.append(nameOf(each));
            }
        }
        QFAIL(qPrintable(QStringLiteral("\"%1\" %2; there are: %3")
                             .arg(name, what, there.join(QStringLiteral(" | ")))));
    }

    MainWindow &window;
    QWidget &top;
    const Hand hand;
};

} // namespace velometer
