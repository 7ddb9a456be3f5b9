#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvane {

/// A text of the sources, which lives as long as the program and is translated where it is shown. Made by `forTranslation` alone.
class FixedText {
public:
    // NOLINTNEXTLINE(google-explicit-constructor): it is that text
    constexpr operator const char *() const { return _text; }

private:
    friend consteval FixedText forTranslation(const char *text);
    explicit consteval FixedText(const char *text) : _text(text) {}

    const char *_text;
};

/// Marks a text that is translated where it is shown. When the program runs, no text can be marked any more.
[[nodiscard]] consteval FixedText forTranslation(const char *text) {
    return FixedText(text);
}

/// `text` with %1 to %9 replaced by the arguments; nothing in them is replaced again. What has no argument stays.
[[nodiscard]] std::string textWithArguments(std::string_view text, const std::vector<std::string> &arguments);

/// The language in which a sentence is put together.
class SentenceLanguage {
public:
    virtual ~SentenceLanguage() = default;
    /// The translation of a fixed English text, with the same arguments in it.
    [[nodiscard]] virtual std::string text(const char *english) = 0;
    /// What an `errno` means.
    [[nodiscard]] virtual std::string error(int error) = 0;
    /// The translation, as far as it is known, of English that was put together elsewhere.
    [[nodiscard]] virtual std::string composed(const std::string &english) = 0;
};

/// A text for people whose parts are still apart, so that whoever shows it can put it together in the user's language: what goes
/// wrong is found where no language is known. A plain value.
class Sentence {
public:
    /// The empty text.
    Sentence() = default;
    /// %1 to %9 in `format`, which is English, stand for the arguments.
    Sentence(FixedText format, std::vector<Sentence> arguments = {}) // NOLINT(google-explicit-constructor): what is said mostly is one
        : _kind(Kind::Format), _format(format), _arguments(std::move(arguments)) {}
    /// A name, a number or another text that is the same in every language. UTF-8 as far as the name is; not made safe for any output.
    Sentence(std::string name) : _text(std::move(name)) {} // NOLINT(google-explicit-constructor): likewise
    /// Such a text would not be translated, or not live long enough.
    Sentence(const char *text) = delete;
    /// What an `errno` means.
    [[nodiscard]] static Sentence ofError(int error);
    /// English that was put together elsewhere.
    [[nodiscard]] static Sentence ofComposed(std::string english);
    /// A reason, behind what it is about and a colon.
    [[nodiscard]] static Sentence withReason(Sentence about, Sentence reason);

    /// Whether there is nothing to say.
    [[nodiscard]] bool isEmpty() const { return _kind == Kind::Name && _text.empty(); }
    [[nodiscard]] std::string english() const;
    [[nodiscard]] std::string in(SentenceLanguage &language) const;

private:
    enum class Kind { Name, Format, Error, Composed };

    Kind _kind = Kind::Name;
    int _error = 0;
    const char *_format = "";
    std::string _text;
    std::vector<Sentence> _arguments;
};

} // namespace orvane
