#pragma once

#include "figures/finishedtest.h"

#include <QString>

/// The delays of a test, and what its modem measured, as the one line of the diagnostic log in
/// which a report carries them: the report's document has no place of its own for them. All times
/// are ns.
///
///     LoadFigures: {"v":1,"idle_ns":[31400000,-1],"download":{"cc":"bbr","rtt_ns":[41000000,-1],
///     "t_ns":[0,200000000]}}
///
/// A lost round trip is -1. "upload", "extra_download" and "extra_upload" are like "download";
/// "upload_confirmed" is what the other end has confirmed of the upload, bytes per 100 ms. "radio"
/// is {"rsrp_dbm":-97.5,"rsrq_db":-11,"snr_db":8.5,"band":"B20"}. Groups of which nothing is known
/// are left out, and so is what is unknown in "radio" and an unknown "cc".
namespace velometer::LoadFigures {

/// More samples of one list than any test takes; what is beyond is not written.
inline constexpr qsizetype mostSamples = 200;

/// Without the line's end; empty when nothing is known.
QString line(const FinishedTest &test);

/// Puts what the last such line of @p log tells into @p test. False, and @p test is as it was, when
/// there is none, or when anything in it is not as line() writes it.
bool read(const QString &log, FinishedTest &test);

/// 1 to 15 of the letters a to z, digits and "_": what kernels call their congestion controls.
bool isCongestionControl(const QString &name);

} // namespace velometer::LoadFigures
