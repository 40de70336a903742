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
constexpr QSize smallestWindow{480, 560};

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

} // namespace

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
    // The design's width or height fills the screen, the other is as much as the screen has, but
    // never less than the design's.
    void fit()
    {
        const bool turned = degrees % 180 != 0;
        const QSize size = turned ? viewport()->size().transposed() : viewport()->size();
        if (size.isEmpty()) {
            return;
        }
        const QSizeF design = MainWindow::designSize;
        const qreal factor =
            std::min(size.width() / design.width(), size.height() / design.height());
        const QSize page(std::max(MainWindow::designSize.width(), qRound(size.width() / factor)),
                         std::max(MainWindow::designSize.height(), qRound(size.height() / factor)));
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
    const QSize free = QGuiApplication::primaryScreen()->availableGeometry().size();
    const bool small = free.width() < smallestWindow.width() ||
                       free.height() < smallestWindow.height() + decoration;
    if (kind == ShellKind::Desktop && !small) {
        window.setMinimumSize(smallestWindow);
        window.resize(MainWindow::designSize.boundedTo(free - QSize(0, decoration)));
        return;
    }
    scene = std::make_unique<QGraphicsScene>();
    QGraphicsProxyWidget *proxy = scene->addWidget(&window);
    proxy->setPos(0, 0);
    view = std::make_unique<View>(scene.get(), window,
                                  kind == ShellKind::Handset ? handsetDegrees : 0);
    if (kind == ShellKind::Desktop) {
        view->resize(
            MainWindow::designSize.scaled(free - QSize(0, decoration), Qt::KeepAspectRatio));
    }
    connect(&window, &MainWindow::closed, view.get(), &QWidget::close, Qt::QueuedConnection);
}

Shell::~Shell()
{
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
