#pragma once

#include "web/html.h"
#include "web/viewer.h"

namespace velometer::FilterForm {

/// The periods from the newest to the longest as links, and the filters as a form whose answers
/// stand in the address. @p today is ms since 1970.
void write(Html &html, const Viewer &viewer, const TestFilter &filter, const Facets &facets,
           qint64 today);

/// A choice of one value of a facet: named @p name, with @p any for all of them. What is chosen
/// already is offered even when it is none of @p values.
void writeChoice(Html &html, const QString &name, const Phrase &label, const Phrase &any,
                 const QList<std::pair<QString, QString>> &values, const QString &chosen);

/// The values of a facet with their texts in the viewer's language.
using Values = QList<std::pair<QString, QString>>;
Values types(const Facets &facets, Language language);
Values plain(const QList<Facets::Value> &values);
Values places(const Facets &facets, Language language);
Values operators(const Facets &facets);

/// The types of a filter as its address has them: "lte,5g".
QString typesText(const TestFilter &filter);

} // namespace velometer::FilterForm
