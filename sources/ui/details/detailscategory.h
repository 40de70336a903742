#pragma once

#include "ui/details/detailsitem.h"

#include <QList>
#include <QString>

namespace velometer {

/// A titled group of rows of the details window. A plain value.
class DetailsCategory
{
public:
    explicit DetailsCategory(const QString &title);

    void addItem(const QString &title, const QString &description, const QString &value);

    const QString &getTitle() const { return title; }
    const QList<DetailsItem> &getItems() const { return items; }

private:
    QString title;
    QList<DetailsItem> items;
};

} // namespace velometer
