#pragma once

#include "data/xmldata.h"

#include <memory>

namespace velometer {

struct FinishedTest;

/// The report document of a test.
namespace TestReport {

/// One line of XML, written by hand because its exact bytes are fixed. Adds its own lines to the
/// diagnostic log first, which is part of it.
std::unique_ptr<XMLData> document(const FinishedTest &test);

} // namespace TestReport

} // namespace velometer
