#pragma once

#include "web/html.h"

#include <QJsonObject>

/// The cards of a test's page that say what the line is like under load. @p answer is what programs
/// are given of the test, see docs/openapi.json.
namespace velometer::LoadCards {

/// In words what suffers, and the round trips beside each load; nothing of a test without them.
void writeDelays(Html &html, const QJsonObject &answer);

/// What the kernel of the service told of its streams; nothing where it told nothing.
void writeKernel(Html &html, const QJsonObject &answer);

} // namespace velometer::LoadCards
