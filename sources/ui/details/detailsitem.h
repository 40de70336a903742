#pragma once

#include <QString>

/// One row of the details window, as shown.
struct DetailsItem
{
    QString title;
    QString description; ///< empty when the title says it all
    QString value;
};
