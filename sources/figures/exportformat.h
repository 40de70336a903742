#pragma once

#include "figures/finishedtest.h"

#include <QByteArray>

/// Documents of many tests, in three pieces so that no collection needs to fit into memory: begin,
/// one piece a test, end.
namespace velometer::ExportFormat {

enum class Kind {
    Csv,
    Json, ///< one object a line
    GeoJson,
    Gpx
};

QByteArray begin(Kind kind);
QByteArray piece(Kind kind, const FinishedTest &test, bool first);
QByteArray end(Kind kind);

QByteArray geoJsonBegin();
/// A feature with the test's JSON object as its properties; without a position its geometry is
/// null.
QByteArray geoJsonFeature(const FinishedTest &test, bool first);
QByteArray geoJsonEnd();

QByteArray gpxBegin();
/// A waypoint; empty for a test without a position.
QByteArray gpxWaypoint(const FinishedTest &test);
QByteArray gpxEnd();

} // namespace velometer::ExportFormat
