#include "Translation.h"

#include <array>

// The helper and the readers of property lists put their reasons together in English, where no translation can be looked up. Here they
// are taken apart again. A sentence comes before those that fit it as well.

namespace orvane {

namespace {

/// Reasons and names inside of sentences that hold another one; deeper ones are names.
constexpr int Deepest = 3;

constexpr std::array Sentences{
    // Property lists.
    forTranslation("reading failed: %1"),
    forTranslation("line %1: %2"),
    forTranslation("byte %1: %2"),
    forTranslation("the file is empty"),
    forTranslation("this is no property list"),
    forTranslation("the property list is empty"),
    forTranslation("the file ends before any value"),
    forTranslation("the file ends inside a value"),
    forTranslation("the file ends inside %1"),
    forTranslation("something follows the end of the property list"),
    forTranslation("a second value beside the root"),
    forTranslation("a value without a key"),
    forTranslation("the key %1 has no value"),
    forTranslation("unknown element %1"),
    forTranslation("a tag is not well-formed"),
    forTranslation("%1 is wanted here"),
    forTranslation("text outside any value"),
    forTranslation("a text is no UTF-8"),
    forTranslation("XML cannot hold a text with a NUL"),
    // How the hot key stands.
    forTranslation("The hot key works by %1 (%2)."),
    forTranslation("The hot key works by %1."),
    forTranslation("The hot key is asked of %1, which has yet to answer."),
    forTranslation("The hot key does not work: by %1, another program has that combination."),
    forTranslation("The hot key does not work: %1 knows no such key."),
    forTranslation("%1 gives no hot key (%2)."),
    forTranslation("%1 gives no hot key."),
    forTranslation("the desktop portal"),
    forTranslation("The hot key %1 works."),
    forTranslation("The hot key %1 does not work: another program has it. "
                   "Choose another one, or bind a key to the command 'orvane menu'."),
    forTranslation("The hot key %1 does not work: this keyboard has no such key or modifier. "
                   "Choose another one, or bind a key to the command 'orvane menu'."),
    forTranslation("The hot key %1 does not work (status %2). Choose another one, or bind a key to the command 'orvane menu'."),
};

/// One part of a sentence: text that stands there and what it is followed by.
struct Found {
    std::vector<std::string> arguments; ///< by their numbers
    std::vector<bool> areNames;         ///< in quotation marks: never translated
};

/// Whether the text is the sentence with anything in the places of %1 and %2, which stand in this order; what stands there goes
/// into `found`.
bool fits(std::string_view text, std::string_view sentence, Found &found) {
    found = {};
    for (std::size_t place = sentence.find('%'); place != std::string_view::npos; place = sentence.find('%')) {
        const std::string_view before = sentence.substr(0, place);
        if (!text.starts_with(before)) {
            return false;
        }
        text.remove_prefix(before.size());
        sentence.remove_prefix(place + 2);
        const std::string_view behind = sentence.substr(0, sentence.find('%'));
        const std::size_t end = behind.empty() ? text.size() : text.find(behind);
        if (end == std::string_view::npos || end == 0) {
            return false;
        }
        found.arguments.emplace_back(text.substr(0, end));
        found.areNames.push_back(before.ends_with('\''));
        text.remove_prefix(end);
    }
    return text == sentence;
}

// NOLINTNEXTLINE(misc-no-recursion): three deep at most
std::string localizedParts(const std::string &english, int depth) {
    Found found;
    for (const char *const sentence : Sentences) {
        if (depth == Deepest || !fits(english, sentence, found)) {
            continue;
        }
        for (std::size_t i = 0; i < found.arguments.size(); ++i) {
            if (!found.areNames[i]) {
                found.arguments[i] = localizedParts(found.arguments[i], depth + 1);
            }
        }
        return localized(sentence, found.arguments);
    }
    return localized(english.c_str()); // what an `errno` means, for instance
}

/// The user's language.
class UsersLanguage final : public SentenceLanguage {
public:
    [[nodiscard]] std::string text(const char *english) override { return localized(english); }
    [[nodiscard]] std::string error(int error) override { return textOfError(error); }
    [[nodiscard]] std::string composed(const std::string &english) override { return localizedSentence(english); }
};

} // namespace

std::string localized(const Sentence &sentence) {
    UsersLanguage language;
    return sentence.in(language);
}

std::string localizedSentence(std::string_view english) {
    return localizedParts(std::string(english), 0);
}

} // namespace orvane
