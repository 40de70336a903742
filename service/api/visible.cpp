#include "api/visible.h"

namespace velometer::Visible {

namespace {

void removeIdentity(ReportTest &report, const TestRow &row)
{
    FinishedTest &test = report.test;
    test.userId.reset();
    test.device = {};
    test.tcp.publicIp.reset();
    test.tcp.deviceIp.reset();
    test.tcp.clientHostname.reset();
    // Of the SIM, which others have not asked about.
    test.network.homeMcc.reset();
    test.network.homeMnc.reset();
    if (!ConnectionClasses::isMobile(row.type)) {
        test.network.name.reset();
    }
    report.log.clear();
    if (!row.verified) {
        test.download = {};
        test.upload = {};
        test.serverMinimumRate.reset();
        test.serverAverageRate.reset();
        test.serverMaximumRate.reset();
    }
}

void removePlaces(ReportTest &report)
{
    report.test.position = {};
    report.test.network.cell.reset();
    report.test.network.lac.reset();
    for (auto &phase : report.phases) {
        phase.latitude.reset();
        phase.longitude.reset();
        phase.cell.reset();
    }
}

} // namespace

TestRow row(TestRow row, const Access &access)
{
    if (access.isShare) {
        row.note.clear();
        // The name of a WLAN is its owner's, and a map of such names tells where it is; a cellular
        // network is its operator's.
        if (!ConnectionClasses::isMobile(row.type)) {
            row.network.clear();
        }
    }
    if (!access.showsPositions) {
        row.latitude.reset();
        row.longitude.reset();
        row.accuracy.reset();
    }
    return row;
}

TestPage page(TestPage page, const Access &access)
{
    for (TestRow &each : page.rows) {
        each = row(std::move(each), access);
    }
    return page;
}

MapData map(MapData map, const Access &access)
{
    return access.showsPositions ? std::move(map) : MapData();
}

ReportTest report(ReportTest report, const TestRow &row, const Access &access)
{
    if (access.isShare) {
        removeIdentity(report, row);
    }
    if (!access.showsPositions) {
        removePlaces(report);
    }
    return report;
}

} // namespace velometer::Visible
