#pragma once

#include "db/databasemanager.h"
#include "measurement/testcontroller.h"
#include "ui/mainwindow.h"
#include "ui/popups/popuplayer.h"
#include "ui/theme/theme.h"
#include "utils/utils.h"

#include "support/fakeplatform.h"
#include "support/storedtests.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTest>
#include <QWindow>

#include <algorithm>
#include <memory>
#include <utility>

namespace velometer {

/// Base of a test of the whole application: its window on a fake device, with a store of its own,
/// used as a person does, by what is visible. Deletes the process's gDB at its end.
class Application
{
public:
    FakePlatform platform;
    std::unique_ptr<StoredTests> store;
    std::unique_ptr<MainWindow> window;

    Application() = default;
    ~Application()
    {
        window.reset();
        store.reset();
        delete std::exchange(gDB, nullptr);
    }
    Q_DISABLE_COPY_MOVE(Application)

    /// Starts anew with an empty store; the settings stay.
    void open()
    {
        window.reset();
        store.reset();
        store = std::make_unique<StoredTests>();
        if (qApp->styleSheet().isEmpty()) {
            Theme::wear(Theme::Look::Given);
        }
        window = std::make_unique<MainWindow>(platform);
        window->resize(MainWindow::designSize);
        window->show();
        QTRY_VERIFY(window->getController());
    }

    /// The only @p Widget, or the one of that name, whether it is visible or not.
    template <typename Widget>
    Widget *find(const QString &name = {}) const
    {
        return window->findChild<Widget *>(name);
    }
    /// The visible one; null when there is none.
    template <typename Widget>
    Widget *shown(const QString &name = {}) const
    {
        const auto all = window->findChildren<Widget *>(name);
        // A popup is made after the pages and lies above them.
        const auto found = std::find_if(all.rbegin(), all.rend(),
                                        [](const Widget *each) { return each->isVisible(); });
        return found == all.rend() ? nullptr : *found;
    }
    QAbstractButton *button(const QString &name) const { return shown<QAbstractButton>(name); }
    QString label(const QString &name) const { return shown<QLabel>(name)->text(); }

    void click(const QString &name) const
    {
        QAbstractButton *target = button(name);
        QVERIFY2(target, qPrintable(name));
        QTRY_VERIFY(window->findChild<PopupLayer *>()->isSettled());
        QTest::mouseClick(target, Qt::LeftButton);
    }

    /// Through the window, which picks the widget below the finger; over 0 px it is a tap.
    void dragUp(const QWidget *from, int pixels) const
    {
        QTest::qWait(0); // nobody aims before the page has laid out
        QPoint finger = from->mapTo(window.get(), from->rect().center());
        QTest::mousePress(window->windowHandle(), Qt::LeftButton, {}, finger);
        for (int moved = 0; moved < pixels; moved += 5) {
            QTest::mouseMove(window->windowHandle(), finger -= QPoint(0, 5));
        }
        QTest::mouseRelease(window->windowHandle(), Qt::LeftButton, {}, finger);
    }
};

} // namespace velometer
