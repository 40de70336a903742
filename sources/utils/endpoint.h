#pragma once

#include <QString>

#include <optional>

namespace velometer {

/// A host and a TCP port as people write them: "name", "name:8080", "192.0.2.1:8080", "[::1]:8080",
/// "::1". Values are checked: a host of at most 253 letters, digits, dots, hyphens and underscores
/// or an IPv6 literal (kept without its brackets), a port from 1 to 65535.
struct Endpoint
{
    QString host;
    int port = 80;

    /// What @p text says, with @p defaultPort where it names none; nothing when it is not an
    /// endpoint. International names come back in their ASCII form.
    static std::optional<Endpoint> parse(const QString &text, int defaultPort);

    /// An address in figures and a port from 0 on, both of them, as a server listens to them:
    /// "192.0.2.1:8080", "[::1]:0"; nothing when @p text is anything else.
    static std::optional<Endpoint> parseAddress(const QString &text);

    /// @p host as it stands in an address or a Host line: an IPv6 literal in brackets.
    static QString bracketed(const QString &host);

    /// What follows the first dot of @p host; without one the whole of it.
    static QString domain(const QString &host);

    bool operator==(const Endpoint &other) const = default;
};

} // namespace velometer
