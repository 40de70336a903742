#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace velometer {

/// One of several things to choose, which a page asks for and whoever owns the pop-ups shows.
struct Choice
{
    QString title;
    QStringList options; ///< plain text, in the user's language
    int current = -1;    ///< the option that is in force; -1: none, the options are actions
    /// Called with the index of the option, never when nothing was chosen.
    std::function<void(int)> chosen;
};

} // namespace velometer
