// What a screen reader is told on every page in every shell, and where Tab leads there.

#include "ui/details/detailswindow.h"
#include "ui/frame/navigationbar.h"
#include "ui/frame/pageheader.h"
#include "ui/frame/tabbase.h"
#include "ui/pages/resultgroupheader.h"
#include "ui/pages/testresultwidget.h"
#include "ui/plot/historyplot.h"
#include "ui/plot/throughputplot.h"
#include "ui/popups/popupbase.h"
#include "ui/shell.h"
#include "utils/translations.h"

#include "support/application.h"
#include "support/registeredtest.h"

#include <QAccessible>
#include <QComboBox>
#include <QGraphicsView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextBrowser>

#include <functional>
#include <limits>

namespace velometer {

namespace {

using Role = QAccessible::Role;

bool isStop(const QWidget *widget)
{
    return (widget->focusPolicy() & Qt::TabFocus) != 0 && !widget->focusProxy() &&
           widget->isVisible() && widget->isEnabled();
}

QList<Role> rolesFor(const QWidget *control)
{
    if (const auto *button = qobject_cast<const QAbstractButton *>(control)) {
        const bool isTab =
            qobject_cast<const NavigationBar *>(control->parentWidget()) && isStop(control);
        return button->isCheckable() ? QList{Role::CheckBox, Role::RadioButton}
               : isTab               ? QList{Role::PageTab}
                                     : QList{Role::Button};
    }
    if (qobject_cast<const QComboBox *>(control)) {
        return {Role::ComboBox};
    }
    if (qobject_cast<const ListEntry *>(control)) {
        return {Role::ListItem};
    }
    if (qobject_cast<const QLabel *>(control)) {
        return {Role::Link};
    }
    if (qobject_cast<const QGraphicsView *>(control)) {
        return {Role::Canvas};
    }
    if (qobject_cast<const QTextBrowser *>(control)) {
        return {Role::StaticText};
    }
    const bool isText =
        qobject_cast<const QLineEdit *>(control) || qobject_cast<const QPlainTextEdit *>(control);
    return {isText ? Role::EditableText : Role::Client}; // what scrolls
}

/// What is wrong with what @p control says of itself; empty: nothing.
QString judge(QWidget *control)
{
    const QAccessibleInterface *face = QAccessible::queryAccessibleInterface(control);
    if (!face || face->text(QAccessible::Name).trimmed().isEmpty()) {
        return u"has no name"_s;
    }
    if (!rolesFor(control).contains(face->role())) {
        return u"has the role %1"_s.arg(face->role());
    }
    const QAccessible::State state = face->state();
    const auto *button = qobject_cast<const QAbstractButton *>(control);
    const bool isTold = state.disabled == !control->isEnabled() &&
                        (!button || (state.checkable == button->isCheckable() &&
                                     state.checked == button->isChecked()));
    return isTold ? QString() : u"does not tell its state"_s;
}

/// Nothing that a finger presses is smaller than 44 px: of the navigation picture and word
/// together, of a text the row that it stands in.
QString judgeSize(const QWidget *control)
{
    constexpr int finger = 44;
    const auto *line = qobject_cast<const QLineEdit *>(control);
    if ((line && line->isReadOnly()) || qobject_cast<const QLabel *>(control)) {
        return {};
    }
    if (qobject_cast<const NavigationBar *>(control->parentWidget())) {
        control = control->parentWidget();
    }
    return control->width() < finger || control->height() < finger
               ? u"is %1 x %2 px"_s.arg(control->width()).arg(control->height())
               : QString();
}

/// Which pane, from the left, and what of it: header, body; behind all the navigation.
std::pair<int, int> regionOf(const QWidget *stop)
{
    std::pair region{std::numeric_limits<int>::max(), 1};
    for (const QWidget *each = stop; each; each = each->parentWidget()) {
        if (qobject_cast<const NavigationBar *>(each)) {
            return {std::numeric_limits<int>::max(), 2};
        }
        if (qobject_cast<const PageHeader *>(each)) {
            region.second = 0;
        }
        if (qobject_cast<const TabBase *>(each)) {
            region.first = each->x();
        }
    }
    return region;
}

/// By what of them stands side by side: within it each may be scrolled.
bool follows(const QWidget *before, const QWidget *after)
{
    if (before->isAncestorOf(after)) {
        return true;
    }
    while (!before->parentWidget()->isAncestorOf(after)) {
        before = before->parentWidget();
    }
    while (after->parentWidget() != before->parentWidget()) {
        after = after->parentWidget();
    }
    const QRect first = before->geometry();
    const QRect second = after->geometry();
    return second.top() >= first.bottom() ||
           (second.left() >= first.right() && second.bottom() > first.top());
}

} // namespace

class AccessibilityTest : public QObject, protected Application
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhatItIsAndTabFollowsTheEye_data()
    {
        const Rows<ShellKind, QSize, QString> row("shell", "size", "language");
        row("handset, German", ShellKind::Handset, {854, 480}, "de");
        row("handset, English", ShellKind::Handset, {854, 480}, "en");
        row("phone, German", ShellKind::Phone, {360, 640}, "de");
        row("phone, English", ShellKind::Phone, {360, 640}, "en");
        row("desktop, German", ShellKind::Desktop, {1200, 760}, "de");
        row("desktop, English", ShellKind::Desktop, {1200, 760}, "en");
    }
    void saysWhatItIsAndTabFollowsTheEye()
    {
        const auto [kind, size, language] = currentRow<ShellKind, QSize, QString>();
        start(kind, size, language);
        QString wrong;
        for (const auto &[name, open] : pages()) {
            open();
            QTest::qWait(pageMs);
            QTRY_VERIFY(window->findChild<PopupLayer *>()->isSettled());
            if (const QString here = judgeControls() + judgeOrder(); !here.isEmpty()) {
                wrong += name + here + u"; "_s;
            }
        }
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
    }

    void aReaderOpensAndChoosesRowsAndHearsCurves()
    {
        start(ShellKind::Phone, {360, 640}, u"en"_s);
        const auto faceOf = [](QWidget *widget) {
            return QAccessible::queryAccessibleInterface(widget);
        };
        const auto press = [&](QWidget *widget) {
            QVERIFY(widget);
            faceOf(widget)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
            QTest::qWait(0);
        };
        press(shown<QLabel>(u"labelLocation"_s)); // and starts no test
        QCOMPARE(shown<PopupBase>()->objectName(), u"LocationPopup"_s);
        window->locationPopupCancelClicked();

        window->showResultsTab();
        QTRY_VERIFY(shown<ListEntry>());
        auto *heading = shown<ResultGroupHeader>();
        QVERIFY(faceOf(heading)->state().expanded);
        const QAccessibleInterface *list = faceOf(heading)->parent();
        QCOMPARE(list->role(), QAccessible::List);
        QCOMPARE(list->childCount(), 4);
        for (int row = 0; row < 4; ++row) { // as they stand
            QVERIFY(list->child(row)
                        ->text(QAccessible::Name)
                        .startsWith(row == 0 ? u"Wed"_s : u"12 / %1,"_s.arg(4 - row)));
            QCOMPARE(list->indexOfChild(list->child(row)), row);
        }
        press(heading);
        QVERIFY(faceOf(shown<ResultGroupHeader>())->state().collapsed);
        press(shown<ResultGroupHeader>());
        press(button(u"buttonSelect"_s));
        auto *row = shown<TestResultWidget>();
        QTRY_VERIFY(faceOf(row)->state().selectable); // a button is down for a moment
        QVERIFY(!faceOf(row)->state().selected);
        press(row);
        QVERIFY(faceOf(row)->state().selected);
        press(button(u"buttonDone"_s));
        QTRY_VERIFY(!faceOf(row)->state().selectable);
        press(row);
        QTRY_VERIFY(shown<ThroughputPlot>());
        QCOMPARE(shown<ThroughputPlot>()->accessibleName(),
                 u"Throughput over time, Download on average 16, at most 24 Mbit/s"_s);
        window->showResultsTab();
        QTRY_VERIFY(button(u"buttonHistory"_s));
        press(button(u"buttonHistory"_s));
        QTRY_VERIFY(button(u"chipPeriod4"_s));
        press(button(u"chipPeriod4"_s));
        QTRY_VERIFY(shown<HistoryPlot>());
        QTRY_COMPARE(shown<HistoryPlot>()->accessibleName(), u"RTT, 4G from 31 to 33 ms"_s);
    }

    void cleanup()
    {
        shell.reset();
        window.reset();
        store.reset();
    }

private:
    static constexpr int pageMs = 100; // details are read after a first frame
    static constexpr int mostPresses = 100;

    void start(ShellKind kind, const QSize &size, const QString &language)
    {
        for (const auto &key : {u"AdvMode"_s, u"WindowSize"_s, u"CostWarning"_s}) {
            Utils::setSettingsValue(key, QString());
        }
        Translations::install(language);
        Theme::wear(kind == ShellKind::Handset ? Theme::Look::Given : Theme::Look::Dark);
        store = std::make_unique<StoredTests>();
        for (int id = 1; id <= 3; ++id) {
            store->add({.id = id, .test = id, .rtt = 30 + id});
            store->addDetail(id, u"deviceLatitude"_s, 47.2);
            store->addDetail(id, u"deviceLongitude"_s, 8.8 + id);
            store->addIntervals(id, 1, u"300000,200000,100000"_s);
        }
        if (auto track = gDB->tracks().begin(1'700'000'000'000)) {
            gDB->tracks().setEnded(*track, track->started);
        }
        window = std::make_unique<MainWindow>(platform);
        shell = std::make_unique<Shell>(kind, *window);
        shell->topLevel().resize(size);
        shell->topLevel().show();
        shell->topLevel().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&shell->topLevel()));
        QTRY_VERIFY(window->getController());
    }

    std::vector<std::pair<QString, std::function<void()>>> pages()
    {
        const auto press = [this](const QString &name) {
            return [this, name] { button(name)->click(); };
        };
        return {{u"test"_s, [this] { window->showTestTab(); }},
                {u"results"_s, [this] { window->showResultsTab(); }},
                {u"choice"_s, press(u"chipSearch"_s)},
                {u"selection"_s, press(u"buttonSelect"_s)},
                {u"details"_s,
                 [this] {
                     window->getDetailsWindow()->showNewest();
                     window->showDetailsWindow();
                 }},
                {u"log"_s, press(u"logButton"_s)},
                {u"map"_s, [this] { window->showGeomapTab(); }},
                {u"tracks"_s, press(u"buttonTracks"_s)},
                {u"settings"_s, [this] { window->showSettingsTab(); }},
                {u"links"_s, [this] { window->showLinksTab(); }},
                {u"about"_s, [this] { window->showAboutTab(); }},
                {u"location"_s, [this] { window->showLocationPopup(); }},
                {u"series"_s,
                 [this] {
                     window->locationPopupCancelClicked();
                     window->showNumberOfMeasurementsPopup();
                 }},
                {u"history"_s, [this] {
                     window->numberOfMeasurementsPopupCancelClicked();
                     window->showResultsTab();
                     QTest::qWait(pageMs);
                     find<QAbstractButton>(u"buttonDone"_s)->click();
                     button(u"buttonHistory"_s)->click();
                 }}};
    }

    /// What can be turned to: the open popup, or the window.
    QWidget *scope() const
    {
        QWidget *popup = shown<PopupBase>();
        return popup ? popup : window.get();
    }

    QString judgeControls() const
    {
        QString wrong;
        for (QWidget *each : scope()->findChildren<QWidget *>()) {
            const bool isPressed = qobject_cast<QAbstractButton *>(each) && each->isVisible() &&
                                   !each->testAttribute(Qt::WA_TransparentForMouseEvents);
            if (isPressed || isStop(each)) {
                for (const QString &said : {judge(each), judgeSize(each)}) {
                    wrong += said.isEmpty() ? said : nameOf(each) + said;
                }
            }
        }
        return wrong;
    }

    /// Goes once round with Tab.
    QString judgeOrder() const
    {
        QList<QWidget *> stops;
        for (int presses = 0; presses < mostPresses; ++presses) {
            QTest::keyClick(shell->topLevel().windowHandle(), Qt::Key_Tab);
            QWidget *here = window->focusWidget();
            if (stops.size() > 1 && here == stops.constFirst()) {
                break;
            }
            // A text has its links as stops of its own.
            if (stops.isEmpty() || here != stops.constLast()) {
                stops.append(here);
            }
        }
        for (QWidget *each : scope()->findChildren<QWidget *>()) {
            if (isStop(each) && !stops.contains(each)) {
                return nameOf(each) + u"is no stop"_s;
            }
        }
        // Only once does it go back: from the last stop to the first.
        QString backward;
        for (qsizetype index = 0; index < stops.size(); ++index) {
            const QWidget *here = stops.at(index);
            const QWidget *next = stops.at((index + 1) % stops.size());
            const bool isForward = regionOf(here) == regionOf(next)
                                       ? follows(here, next)
                                       : regionOf(here) < regionOf(next);
            if (!isForward) {
                backward += nameOf(here) + u" goes back to "_s + nameOf(next);
            }
        }
        return backward.count(u" goes back "_s) > 1 ? backward : QString();
    }

    static QString nameOf(const QWidget *widget)
    {
        return u" %1 %2 "_s.arg(QString::fromLatin1(widget->metaObject()->className()),
                                widget->objectName());
    }

    std::unique_ptr<Shell> shell;
};

} // namespace velometer

Q_DECLARE_METATYPE(velometer::ShellKind)

VELOMETER_WIDGET_TEST(AccessibilityTest)
#include "accessibility_test.moc"
