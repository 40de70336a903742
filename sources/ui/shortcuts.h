#pragma once

#include <QObject>
#include <QString>

namespace velometer {

class MainWindow;

/// The keys of the main window: start, stop, the pages, search, the sheet that tells them, and the
/// end. What a popup covers they do not do. Main thread only.
class Shortcuts : public QObject
{
    Q_OBJECT

public:
    /// @p window is borrowed and this one's parent; its pages are made.
    explicit Shortcuts(MainWindow *window);

    /// A table for a message: what is pressed, and what it does. Rich text.
    static QString sheet();
};

} // namespace velometer
