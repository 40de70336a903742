#pragma once

#include "reports/testquery.h"
#include "web/language.h"

#include <QString>

#include <initializer_list>
#include <utility>

namespace velometer {

/// Who looks at a page, and as what: the owner of measurements, or somebody with a share's key.
struct Viewer
{
    Language language = Language::English;
    qint64 userId = 0; ///< of the owner who looks; 0 for everybody else
    QString share;     ///< key; empty for everybody else
    bool showsPositions = true;

    bool isOwner() const { return userId != 0; }

    using Parameters = std::initializer_list<std::pair<QString, QString>>;

    /// The address of @p page ("UserReport") for this viewer, with @p filter and @p more.
    QString address(const QString &page, const TestFilter &filter = {}, Parameters more = {}) const;

    /// The page that lists tests for this viewer.
    QString listPage() const;

    /// The parameter that opens the interface for programs: "userid=7", "share=KEY".
    QString credential() const;
};

} // namespace velometer
