#pragma once

#include <QString>

namespace velometer {

struct FinishedTest;

/// Where the user finds his measurements on the service. Empty before the service has given him an
/// id, with the first test.
namespace UserPage {

/// "52077". The settings are a file that anyone may edit: what cannot be an id is none.
QString userId();
/// @p language is "de" or "en".
QString address(const QString &language);
/// Of one test; empty when nobody knows whose it is.
QString addressOf(const FinishedTest &test, const QString &language);

} // namespace UserPage

} // namespace velometer
