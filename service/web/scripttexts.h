#pragma once

#include "web/language.h"

#include <string>

namespace velometer::ScriptTexts {

/// The texts that scripts need, as a JSON object by their names there.
const std::string &json(Language language);

} // namespace velometer::ScriptTexts
