#include "ui/details/detailscategory.h"

namespace velometer {

DetailsCategory::DetailsCategory(const QString &categoryTitle)
    : title(categoryTitle)
{}

void DetailsCategory::addItem(const QString &itemTitle, const QString &description,
                              const QString &value)
{
    items.append({itemTitle, description, value});
}

} // namespace velometer
