#pragma once

#include <QString>

#include <chrono>
#include <optional>

namespace velometer {

class TestContext;

/// The texts of the requests that go to the service, byte for byte as it expects them, and what it
/// answers a user.
namespace ControlRequests {

/// Asks the web host for a user id; the Host line carries no port.
QString userId(const QString &uuid);
QString initialise(const TestContext &context);
QString uploadResult(const TestContext &context);

/// Posts a report to the test server with this Host line. The body's UTF-8 bytes go out as Latin-1
/// characters, which the requester encodes once more: the service knows this encoding, and the
/// length that counts the bytes before it.
QString report(const QString &hostHeader, const QString &document);

/// After how long a service that has no room (503), or for this client no more for now (429), wants
/// it to come back; nothing when it does not say, or when that is longer than a user waits.
std::optional<std::chrono::seconds> comeBack(const QString &header);

/// The sentence of a service that has no room (503 or 429, plain text), fit for a screen; empty
/// when the answer is none.
QString refusal(const QString &header, const QString &body);

} // namespace ControlRequests

} // namespace velometer
