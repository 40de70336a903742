#pragma once

#include "reports/reportstore.h"

#include <QByteArray>

#include <string_view>

namespace velometer {

/// The page that shows a user his measurements. Static HTML without scripts; every text that came
/// from a client is escaped. Pure functions, callable from every thread.
class UserReportPage
{
public:
    enum class Language { English, German };

    /// What @p parameter asks for ("de" or "en"), else what the browser prefers.
    static Language choose(std::string_view parameter, std::string_view acceptLanguage);

    /// The header lines that the page needs: nothing is loaded, stored or told to other sites,
    /// because the page's address is the key to the measurements.
    static std::string headers();

    /// @p userId is who they belong to, for the link to older ones. Figures that no network gives,
    /// rates that no stream of this service backs, and times beyond this century are left out.
    static QByteArray measurements(const ReportStore::UserReports &reports, qint64 userId,
                                   Language language);
    static QByteArray unknownUser(Language language);
};

} // namespace velometer
