#pragma once

#include "app/connectionkind.h"

#include <QColor>
#include <QIcon>

/// How lists and charts mark a kind of connection: its sign on its colour. Main thread only.
namespace velometer::ConnectionSign {

/// The same in every look.
QColor colour(ConnectionKind kind);
/// For lines and small marks on @p ground, dark enough to be seen there.
QColor lineColour(ConnectionKind kind, const QColor &ground);
/// A rounded square of @p pixels with the sign.
QIcon icon(ConnectionKind kind, int pixels);

} // namespace velometer::ConnectionSign
