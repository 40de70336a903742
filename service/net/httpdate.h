#pragma once

#include <string>

namespace velometer {

/// Now, as the header line "Date: Mon, 02 Jan 2006 15:04:05 GMT", CR LF included.
std::string httpDate();

} // namespace velometer
