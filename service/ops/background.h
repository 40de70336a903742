#pragma once

namespace velometer {

/// Puts the calling thread behind those that serve streams: what it does is long, and a stream
/// that waits for a core is a wrong figure.
void stepBack();

} // namespace velometer
