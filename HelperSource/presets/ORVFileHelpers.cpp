#include "presets/ORVFileHelpers.h"

#include "ports/FinderLabel.h"
#include "ports/UTF16.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace orvane {

namespace {

constexpr std::string_view WhiteSpace = " \t\n\v\f\r";

std::optional<unsigned> hexDigit(char c) {
    if (c >= '0' && c <= '9') {
        return static_cast<unsigned>(c - '0');
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? std::optional(static_cast<unsigned>(lower - 'a') + 10U) : std::nullopt;
}

/// The number that the text starts with; one that does not fit is the largest.
std::uint32_t scanHex(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(WhiteSpace), text.size()));
    if (text.size() > 1 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        text.remove_prefix(2);
    }
    std::uint64_t value = 0;
    for (const char c : text) {
        const auto digit = hexDigit(c);
        if (!digit) {
            break;
        }
        value = value * 16 + *digit;
        if (value > std::numeric_limits<std::uint32_t>::max()) {
            return std::numeric_limits<std::uint32_t>::max();
        }
    }
    return static_cast<std::uint32_t>(value);
}

void appendCompressed(std::string &path, std::string_view piece) {
    for (const char c : piece) {
        if (c != '/' || path.empty() || path.back() != '/') {
            path.push_back(c);
        }
    }
}

void dropTrailingSlash(std::string &path) {
    if (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
}

std::string compressed(std::string_view path) {
    std::string result;
    result.reserve(path.size());
    appendCompressed(result, path);
    dropTrailingSlash(result);
    return result;
}

} // namespace

long ORVFinderLabelForColor(std::optional<std::string_view> colorName) {
    if (!colorName) {
        return 0;
    }
    const auto *const found = std::find(FinderLabelColors.begin(), FinderLabelColors.end(), *colorName);
    return found == FinderLabelColors.end() ? ORVNotFound : static_cast<long>(found - FinderLabelColors.begin());
}

int ORVSetFinderLabelForPath(long label, std::string_view path, FinderInformation &finderInformation) {
    if (!finderInformation.hasItem(path)) {
        return 0;
    }
    std::uint16_t flags = 0;
    if (const int error = finderInformation.readFlags(path, flags); error != 0) {
        return error;
    }
    return finderInformation.writeFlags(path, finderFlagsWithLabel(flags, label));
}

std::string ORVApplicationSupportPath(UserFolders &folders) {
    return stringByAppendingPathComponent(folders.applicationSupportDirectory(), "Orvane");
}

std::string stringByRemovingCharactersInSet(std::string_view text, const ORVCharacterSet &set) {
    std::u16string units = ORVUTF16OfText(text);
    std::erase_if(units, set);
    return ORVTextOfUTF16(units);
}

std::string stringByDeletingFileSystemEntities(std::string_view text) {
    return stringByRemovingCharactersInSet(text, [](char16_t unit) { return unit == u'/' || unit == u'~' || unit == u':'; });
}

ORVColor colorFromHexRGB(std::optional<std::string_view> text) {
    const std::uint32_t value = text ? scanHex(*text) : 0;
    const auto component = [value](unsigned shift) { return static_cast<float>((value >> shift) & 0xFFU) / 255.0F; };
    return {component(16), component(8), component(0), 1.0F};
}

std::string stringByAppendingPathComponent(std::string_view path, std::string_view component) {
    std::string result;
    result.reserve(path.size() + 1 + component.size());
    appendCompressed(result, path);
    if (!result.empty() && !component.empty()) {
        appendCompressed(result, "/");
    }
    appendCompressed(result, component);
    dropTrailingSlash(result);
    return result;
}

std::string lastPathComponent(std::string_view path) {
    std::string whole = compressed(path);
    const std::size_t slash = whole.rfind('/');
    return slash == std::string::npos || whole == "/" ? whole : whole.substr(slash + 1);
}

std::string stringByDeletingLastPathComponent(std::string_view path) {
    const std::string whole = compressed(path);
    const std::size_t slash = whole.rfind('/');
    if (slash == std::string::npos) {
        return {};
    }
    return slash == 0 ? "/" : whole.substr(0, slash);
}

std::string stringByExpandingTildeInPath(std::string_view path, UserFolders &folders) {
    if (path.empty() || path.front() != '~' || (path.size() > 1 && path[1] != '/')) {
        return compressed(path);
    }
    return stringByAppendingPathComponent(folders.homeDirectory(), path.substr(1));
}

std::string ORVASCIILowercase(std::string_view text) {
    std::string result(text);
    for (char &c : result) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c + ('a' - 'A'));
        }
    }
    return result;
}

} // namespace orvane
