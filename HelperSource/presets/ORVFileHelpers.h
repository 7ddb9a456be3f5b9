#pragma once

#include "ports/FinderInformation.h"
#include "ports/UserFolders.h"

#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

// File-system and Finder helpers that the preset engine shares. Texts are UTF-8; where a rule works character by
// character it works on UTF-16 units, which makes no difference for the ASCII characters that these rules name.

namespace orvane {

/// "No such label": the largest signed integer of the word size.
inline constexpr long ORVNotFound = std::numeric_limits<long>::max();

/// Label number 0 to 7 of a Finder colour name (exact, case-sensitive; "" and an absent name are 0), or `ORVNotFound`.
[[nodiscard]] long ORVFinderLabelForColor(std::optional<std::string_view> colorName);

/// Puts the low three bits of `label` into the Finder flags of the item at `path` (symbolic links not followed) and keeps
/// the other 13 bits. Returns 0, also when there is no item, or the `errno` of the failed read or write.
int ORVSetFinderLabelForPath(long label, std::string_view path, FinderInformation &finderInformation);

/// Support folder: the user's application support folder joined with "Orvane". It is not created here.
/// The engine asks once and keeps the answer, see `ORVPresetManager::applicationSupportPath`.
[[nodiscard]] std::string ORVApplicationSupportPath(UserFolders &folders);

/// Set of characters, asked one UTF-16 unit at a time.
using ORVCharacterSet = std::function<bool(char16_t)>;

/// The text without the UTF-16 units that are members of the set. A half of a surrogate pair that stays alone is written
/// as its three-byte form.
[[nodiscard]] std::string stringByRemovingCharactersInSet(std::string_view text, const ORVCharacterSet &set);

/// The text without "/", "~" and ":". Unlike `cleanFilesystemEntities` it removes, and removes "~" too; kept apart deliberately.
[[nodiscard]] std::string stringByDeletingFileSystemEntities(std::string_view text);

/// Colour in the calibrated RGB space, each component 0 to 1.
struct ORVColor {
    float red = 0;
    float green = 0;
    float blue = 0;
    float alpha = 1;
    bool operator==(const ORVColor &) const = default;
};

/// Opaque colour of a hexadecimal number at the start of the text (white space and one "0x" skipped, bits above 24
/// dropped); black for an absent text or one that does not start so.
[[nodiscard]] ORVColor colorFromHexRGB(std::optional<std::string_view> text);

/// State of a check box.
enum class ORVButtonState : int { Mixed = -1, Off = 0, On = 1 };
[[nodiscard]] constexpr ORVButtonState ORVButtonStateForBool(bool value) noexcept {
    return value ? ORVButtonState::On : ORVButtonState::Off;
}
[[nodiscard]] constexpr bool ORVBoolForButtonState(ORVButtonState state) noexcept {
    return state == ORVButtonState::On;
}

// Paths. They follow the platform's path operations: runs of "/" count as one and a "/" at the end is dropped.

/// `path` with one more component (which may itself hold "/"): ("/a/", "b/c/") gives "/a/b/c", ("", "b") gives "b".
[[nodiscard]] std::string stringByAppendingPathComponent(std::string_view path, std::string_view component);
/// ("/a/b") gives "b", ("/a/b/") gives "b", ("/") gives "/", ("") gives "".
[[nodiscard]] std::string lastPathComponent(std::string_view path);
/// ("/a/b") gives "/a", ("/a") gives "/", ("/") gives "/", ("a") gives "".
[[nodiscard]] std::string stringByDeletingLastPathComponent(std::string_view path);
/// A leading "~" or "~/" replaced by the home folder.
[[nodiscard]] std::string stringByExpandingTildeInPath(std::string_view path, UserFolders &folders);

/// ASCII letters in lower case. Enough for the patterns "auto*" and "*finder*": no other character's lower case
/// holds a lone ASCII letter of theirs ("İ" gives "i" with a combining dot, which is not "i" in a literal match).
[[nodiscard]] std::string ORVASCIILowercase(std::string_view text);

} // namespace orvane
