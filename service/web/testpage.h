#pragma once

#include "web/layout.h"

#include <QJsonObject>

namespace velometer {

/// What the page of one test shows: the same object that programs are given of it, so that a share
/// hides in one what it hides in the other.
struct SingleTestPage
{
    Viewer viewer;
    TestRow row;
    QJsonObject test; ///< see docs/openapi.json

    std::string toHtml(const TileSource &tiles) const;
};

} // namespace velometer
