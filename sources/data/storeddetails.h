#pragma once

#include "figures/finishedtest.h"

#include <memory>

namespace velometer {

class TestDetails;

/// A finished test as the details that the store keeps beside its row, by the table of fields.
namespace StoredDetails {

/// No key for what is not known.
std::unique_ptr<TestDetails> of(const FinishedTest &test);

/// Fills @p test from stored details. Those from before every figure was stored hold 0 for much
/// that was unknown; it stays unknown. See haveEverything().
void read(const TestDetails &details, FinishedTest &test);

/// False for details from before every figure was stored.
bool haveEverything(const TestDetails &details);

} // namespace StoredDetails

} // namespace velometer
