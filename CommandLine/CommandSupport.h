#pragma once

#include "Command.h"
#include "StandardStreams.h"
#include "Translation.h"

#include <optional>
#include <string>
#include <string_view>

// What the commands share besides `Command.h`: standard output, and the choice of a preset by word.

namespace orvane {

/// Writes text to standard output; a failure is reported. Returns `Success` or `NotMade`.
ExitStatus writeStandardOutput(std::string_view text);
/// The same, but a failure is left to be reported later: false then, with its `errno` in `error`.
bool writeStandardOutput(std::string_view text, int &error);
/// Reports a failure of standard output. Returns `NotMade`.
ExitStatus reportStandardOutput(int error);

/// What a word that is meant to name a preset stands for.
struct PresetChoice {
    std::optional<std::size_t> index; ///< absent when the word is unknown or ambiguous
    std::string problem;              ///< why it is absent, with the candidates; one or more lines without the last line feed
};

/// Finds the preset that an index or an exact label names, as `presetNamed`, without saying anything. Where no label is the word, the
/// folder name's template of a preset without label may be.
[[nodiscard]] PresetChoice choosePreset(std::string_view word, const PropertyList &presets);

/// Label of a preset, or nothing when it has none.
[[nodiscard]] std::optional<std::string> labelOfPreset(const PropertyListValue &preset);
/// Label of a preset for people; without one, the folder name's template, as in menus; without both, a stand-in.
[[nodiscard]] std::string shownLabelOfPreset(const PropertyListValue &preset);

/// As `readPresets`, but `problem` gets the text instead of standard error. Synchronises the store, so that what
/// `copyAppValue` gives afterwards comes from the same reading.
[[nodiscard]] std::optional<PropertyList> synchronizedPresets(CommandContext &context, std::string &problem);
/// Where the functions above found no presets because what the preferences hold in their place is no array: warns of it on standard
/// error and returns true.
bool warnOfPresetsThatAreNoArray(CommandContext &context);
/// Title of the failure that goes with such a problem, to be translated.
inline constexpr const char *UnreadablePreferencesTitle = forTranslation("Preferences cannot be read");

/// A preset of the user's.
struct NamedPreset {
    std::size_t index;
    PropertyList preset; ///< what stands there, which may be no dictionary
};
/// Reads the presets and finds the one that a word names, as `presetNamed` does. Nothing, after a message on standard error, with the
/// status for it in `status`.
[[nodiscard]] std::optional<NamedPreset> readPresetNamed(CommandContext &context, std::string_view word, ExitStatus &status);

/// Path of the file that holds the preferences.
[[nodiscard]] std::string pathOfPreferences(UserFolders &folders);

} // namespace orvane
