#pragma once

#include "ports/PropertyList.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Property lists as files, in the two forms that Apple's tools write today: XML (the document type "-//Apple//DTD PLIST
// 1.0//EN") and binary ("bplist00"). The older text form is not read.
//
// A file is read whole or not at all: whatever is cut off, damaged, doubled or followed by something else is unreadable,
// never empty and never half. Nothing here recurses, so no depth of nesting is too deep.

namespace orvane {

enum class PropertyListFormat : std::uint8_t { XML, Binary };

/// Text encodings of XML files. UTF-16 is told from its byte-order mark, or from the file's first two bytes.
enum class PropertyListEncoding : std::uint8_t { UTF8, UTF16LittleEndian, UTF16BigEndian, Latin1, ASCII };

/// Where an entry of the root dictionary stands in an XML file: offsets in bytes into the file, or, for a file whose
/// encoding is not UTF-8 or ASCII, into its text turned into UTF-8 (`decodedPropertyListText`).
struct PropertyListSite {
    std::string_view key;         ///< borrows from the document that was read
    std::uint64_t keyBegin = 0;   ///< of the '<' of `<key>`
    std::uint64_t valueBegin = 0; ///< of the '<' that opens the value
    std::uint64_t valueEnd = 0;   ///< behind the '>' that closes it
};

/// The root dictionary's place in an XML file, enough to change one entry and to leave every other byte as it is.
struct PropertyListSites {
    /// Entries in file order; where a key stands there twice, both.
    std::vector<PropertyListSite> entries;
    /// Behind the '>' of the root's opening tag; for an empty tag (`<dict/>`), of its '/'.
    std::uint64_t rootContents = 0;
    /// The root is written as an empty tag, which ends at `rootEnd`.
    bool rootIsEmptyTag = false;
    /// Behind the '>' that ends the root.
    std::uint64_t rootEnd = 0;
    PropertyListEncoding encoding = PropertyListEncoding::UTF8;
};

/// What a reader tells beside the document; every part may be left out.
struct PropertyListReport {
    PropertyListFormat format = PropertyListFormat::XML;
    /// Filled when `wantsSites` is set and an XML file's root is a dictionary.
    PropertyListSites sites;
    bool wantsSites = false;
    /// Why the file cannot be read, in English; for XML with the line's number (counted from 1).
    std::string why;
};

/// Reads a whole property list. Where a dictionary names a key twice, the last value wins and keeps the first one's place.
/// A dictionary of the single key `CF$UID` with an integer not below 0 is a UID in XML, as Apple's readers have it.
/// Nothing when it cannot be read; `report` (may be null) says why. Throws nothing but std::bad_alloc.
[[nodiscard]] std::optional<PropertyList> readPropertyList(std::string_view bytes, PropertyListReport *report = nullptr);

/// The same from an open file, from its present position to its end. XML passes through a buffer of 64 KiB and is
/// never in memory whole. Does not close `descriptor`.
[[nodiscard]] std::optional<PropertyList> readPropertyList(int descriptor, PropertyListReport *report = nullptr);

/// As above, for callers that only ask for the form and the reason.
[[nodiscard]] std::optional<PropertyList> readPropertyList(std::string_view bytes, PropertyListFormat *format, std::string *why);
[[nodiscard]] std::optional<PropertyList> readPropertyList(int descriptor, PropertyListFormat *format, std::string *why);

/// The XML form, laid out as Apple's tools do (tabs, one element a line), in UTF-8; indented by 64 tabs at most. Dates lose
/// their fractions of a second, UIDs become `CF$UID` dictionaries. Nothing, and `why` (may be null) says so, for what XML
/// cannot hold: sets, null, text with a NUL or that is not UTF-8, dates beyond the year ±999999999.
[[nodiscard]] std::optional<std::string> writeXMLPropertyList(const PropertyListValue &root, std::string *why = nullptr);

/// One value as it stands inside an XML file, indented as by `depth` tabs, without the first line's indent and the
/// last line feed. With `asciiOnly` every other character is written as a reference.
[[nodiscard]] std::optional<std::string> writeXMLPropertyListFragment(const PropertyListValue &value, std::size_t depth, bool asciiOnly,
                                                                      std::string *why = nullptr);

/// Text of an XML file's key or string: `&`, `<`, `>` and the carriage return as references.
[[nodiscard]] std::string escapedPropertyListText(std::string_view text, bool asciiOnly = false);

/// The binary form. Equal strings and scalars are stored once; containers that are shared stay shared.
/// Nothing, and `why` says so, for text that is not UTF-8.
[[nodiscard]] std::optional<std::string> writeBinaryPropertyList(const PropertyListValue &root, std::string *why = nullptr);

/// An XML file's text in UTF-8, and back; byte-order marks are kept as U+FEFF. Nothing for what is no text in that encoding.
[[nodiscard]] std::optional<std::string> decodedPropertyListText(std::string_view bytes, PropertyListEncoding encoding);
[[nodiscard]] std::optional<std::string> encodedPropertyListText(std::string_view text, PropertyListEncoding encoding);

} // namespace orvane
