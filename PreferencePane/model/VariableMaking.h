#pragma once

#include "PresetDocument.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace orvane {

/// Why a text does not become a variable, or that it did.
enum class VariableMaking : std::uint8_t {
    Done,
    BadName, ///< see `ORVIsVariableName`
    BadText, ///< empty, or with a brace or backslash, which templates read in their own way
    NotFound ///< no name has the text outside of variables
};

struct VariableMade {
    VariableMaking outcome = VariableMaking::Done;
    std::size_t names = 0; ///< that changed
};

/// Puts the variable in place of the text wherever a name of the preset has it, in one step: what makes a preset of a folder that
/// was imported as it is. Inside variables, and behind a backslash, where a variable would not be found, the text stays. The first
/// variable of a preset also makes its templates ones that escape braces; what stands for itself goes on doing so.
VariableMade makeVariable(PresetDocument &document, ItemID preset, const std::string &text, const std::string &name);

} // namespace orvane
