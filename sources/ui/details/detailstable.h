#pragma once

#include <QList>

namespace velometer {

class DetailsCategory;
class TestDetails;

/// Which of a test's details are shown, under which titles and in which order.
namespace DetailsTable {

/// With the values of @p details, in the user's language. The caller owns the categories. Of a long
/// value there are the first 500 characters.
QList<DetailsCategory *> categories(const TestDetails &details);

} // namespace DetailsTable

} // namespace velometer
