#pragma once

#include <QAccessible>

#include <optional>

class QWidget;

namespace velometer {

/// Tells a screen reader what a widget is that the toolkit takes for a mere area: a row of a list,
/// a link, a tab. Such a widget can be pressed by the reader, which does what Return does on it;
/// its name and description are the widget's. Main thread only.
class SpokenRole
{
public:
    /// What the toolkit does not know of a state; nothing: the widget has no such state.
    struct State
    {
        std::optional<bool> selected;
        std::optional<bool> expanded;
    };

    /// Once, in the constructor of what owns or is the widget.
    static void give(QWidget *widget, QAccessible::Role role);
    static void setState(QWidget *widget, const State &state);
};

} // namespace velometer
