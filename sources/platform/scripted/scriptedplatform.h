#pragma once

#include "platform/platform.h"
#include "platform/scripted/scriptstate.h"

namespace velometer {

/// A device that does what a file says, for tests, demonstrations and bug reports. Its time starts
/// when it is created. The program keeps it longer than anything made from it; main thread only.
///
/// The file is UTF-8 text with one JSON object a line. Empty lines and lines that start with # are
/// skipped. At most 16 MiB, 1 MiB a line, 100000 lines. Anything wrong, an unknown key included,
/// makes the whole file unusable: "FILE, line N: what". A line holds any of these keys; what it
/// does not name stays as it was:
///
///     "at_ms"               when, in ms from the start, never less than in the lines before; 0
///     when
///                           missing. At most 604800000 (a week). Lines at 0 hold from the
///                           beginning.
///     "position"            {"latitude", "longitude" (degrees), "altitude" (m; without it the fix
///     is
///                           two-dimensional), "accuracy_h", "accuracy_v" (m), "speed" (m/s),
///                           "direction" (degrees), "timestamp" (ISO 8601; without it: now)}, or
///                           null: the receiver found no fix in time. Signalled only to sources
///                           that are started; the newest fix is the last known position in any
///                           case.
///     "satellites_in_use"   [numbers]
///     "satellites_in_view"  [numbers]
///     "mode"                "Unknown", "GsmMode", "CdmaMode", "WcdmaMode", "WlanMode",
///     "EthernetMode",
///                           "BluetoothMode", "WimaxMode", "LteMode" or "NrMode". A new mode starts
///                           with unknown status, signal and name, unless the line names them.
///     "status"              of the current mode: "UndefinedStatus", "NoNetworkAvailable",
///                           "EmergencyOnly", "Searching", "Busy", "Connected", "HomeNetwork",
///                           "Denied" or "Roaming". All other modes have no network; a WLAN is
///                           connected with "WlanMode" and "Connected".
///     "signal"              of the current mode, percent, or null: unknown
///     "name"                of the current mode's network
///     "mcc", "mnc", "home_mcc", "home_mnc"   texts
///     "cell", "lac"         whole numbers from 0, or null: unknown
///     "metered"             whether the connection costs by its use: "yes", "no", "yes-guessed",
///                           "no-guessed" or "unknown"
///     "session"             "opened": a session opens (so it does without any such line);
///                           "error:NUMBER" (0 to 4): opening fails with that error, an open
///                           session ends with it; "lost": an open session is aborted, and opening
///                           fails so too
///     "device"              {"imei", "imsi", "manufacturer", "product", "model"}, texts; at 0 only
///
/// A script without any "position" is a device without positioning, likewise for satellites.
/// Example:
///
///     {"device": {"imei": "356938035643809", "model": "Demo"}, "mcc": "228", "mnc": "01"}
///     {"mode": "LteMode", "status": "HomeNetwork", "signal": 71, "name": "Demo", "cell": 2814211}
///     {"at_ms": 800, "position": {"latitude": 47.22, "longitude": 8.82, "accuracy_h": 12}}
///     {"at_ms": 9000, "mode": "WcdmaMode", "status": "HomeNetwork", "signal": 40, "cell": 1234567}
class ScriptedPlatform : public Platform
{
public:
    explicit ScriptedPlatform(PlatformScript script);

    std::unique_ptr<PositionSource> createPositionSource() override;
    std::unique_ptr<NetworkInfoSource> createNetworkInfoSource() override;
    std::unique_ptr<DeviceInfoSource> createDeviceInfoSource() override;
    std::unique_ptr<NetworkSession> createNetworkSession() override;
    PlatformFacts facts() const override;

    /// Plays the script at once up to @p now, counted from the start, instead of waiting for it.
    void advanceTo(std::chrono::milliseconds now);

private:
    ScriptState state;
};

} // namespace velometer
