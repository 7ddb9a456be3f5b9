#pragma once

#include "platform/posix/PosixExtendedAttributes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Where the Finder information of an item lives in extended attributes. The main place is "user.com.apple.FinderInfo",
// 32 raw bytes, which is what rsync between Linux and a Mac carries. File servers keep it inside records of their own;
// where an item has such a record already, it is kept in step, and never added. The label's colour also stands among the
// tags that file managers show ("user.xdg.tags", freedesktop.org, Common Extended Attributes).

namespace orvane {

inline constexpr const char *FinderInfoAttribute = "user.com.apple.FinderInfo";
/// The same on a file system with the Mac's own name space (Linux, fs/hfsplus/xattr.c).
inline constexpr const char *MacFinderInfoAttribute = "osx.com.apple.FinderInfo";
/// AppleDouble version 2 header of Netatalk and of Samba's module fruit in its usual setting.
inline constexpr const char *NetatalkAttribute = "user.org.netatalk.Metadata";
/// AfpInfo record of Samba's module fruit when it stores streams.
inline constexpr const char *AfpInfoAttribute = "user.DosStream.AFP_AfpInfo:$DATA";
inline constexpr const char *TagsAttribute = "user.xdg.tags";

/// Finder flags of an item with these attributes; nothing when none of them holds any.
[[nodiscard]] std::optional<std::uint16_t> finderFlagsOf(const PosixExtendedAttributes &attributes);

/// The attributes that have to be written so that an item with the attributes `existing` carries these Finder flags:
/// the Finder information first, then what else changes. An empty value of "user.xdg.tags" means that it is to be
/// removed. Every other byte, and every tag that is no label colour's name, stays.
[[nodiscard]] PosixExtendedAttributes attributesForFinderFlags(const PosixExtendedAttributes &existing, std::uint16_t flags);
/// The same for a label alone: the other flags stay as they are.
[[nodiscard]] PosixExtendedAttributes attributesForFinderLabel(const PosixExtendedAttributes &existing, int label);

/// `tags`, separated by commas, with the colour name of the label ("Red"; none for 0) as the only colour among them.
[[nodiscard]] std::string tagsWithLabel(std::string_view tags, int label);

/// The attributes of an open item that concern the Finder. `error` gets the `errno` of a read that failed for another
/// reason than absence, else 0.
[[nodiscard]] PosixExtendedAttributes readFinderAttributes(int descriptor, int &error);
/// The same by path; a symbolic link at the path itself is not followed.
[[nodiscard]] PosixExtendedAttributes readFinderAttributes(const std::string &path, int &error);

/// Writes the attributes, in order, to an open item, and removes those whose value is empty among the tags. Returns 0 or
/// the `errno` of the Finder information's write; on a file system without "user." names it goes to the Mac's own name.
int writeFinderAttributes(int descriptor, const PosixExtendedAttributes &attributes);
int writeFinderAttributes(const std::string &path, const PosixExtendedAttributes &attributes);

} // namespace orvane
