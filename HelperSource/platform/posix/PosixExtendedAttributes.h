#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// One extended attribute, name space included ("user.xdg.tags").
struct PosixExtendedAttribute {
    std::string name;
    std::string value;
    bool operator==(const PosixExtendedAttribute &) const = default;
};

using PosixExtendedAttributes = std::vector<PosixExtendedAttribute>;

/// The attribute of that name; null when the list has none. Borrowed from the list.
[[nodiscard]] const PosixExtendedAttribute *findExtendedAttribute(const PosixExtendedAttributes &attributes, std::string_view name);

/// Reads one attribute of an open file; nothing, with `errno`, when it is absent (ENODATA) or cannot be read.
[[nodiscard]] std::optional<std::string> readExtendedAttribute(int descriptor, const char *name);
/// The same by path; a symbolic link at the path itself is not followed.
[[nodiscard]] std::optional<std::string> readExtendedAttribute(const std::string &path, const char *name);

/// The names of an open file's attributes; none where its file system knows no attributes. Nothing, with `errno`, when they cannot be
/// read.
[[nodiscard]] std::optional<std::vector<std::string>> extendedAttributeNames(int descriptor);

/// All attributes of an open file that a copy takes along: everything but "system." (permissions, which follow the mode)
/// and "security." (labels and capabilities, which belong to the place and are nobody's to pass on). What cannot be read
/// is left out.
[[nodiscard]] PosixExtendedAttributes readExtendedAttributes(int descriptor);

} // namespace orvane
