#pragma once

class QUrl;

/// Hands addresses over to the desktop.
namespace velometer::DesktopOpener {

/// Opens @p address in the program that the desktop has for it, a browser or a mail program. What
/// that program and the opener (xdg-open) print goes nowhere. True when the opener was started,
/// which is all that desktops tell: whether anything comes up stays unknown. False when there is
/// none.
bool open(const QUrl &address);

} // namespace velometer::DesktopOpener
