#pragma once

#include <QString>

namespace velometer {

/// One row of the details window, as shown.
struct DetailsItem
{
    QString title;
    QString description; ///< empty when the title says it all
    QString value;
};

} // namespace velometer
