#pragma once

#include "reports/reporttest.h"
#include "reports/testquery.h"

/// What is left of a test for somebody with this access: everything for its owner. A share tells
/// neither who measured, on which device, from which address and in whose WLAN, nor notes, nor the
/// log; without positions, nothing that says where. Pages, the interface and exports all pass what
/// they show through here.
namespace velometer::Visible {

TestRow row(TestRow row, const Access &access);
TestPage page(TestPage page, const Access &access);
MapData map(MapData map, const Access &access);

/// @p row is that of the same test. What no stream backs is no figure of a share.
ReportTest report(ReportTest report, const TestRow &row, const Access &access);

} // namespace velometer::Visible
