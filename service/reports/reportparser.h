#pragma once

#include "reports/report.h"

#include <QByteArray>
#include <QStringList>

#include <atomic>
#include <variant>

namespace velometer {

/// Reads and checks what a client posted as its report, and reads one that is stored. Pure
/// functions, callable from every thread.
class ReportParser
{
public:
    enum class Problem {
        Damaged,   ///< not well-formed, or an element missing, doubled or not what it must be
        WrongHash, ///< not made by a client that knows one of the salts
        Stopped,   ///< nobody waits for the outcome any more
    };

    /// The tag that ends every report.
    static constexpr std::string_view closingTag = "</PerformanceIPhone>";

    /// @p received may be encoded twice. The document comes back decoded and otherwise as it was;
    /// serverTime and publicIp are left to the caller. Ends soon after another thread set @p stop.
    static std::variant<Report, Problem> parse(const QByteArray &received, const QStringList &salts,
                                               const std::atomic<bool> &stop);

    /// The figures of a document that was checked when it came; nothing when it is damaged. The
    /// document itself is not in what comes back.
    static std::optional<Report> read(const QString &document);
};

} // namespace velometer
