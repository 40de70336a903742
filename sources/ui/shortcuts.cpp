#include "ui/shortcuts.h"

#include "ui/mainwindow.h"

#include <QShortcut>

#include <array>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

struct Entry
{
    const char *keys; ///< in the portable form of QKeySequence
    const char *meaning;
    void (MainWindow::*action)();
};

constexpr std::array<Entry, 10> entries{
    {{"Ctrl+Return",
      QT_TRANSLATE_NOOP("velometer::Shortcuts", "start a test or series, end a series"),
      &MainWindow::startTestClicked},
     {"Ctrl+.", QT_TRANSLATE_NOOP("velometer::Shortcuts", "stop the running test"),
      &MainWindow::stopTestClicked},
     {"Alt+1", QT_TRANSLATE_NOOP("velometer::Shortcuts", "test"), &MainWindow::showTestTab},
     {"Alt+2", QT_TRANSLATE_NOOP("velometer::Shortcuts", "results"), &MainWindow::showResultsTab},
     {"Alt+3", QT_TRANSLATE_NOOP("velometer::Shortcuts", "settings"), &MainWindow::showSettingsTab},
     {"Alt+4", QT_TRANSLATE_NOOP("velometer::Shortcuts", "links"), &MainWindow::showLinksTab},
     {"Alt+5", QT_TRANSLATE_NOOP("velometer::Shortcuts", "about"), &MainWindow::showAboutTab},
     {"Ctrl+F", QT_TRANSLATE_NOOP("velometer::Shortcuts", "search in the results"),
      &MainWindow::searchResults},
     {"F1", QT_TRANSLATE_NOOP("velometer::Shortcuts", "these keys"), &MainWindow::showShortcuts},
     {"Ctrl+Q", QT_TRANSLATE_NOOP("velometer::Shortcuts", "end the program"),
      &MainWindow::exitClicked}}};

QKeySequence keysOf(const Entry &entry)
{
    return QKeySequence(QLatin1StringView(entry.keys), QKeySequence::PortableText);
}

} // namespace

Shortcuts::Shortcuts(MainWindow *window)
    : QObject(window)
{
    for (const Entry &entry : entries) {
        auto *shortcut = new QShortcut(keysOf(entry), window);
        shortcut->setAutoRepeat(false);
        connect(shortcut, &QShortcut::activated, window, entry.action);
    }
}

QString Shortcuts::sheet()
{
    QString rows;
    for (const Entry &entry : entries) {
        rows += u"<tr><td><b>%1</b>&nbsp;&nbsp;</td><td>%2</td></tr>"_s.arg(
            keysOf(entry).toString(QKeySequence::NativeText).toHtmlEscaped(),
            tr(entry.meaning).toHtmlEscaped());
    }
    return u"<table>%1</table>"_s.arg(rows);
}

} // namespace velometer
