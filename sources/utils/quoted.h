#pragma once

#include <QString>

namespace velometer {

/// Text of the user as it may stand in a sentence: in quotation marks, on one line, at most 100
/// characters of it.
inline QString quoted(const QString &text)
{
    return u'"' + text.left(100).simplified() + u'"';
}

} // namespace velometer
