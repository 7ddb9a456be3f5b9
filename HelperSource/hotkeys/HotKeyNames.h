#pragma once

#include "hotkeys/SGKeyCombo.h"

#include <string>

namespace orvane {

// What people read of a combination. Unlike the combination's own texts, these never fail: where the list of key names cannot be had,
// of which the assertion handler has told then, a key goes by its number, as one does that the list does not know. Main thread only.

/// The key's name alone, as `keyCodeString`.
[[nodiscard]] std::string ORVKeyName(const SGKeyCombo &combo);
/// Signs of the modifiers and the key's name, as `description`.
[[nodiscard]] std::string ORVHotKeyName(const SGKeyCombo &combo);
/// Whether the key has a name of its own, such as Return; otherwise it is named by what it types.
[[nodiscard]] bool ORVKeyHasOwnName(const SGKeyCombo &combo);

} // namespace orvane
