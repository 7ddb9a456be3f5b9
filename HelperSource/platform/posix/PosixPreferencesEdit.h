#pragma once

#include "platform/posix/PosixPreferencesFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace orvane {

/// Keys with their new values, each key once.
using PosixPreferencesChanges = std::vector<std::pair<std::string, PropertyList>>;

/// A piece of the new file: bytes of the old one, or text of its own.
struct PosixPreferencesPiece {
    std::uint64_t oldBegin = 0;
    std::uint64_t oldEnd = 0;
    std::string text; ///< when the range is empty
};

/// How the new file is made from the old one, and what it holds then.
struct PosixPreferencesEdit {
    std::vector<PosixPreferencesPiece> pieces;
    PropertyList result;
};

/// Plans the changes to a file that was read as `document` (or is missing). In XML only the text of the changed values
/// is new, every other byte stays; a binary file is encoded anew from the same values. `oldFile` is read for XML in
/// other encodings than UTF-8. Nothing, and `why` says so, for values that the file's form cannot hold.
[[nodiscard]] std::optional<PosixPreferencesEdit>
planPreferencesEdit(const PosixPreferencesDocument &document, const PosixPreferencesChanges &changes, int oldFile, std::string &why);

} // namespace orvane
