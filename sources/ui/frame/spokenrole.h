#pragma once

#include <QAccessible>

#include <optional>

class QWidget;

namespace velometer {

/// Tells a screen reader what a widget is that the toolkit takes for a mere area: a list, a row of
/// it, a link, a tab. All but a list can be pressed by the reader, which does what Return does, and
/// are read out by name and description, not by what is painted within. Main thread only.
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
