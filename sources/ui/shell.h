#pragma once

#include <QGraphicsView>
#include <QString>

#include <memory>
#include <optional>

class QScreen;

namespace velometer {

class MainWindow;

/// How the portrait window meets the screen.
enum class ShellKind {
    Handset, ///< landscape panel: rotated by 270 degrees, full screen
    Phone,   ///< portrait panel: upright, full screen
    Desktop, ///< an upright window, as large as the user left it
};

/// Puts the main window on the screen. In the handset shell the window lies in the scene of a
/// graphics view that turns it, and makes it larger by a whole factor where the panel has that many
/// pixels; elsewhere it lies on the screen itself. Its pages lay out to the size they get. Main
/// thread only.
class Shell : public QObject
{
    Q_OBJECT

public:
    /// "handset", "phone" or "desktop".
    static std::optional<ShellKind> fromName(const QString &name);
    /// What fits a screen of this size in px that is @p wideMm wide (0 when unknown).
    static ShellKind fitting(const QSize &screen, qreal wideMm);
    static ShellKind fitting(const QScreen &screen);

    /// @p window is borrowed; it outlives the shell.
    Shell(ShellKind kind, MainWindow &window);
    ~Shell() override;

    /// Shows window or view, sets the orientation property, and writes the view's size to the log.
    void show();
    /// Brings it to the front, for a user who started the program again.
    void raise();
    /// The widget that the window system sees.
    QWidget &topLevel();

private:
    class Frame;
    class View;

    const ShellKind kind;
    MainWindow &window;
    std::unique_ptr<QGraphicsScene> scene;
    std::unique_ptr<View> view;
};

} // namespace velometer
