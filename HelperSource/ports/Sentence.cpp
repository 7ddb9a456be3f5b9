#include "ports/Sentence.h"

#include <cstring>
#include <utility>

namespace orvane {

namespace {

class English final : public SentenceLanguage {
public:
    [[nodiscard]] std::string text(const char *english) override { return english; }
    [[nodiscard]] std::string error(int error) override { return std::strerror(error); }
    [[nodiscard]] std::string composed(const std::string &english) override { return english; }
};

} // namespace

std::string textWithArguments(std::string_view text, const std::vector<std::string> &arguments) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t number = text[i] == '%' && i + 1 < text.size() ? static_cast<std::size_t>(text[i + 1] - '1') : arguments.size();
        if (number < arguments.size()) {
            result += arguments[number];
            ++i;
        } else {
            result += text[i];
        }
    }
    return result;
}

Sentence Sentence::ofError(int error) {
    Sentence sentence;
    sentence._kind = Kind::Error;
    sentence._error = error;
    return sentence;
}

Sentence Sentence::ofComposed(std::string english) {
    Sentence sentence;
    sentence._kind = Kind::Composed;
    sentence._text = std::move(english);
    return sentence;
}

Sentence Sentence::withReason(Sentence about, Sentence reason) {
    return {forTranslation("%1: %2"), {std::move(about), std::move(reason)}};
}

std::string Sentence::english() const {
    English english;
    return in(english);
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the sentence was written
std::string Sentence::in(SentenceLanguage &language) const {
    switch (_kind) {
    case Kind::Format: {
        std::vector<std::string> arguments;
        arguments.reserve(_arguments.size());
        for (const Sentence &argument : _arguments) {
            arguments.push_back(argument.in(language));
        }
        return textWithArguments(language.text(_format), arguments);
    }
    case Kind::Error:
        return language.error(_error);
    case Kind::Composed:
        return language.composed(_text);
    case Kind::Name:
        break;
    }
    return _text;
}

} // namespace orvane
