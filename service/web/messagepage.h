#pragma once

#include "web/layout.h"
#include "web/texts.h"

namespace velometer::MessagePage {

/// A page that says one thing: why there is nothing to see.
std::string make(Language language, const Phrase &text);

} // namespace velometer::MessagePage
