#include "reports/sqlconnection.h"

#include "ops/log.h"

namespace velometer {

namespace {

/// Longer than this keeps reports, or a reader, waiting.
constexpr std::chrono::milliseconds slow{500};

/// Of a statement, in a line of the log.
constexpr qsizetype shownLetters = 300;

} // namespace

SqlConnection::Timed::~Timed()
{
    const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - begun);
    if (took >= slow) {
        Log::write(
            Log::Level::Warning, "slow_statement", {},
            {{"ms", took.count()}, {"statement", statement.left(shownLetters).toStdString()}});
    }
}

std::optional<qint64> SqlConnection::number(const QString &statement, const QVariantList &values)
{
    auto answer = select(statement, values);
    return answer && answer->next() && !answer->value(0).isNull()
               ? std::optional(answer->value(0).toLongLong())
               : std::nullopt;
}

} // namespace velometer
