#pragma once

class QWidget;

namespace velometer {

/// Where widgets that are made in code stand in the order of Tab.
class TabPlace
{
public:
    /// Puts @p widget right behind @p before, whether or not they are stops at the moment. Both
    /// have one window.
    static void putBehind(QWidget *before, QWidget *widget);
};

} // namespace velometer
