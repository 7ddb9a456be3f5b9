#pragma once

#include <QString>

#include <string>

namespace orvane {

/// What parts without a window have said in English (why a file cannot be added, how the hot key stands), in the user's language, with
/// the names in it as they are. A sentence that is not known stays as it is: the reasons of the readers of files, which name places in
/// them, and what the system says, which is in the user's language already.
[[nodiscard]] QString translatedSentence(const std::string &english);

} // namespace orvane
