#pragma once

#include "ports/Sentence.h"

#include <QString>

#include <string>

namespace orvane {

/// Why a part without a window could not do something, in the user's language, with the names in it as they are.
[[nodiscard]] QString translatedSentence(const Sentence &sentence);
/// The same for what comes put together in English: from the helper (how the hot key stands) and the readers of files. What is not known
/// stays as it is.
[[nodiscard]] QString translatedSentence(const std::string &english);

} // namespace orvane
