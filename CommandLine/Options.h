#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The options of a command: `--name`, `--name VALUE`, `--name=VALUE`, in any order with the operands, until `--`.

namespace orvane {

/// One option that a command knows.
struct OptionRule {
    std::string_view name; ///< without the dashes
    bool takesValue = false;
    bool mustBeWhole = false; ///< never shortened: what it does cannot be taken back
};

/// One option as given.
struct GivenOption {
    std::string_view name; ///< of its rule, whole even where it was given abbreviated
    std::string value;     ///< empty for an option without value
};

/// A command's words, sorted.
struct ParsedOptions {
    std::vector<GivenOption> options;  ///< in the order given
    std::vector<std::string> operands; ///< in the order given
    std::string error;                 ///< what is wrong with the words; empty when nothing is

    [[nodiscard]] bool has(std::string_view name) const;
    /// Value of the last option of that name, or nothing.
    [[nodiscard]] std::optional<std::string> lastValue(std::string_view name) const;
};

/// Sorts a command's words by its rules. An option's name may be shortened as long as it stays unambiguous; a lone "-"
/// is an operand; after "--" everything is. A value for `--help` or `--version` is an error; without one they are for `generalOptionIn`.
[[nodiscard]] ParsedOptions parseOptions(std::span<const std::string> words, std::span<const OptionRule> rules);

/// Whether "--json", perhaps shortened, stands anywhere before "--", even where it is taken for something else: who writes that has a
/// program read what comes out, and also what is wrong with the words.
[[nodiscard]] bool asksForJSON(std::span<const std::string> words);

/// What every command understands besides its own options.
enum class GeneralOption { None, Help, Version };

/// The first `--help`, `-h` or `--version` among the words that is neither an option's value nor behind "--". What is wrong
/// with other words does not matter.
[[nodiscard]] GeneralOption generalOptionIn(std::span<const std::string> words, std::span<const OptionRule> rules);

} // namespace orvane
