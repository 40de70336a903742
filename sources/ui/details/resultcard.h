#pragma once

#include "figures/finishedtest.h"

#include <QImage>

/// A picture of one test to show to others: which test it was, its figures and its curve, in the
/// colours of the current look. Main thread only.
namespace velometer::ResultCard {

/// 1080 pixels wide.
QImage picture(const FinishedTest &test);

} // namespace velometer::ResultCard
