#include "platform/posix/PosixFinderAttributes.h"

#include "ports/FinderLabel.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>

#include <sys/xattr.h>

namespace orvane {

namespace {

constexpr std::size_t FinderInfoSize = 32; ///< FInfo and FXInfo, or DInfo and DXInfo (Apple, Finder.h)
constexpr std::size_t FlagsOffset = 8;     ///< of the flags in both

/// AppleDouble (RFC 1740, appendix B): a header of 26 bytes, then 12 bytes an entry: id, offset, length.
constexpr std::uint32_t AppleDoubleMagic = 0x00051607;
constexpr std::uint32_t AppleDoubleVersion = 0x00020000;
constexpr std::size_t AppleDoubleEntryCount = 24;
constexpr std::size_t AppleDoubleEntries = 26;
constexpr std::size_t AppleDoubleEntrySize = 12;
constexpr std::uint32_t AppleDoubleFinderInfo = 9;

/// AfpInfo: 60 bytes that begin with "AFP" and a zero; the Finder information is at 16 (Samba, MacExtensions.h).
constexpr std::string_view AfpInfoSignature("AFP\0", 4);
constexpr std::size_t AfpInfoSize = 60;
constexpr std::size_t AfpInfoFinderInfo = 16;

std::uint32_t bigEndian(std::string_view bytes, std::size_t offset, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) {
        value = (value << 8U) | static_cast<unsigned char>(bytes[offset + i]);
    }
    return value;
}

std::optional<std::size_t> flagsInFinderInfo(std::string_view bytes) {
    return bytes.size() >= FlagsOffset + 2 ? std::optional(FlagsOffset) : std::nullopt;
}

std::optional<std::size_t> flagsInAppleDouble(std::string_view bytes) {
    if (bytes.size() < AppleDoubleEntries || bigEndian(bytes, 0, 4) != AppleDoubleMagic || bigEndian(bytes, 4, 4) != AppleDoubleVersion) {
        return std::nullopt;
    }
    const std::size_t count = bigEndian(bytes, AppleDoubleEntryCount, 2);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = AppleDoubleEntries + i * AppleDoubleEntrySize;
        if (entry + AppleDoubleEntrySize > bytes.size()) {
            return std::nullopt;
        }
        const std::size_t offset = bigEndian(bytes, entry + 4, 4);
        const std::size_t length = bigEndian(bytes, entry + 8, 4);
        if (bigEndian(bytes, entry, 4) == AppleDoubleFinderInfo) {
            const bool fits = length >= FinderInfoSize && offset + length <= bytes.size();
            return fits ? std::optional(offset + FlagsOffset) : std::nullopt;
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> flagsInAfpInfo(std::string_view bytes) {
    const bool is = bytes.size() >= AfpInfoSize && bytes.starts_with(AfpInfoSignature);
    return is ? std::optional(AfpInfoFinderInfo + FlagsOffset) : std::nullopt;
}

/// The places that hold flags, the one that is believed first coming first.
struct FlagsPlace {
    const char *attribute;
    std::optional<std::size_t> (*offset)(std::string_view bytes);
};
constexpr std::array<FlagsPlace, 4> FlagsPlaces = {
    FlagsPlace{FinderInfoAttribute, flagsInFinderInfo}, FlagsPlace{MacFinderInfoAttribute, flagsInFinderInfo},
    FlagsPlace{NetatalkAttribute, flagsInAppleDouble}, FlagsPlace{AfpInfoAttribute, flagsInAfpInfo}};

/// The Finder information that an item has so far, wherever it is kept, at least 32 bytes; zeros when it has none.
std::string finderInformationOf(const PosixExtendedAttributes &attributes) {
    std::string information;
    for (const FlagsPlace &place : FlagsPlaces) {
        const PosixExtendedAttribute *const found = findExtendedAttribute(attributes, place.attribute);
        if (found != nullptr && place.offset == flagsInFinderInfo) {
            information = found->value;
            break;
        }
        if (const auto offset = found != nullptr ? place.offset(found->value) : std::nullopt) {
            information = found->value.substr(*offset - FlagsOffset, FinderInfoSize);
            break;
        }
    }
    information.resize(std::max(FinderInfoSize, information.size()), '\0');
    return information;
}

void putFlags(std::string &bytes, std::size_t offset, std::uint16_t flags) {
    bytes[offset] = static_cast<char>(flags >> 8U);
    bytes[offset + 1] = static_cast<char>(flags & 0xFFU);
}

std::string colorTag(int label) {
    std::string tag(FinderLabelColors[static_cast<std::size_t>(label & 7)]);
    if (!tag.empty()) {
        tag[0] = static_cast<char>(tag[0] - 'a' + 'A');
    }
    return tag;
}

bool isColorTag(std::string_view tag) {
    for (int label = 1; label < 8; ++label) {
        if (tag == colorTag(label)) {
            return true;
        }
    }
    return false;
}

/// Reads the attributes one by one: an item has few of them or none, and their names are known.
template <typename Item> PosixExtendedAttributes readAll(const Item &item, int &error) {
    PosixExtendedAttributes attributes;
    error = 0;
    bool userNames = true;
    for (const char *name : {FinderInfoAttribute, NetatalkAttribute, AfpInfoAttribute, TagsAttribute}) {
        if (auto value = readExtendedAttribute(item, name)) {
            attributes.push_back({name, std::move(*value)});
        } else if (errno == EOPNOTSUPP) {
            userNames = false;
            break;
        } else if (errno != ENODATA) {
            error = errno;
            return attributes;
        }
    }
    if (!userNames) {
        if (auto value = readExtendedAttribute(item, MacFinderInfoAttribute)) {
            attributes.push_back({MacFinderInfoAttribute, std::move(*value)});
        } else if (errno != ENODATA) {
            error = errno;
        }
    }
    return attributes;
}

template <typename Set, typename Remove> int writeAll(const PosixExtendedAttributes &attributes, const Set &set, const Remove &remove) {
    int result = 0;
    for (const auto &[name, value] : attributes) {
        if (name == TagsAttribute && value.empty()) {
            remove(name.c_str());
            continue;
        }
        int status = set(name.c_str(), value) == 0 ? 0 : errno;
        if (name == FinderInfoAttribute) {
            if (status == EOPNOTSUPP) {
                status = set(MacFinderInfoAttribute, value) == 0 ? 0 : errno;
            }
            result = status;
        }
        if (status == EOPNOTSUPP && name.starts_with("user.")) {
            break; // none of the others can be stored there either
        }
    }
    return result;
}

} // namespace

std::optional<std::uint16_t> finderFlagsOf(const PosixExtendedAttributes &attributes) {
    for (const FlagsPlace &place : FlagsPlaces) {
        const PosixExtendedAttribute *const found = findExtendedAttribute(attributes, place.attribute);
        if (const auto offset = found != nullptr ? place.offset(found->value) : std::nullopt) {
            return static_cast<std::uint16_t>(bigEndian(found->value, *offset, 2));
        }
    }
    return std::nullopt;
}

PosixExtendedAttributes attributesForFinderFlags(const PosixExtendedAttributes &existing, std::uint16_t flags) {
    PosixExtendedAttributes changed;
    changed.push_back({FinderInfoAttribute, finderInformationOf(existing)});
    putFlags(changed.back().value, FlagsOffset, flags);

    for (const FlagsPlace &place : {FlagsPlaces[2], FlagsPlaces[3]}) {
        const PosixExtendedAttribute *const record = findExtendedAttribute(existing, place.attribute);
        if (const auto offset = record != nullptr ? place.offset(record->value) : std::nullopt) {
            changed.push_back(*record);
            putFlags(changed.back().value, *offset, flags);
        }
    }

    const PosixExtendedAttribute *const tags = findExtendedAttribute(existing, TagsAttribute);
    std::string newTags = tagsWithLabel(tags != nullptr ? std::string_view(tags->value) : std::string_view(), finderLabelOfFlags(flags));
    if (tags != nullptr ? newTags != tags->value : !newTags.empty()) {
        changed.push_back({TagsAttribute, std::move(newTags)});
    }
    return changed;
}

PosixExtendedAttributes attributesForFinderLabel(const PosixExtendedAttributes &existing, int label) {
    return attributesForFinderFlags(existing, finderFlagsWithLabel(finderFlagsOf(existing).value_or(0), label));
}

std::string tagsWithLabel(std::string_view tags, int label) {
    std::string result;
    const auto append = [&result](std::string_view tag) {
        if (!result.empty()) {
            result += ',';
        }
        result += tag;
    };
    while (!tags.empty()) {
        const std::size_t end = std::min(tags.find(','), tags.size());
        if (const std::string_view tag = tags.substr(0, end); !tag.empty() && !isColorTag(tag)) {
            append(tag);
        }
        tags.remove_prefix(std::min(end + 1, tags.size()));
    }
    if (const std::string color = colorTag(label); !color.empty()) {
        append(color);
    }
    return result;
}

PosixExtendedAttributes readFinderAttributes(int descriptor, int &error) {
    return readAll(descriptor, error);
}

PosixExtendedAttributes readFinderAttributes(const std::string &path, int &error) {
    return readAll(path, error);
}

int writeFinderAttributes(int descriptor, const PosixExtendedAttributes &attributes) {
    return writeAll(
        attributes,
        [=](const char *name, const std::string &value) { return ::fsetxattr(descriptor, name, value.data(), value.size(), 0); },
        [=](const char *name) { return ::fremovexattr(descriptor, name); });
}

int writeFinderAttributes(const std::string &path, const PosixExtendedAttributes &attributes) {
    return writeAll(
        attributes,
        [&](const char *name, const std::string &value) { return ::lsetxattr(path.c_str(), name, value.data(), value.size(), 0); },
        [&](const char *name) { return ::lremovexattr(path.c_str(), name); });
}

} // namespace orvane
