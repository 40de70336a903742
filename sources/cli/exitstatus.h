#pragma once

namespace velometer {

/// What the program says to the shell that called it; the numbers are fixed.
enum class ExitStatus {
    Done = 0,          ///< a report that could not be delivered waits in the queue
    Broken = 1,        ///< the service refused or broke the test
    Usage = 2,         ///< wrong usage
    Store = 3,         ///< something that must be kept cannot be read or written
    Refused = 4,       ///< roaming that nobody allowed, or the data budget ended a test
    Unreachable = 5,   ///< no network, or the test server cannot be reached
    HungUp = 129,      ///< SIGHUP
    Interrupted = 130, ///< SIGINT
    Terminated = 143,  ///< SIGTERM
};

} // namespace velometer
