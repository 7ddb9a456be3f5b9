#pragma once

#include "Command.h"

#include "ports/Sentence.h"
#include "presets/ORVPresetChecker.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// What the commands that read and write whole presets share.

namespace orvane {

/// Appends the preset to those of the preferences and tells the other programs. Holds the lock from reading the presets
/// to storing them; `aboutToStore` (may be empty) runs in between, just before the preferences are written. Returns the new
/// preset's index, after a warning when another one has its label; nothing, after a message on standard error, when the preferences
/// cannot be read, locked or written, or when `aboutToStore` says false, which tells why itself. They are then as they were.
[[nodiscard]] std::optional<std::size_t> appendPreset(CommandContext &context, const PropertyList &preset,
                                                      const std::function<bool()> &aboutToStore);

/// The resources in the support folder.
[[nodiscard]] std::unique_ptr<ORVPresetResources> storedResources(CommandContext &context);

/// One line for a problem, "PLACE: severity: text", safe for a terminal.
[[nodiscard]] std::string lineOfProblem(const ORVPresetProblem &problem, const PropertyListValue &preset);

/// Refuses a preset that a creation would never come to an end with: writes why to standard error and returns true. With
/// `Size`, names do not matter, only whether there are more items than anybody can walk through.
enum class Refusal { Names, Size };
[[nodiscard]] bool refusesNeverEnding(const PropertyListValue &preset, Refusal reason = Refusal::Names);

/// Reads the property list of a file, "-" for standard input. Nothing, with the reason in `why`, when it cannot be read.
[[nodiscard]] std::optional<PropertyList> readPropertyListArgument(const std::string &path, Sentence &why);

/// One warning, "orvane: warning: TEXT", made safe for a terminal, on standard error.
void warn(std::string_view text);

} // namespace orvane
