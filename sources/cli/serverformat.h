#pragma once

#include <QByteArray>
#include <QJsonObject>

namespace velometer {

class TestServer;

/// The table of test servers for programs. Never translated.
namespace ServerFormat {

QJsonObject json(const TestServer &server, bool selected);

/// Lines of a table for spreadsheets.
QByteArray csvHeader();
QByteArray csv(const TestServer &server, bool selected);

} // namespace ServerFormat

} // namespace velometer
