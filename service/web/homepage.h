#pragma once

#include "net/neighbours.h"
#include "web/layout.h"

namespace velometer {

/// What a visitor without an address of his own sees.
struct HomePage
{
    Language language = Language::English;
    bool stores = false; ///< reports are taken
    qint64 running = 0;  ///< measurement streams
    std::vector<Neighbours::Server> servers;
    std::vector<Neighbours::State> states; ///< as long
    qint64 places = 0;                     ///< for them

    std::string toHtml() const;
};

} // namespace velometer
