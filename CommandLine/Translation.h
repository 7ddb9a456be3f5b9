#pragma once

#include "ports/Sentence.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The texts of the command line in the user's language: English in the sources, other languages in catalogues of gettext, which are
// made from resources/translations/commandline. What scripts compare with stays English: the engine's alerts, the log, JSON.

namespace orvane {

/// Has texts looked up in the user's language from now on; until then, and in programs that never call it, they stay English. Nothing
/// is read or loaded before the first text, and nothing at all where the environment asks for English. Main thread, before others.
void speakUsersLanguage();

/// The text in the user's language, UTF-8, or as it is where there is none. Lives as long as the program, or as `text`. Any thread;
/// keeps `errno`.
[[nodiscard]] const char *localized(const char *text);
[[nodiscard]] inline const char *localized(FixedText text) {
    return localized(static_cast<const char *>(text));
}
/// The same with %1 to %9 replaced by the arguments, which are texts of any kind: nothing in them is looked up or replaced.
[[nodiscard]] std::string localized(const char *text, const std::vector<std::string> &arguments);
/// The form of the text for a number: `one` and `many` are the English ones. %1 becomes the number, %2 and so on the arguments.
[[nodiscard]] std::string localizedCount(const char *one, const char *many, std::size_t count,
                                         const std::vector<std::string> &arguments = {});
/// A reason, behind what it is about and a colon.
[[nodiscard]] std::string withReason(std::string_view about, std::string_view reason);
/// What an `errno` means, for people.
[[nodiscard]] std::string textOfError(int error);

/// A sentence that the engine or another program puts together in English, in the user's language as far as it is known: its parts are
/// found again. What is not known stays English.
[[nodiscard]] std::string localizedSentence(std::string_view english);
/// A text that was put together already cannot be looked up.
std::string localized(const std::string &text) = delete;
/// A sentence in the user's language.
[[nodiscard]] std::string localized(const Sentence &sentence);

} // namespace orvane
