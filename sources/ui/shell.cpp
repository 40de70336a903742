#include "ui/shell.h"

#include "ui/mainwindow.h"
#include "utils/utils.h"

#include <QCloseEvent>
#include <QGraphicsProxyWidget>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

// Its macros (None, Bool, Status ...) would break Qt's headers.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#undef None
#undef Bool
#undef Status

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

constexpr int handsetDegrees = 270;
/// A landscape panel this low is a handset's, px.
constexpr int maxHandsetHeight = 540;
constexpr int maxHandsetWidth = 1024;
/// A portrait screen this narrow is held in a hand: in px of a scaled desktop, or in mm.
constexpr int maxPhoneWidth = 600;
constexpr qreal maxPhoneWidthMm = 100;
/// Title bar and borders of a desktop's window, px.
constexpr int decoration = 40;
constexpr QSize smallestWindow{320, 480};

/// Tells the window manager which way the panel is held; without X11 there is nobody to tell.
void setOrientationProperty(WId window, int degrees)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    Display *display = x11 ? x11->display() : nullptr;
    if (!display) {
        return;
    }
    const Atom property = XInternAtom(display, "_MEEGOTOUCH_ORIENTATION_ANGLE", False);
    const long value = degrees; // the library takes an array of long for 32 bits
    XChangeProperty(display, window, property, XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char *>(&value), 1);
    XFlush(display);
}

/// What the user left, else the design's size. A settings file may hold anything.
QSize rememberedSize()
{
    const QStringList parts = Utils::getSettingsValue(u"WindowSize"_s).split(u'x');
    const QSize size(parts.value(0).toInt(), parts.value(1).toInt());
    return parts.size() == 2 && size.width() > 0 && size.height() > 0 ? size
                                                                      : MainWindow::designSize;
}

} // namespace

/// Holds the window in the scene. Of its own the toolkit stops at the last widget, where a window
/// goes round.
class Shell::Frame : public QGraphicsProxyWidget
{
protected:
    bool focusNextPrevChild(bool next) override
    {
        const auto after = [next](const QWidget *each) {
            return next ? each->nextInFocusChain() : each->previousInFocusChain();
        };
        QWidget *from = widget()->focusWidget() ? widget()->focusWidget() : widget();
        for (QWidget *each = after(from); each != from; each = after(each)) {
            const bool isStop = (each->focusPolicy() & Qt::TabFocus) != 0 && !each->focusProxy();
            if (isStop && each->isVisibleTo(widget()) && each->isEnabled()) {
                each->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
                return true;
            }
        }
        return false;
    }
};

/// Fits the window into whatever size the view gets.
class Shell::View : public QGraphicsView
{
public:
    View(QGraphicsScene *scene, MainWindow &mainWindow, int rotation)
        : QGraphicsView(scene)
        , window(mainWindow)
        , degrees(rotation)
    {
        rotate(degrees);
        setStyleSheet(u"border: 0px"_s);
        setBackgroundBrush(Qt::black);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        setWindowTitle(window.windowTitle());
    }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QGraphicsView::resizeEvent(event);
        fit();
    }

    void closeEvent(QCloseEvent *event) override { event->setAccepted(window.close()); }

private:
    // Pages lay out to what there is; only on a panel of twice the design's pixels and more are
    // they made larger, by a whole factor, so that nothing gets soft.
    void fit()
    {
        const bool turned = degrees % 180 != 0;
        const QSize size = turned ? viewport()->size().transposed() : viewport()->size();
        if (size.isEmpty()) {
            return;
        }
        const QSize design = MainWindow::designSize;
        const int factor =
            std::max(1, std::min(size.width() / design.width(), size.height() / design.height()));
        const QSize page = size / factor;
        resetTransform();
        rotate(degrees);
        scale(factor, factor);
        setSceneRect(0, 0, page.width(), page.height());
        window.setFixedSize(page);
    }

    MainWindow &window;
    const int degrees;
};

std::optional<ShellKind> Shell::fromName(const QString &name)
{
    if (name == "handset"_L1) {
        return ShellKind::Handset;
    }
    if (name == "phone"_L1) {
        return ShellKind::Phone;
    }
    if (name == "desktop"_L1) {
        return ShellKind::Desktop;
    }
    return std::nullopt;
}

ShellKind Shell::fitting(const QSize &screen, qreal wideMm)
{
    if (screen.width() > screen.height()) {
        const bool low = screen.height() <= maxHandsetHeight && screen.width() <= maxHandsetWidth;
        return low ? ShellKind::Handset : ShellKind::Desktop;
    }
    const bool narrow = screen.width() <= maxPhoneWidth || (wideMm > 0 && wideMm < maxPhoneWidthMm);
    return narrow ? ShellKind::Phone : ShellKind::Desktop;
}

ShellKind Shell::fitting(const QScreen &screen)
{
    return fitting(screen.geometry().size(), screen.physicalSize().width());
}

Shell::Shell(ShellKind shellKind, MainWindow &mainWindow)
    : kind(shellKind)
    , window(mainWindow)
{
    if (kind != ShellKind::Handset) {
        const QSize free =
            QGuiApplication::primaryScreen()->availableGeometry().size() - QSize(0, decoration);
        window.setMinimumSize(smallestWindow.boundedTo(free));
        window.resize(rememberedSize().boundedTo(free).expandedTo(window.minimumSize()));
        return;
    }
    scene = std::make_unique<QGraphicsScene>();
    auto *frame = new Frame;
    frame->setWidget(&window);
    scene->addItem(frame);
    frame->setPos(0, 0);
    view = std::make_unique<View>(scene.get(), window, handsetDegrees);
    connect(&window, &MainWindow::closed, view.get(), &QWidget::close, Qt::QueuedConnection);
}

Shell::~Shell()
{
    if (kind == ShellKind::Desktop && !window.isMaximized()) {
        Utils::setSettingsValue(u"WindowSize"_s,
                                u"%1x%2"_s.arg(window.width()).arg(window.height()));
    }
    // The window is not ours: it leaves the scene before the scene goes.
    if (QGraphicsProxyWidget *proxy = window.graphicsProxyWidget()) {
        proxy->setWidget(nullptr);
    }
}

QWidget &Shell::topLevel()
{
    return view ? static_cast<QWidget &>(*view) : window;
}

void Shell::show()
{
    if (kind == ShellKind::Desktop) {
        topLevel().show();
    } else {
        // A handset may have no window manager that makes it as large as the screen.
        topLevel().setGeometry(QGuiApplication::primaryScreen()->geometry());
        topLevel().showFullScreen();
    }
    Utils::addLogEntry(u"View Size: %1 x %2"_s.arg(QString::number(topLevel().width()),
                                                   QString::number(topLevel().height())));
    window.setOrientation(MainWindow::ScreenOrientationLockPortrait);
    if (kind == ShellKind::Handset) {
        setOrientationProperty(view->winId(), handsetDegrees);
    }
}

void Shell::raise()
{
    QWidget &top = topLevel();
    top.setWindowState(top.windowState() & ~Qt::WindowMinimized);
    top.show();
    top.raise();
    top.activateWindow();
}

} // namespace velometer
