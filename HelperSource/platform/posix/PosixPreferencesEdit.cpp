#include "platform/posix/PosixPreferencesEdit.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace orvane {

namespace {

/// Text that takes the place of a range of the old text, which may be empty.
struct Splice {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::string text;
};

/// The old dictionary with the changes in place, new keys at its end.
PropertyList changed(const PropertyList &old, const PosixPreferencesChanges &changes) {
    PropertyListBuilder builder;
    const auto before = builder.adopt(old).dictionary();
    std::vector<PropertyListEntry> entries(before.begin(), before.end());
    for (const auto &[key, value] : changes) {
        const PropertyListValue adopted = builder.adopt(value);
        const std::string_view name = key;
        const auto entry = std::find_if(entries.begin(), entries.end(), [&](const PropertyListEntry &each) { return each.key == name; });
        if (entry == entries.end()) {
            entries.push_back({key, adopted});
        } else {
            entry->value = adopted;
        }
    }
    return builder.finish(builder.dictionary(entries));
}

/// The text of one value inside the root dictionary, and the value as it will be read back. Reading it here is the proof
/// that it stands by itself, so that putting it in the place of another value keeps the file whole.
std::optional<std::string> fragment(PropertyList &value, bool asciiOnly, std::string &why) {
    std::optional<std::string> text = writeXMLPropertyListFragment(value.root(), 1, asciiOnly, &why);
    if (!text) {
        return std::nullopt;
    }
    PropertyListReport report;
    const std::optional<PropertyList> reread = readPropertyList("<plist>" + *text + "</plist>", &report);
    const std::optional<std::string> again = reread ? writeXMLPropertyListFragment(reread->root(), 1, asciiOnly) : std::nullopt;
    if (again != text) {
        why = "a value does not survive being written: " + report.why;
        return std::nullopt;
    }
    value = *reread;
    return text;
}

const PropertyListSite *lastSite(const PropertyListSites &sites, std::string_view key) {
    const auto site =
        std::find_if(sites.entries.rbegin(), sites.entries.rend(), [&](const PropertyListSite &each) { return each.key == key; });
    return site == sites.entries.rend() ? nullptr : &*site;
}

/// New entries go behind the last one, or between the tags of an empty dictionary.
Splice insertion(const PropertyListSites &sites, std::string text) {
    if (!sites.entries.empty()) {
        return {sites.entries.back().valueEnd, sites.entries.back().valueEnd, std::move(text)};
    }
    if (sites.rootIsEmptyTag) {
        return {sites.rootContents, sites.rootEnd, ">" + text + "\n</dict>"};
    }
    return {sites.rootContents, sites.rootContents, text + "\n"};
}

std::optional<std::vector<Splice>> splices(const PropertyListSites &sites, PosixPreferencesChanges &changes, std::string &why) {
    const bool asciiOnly = sites.encoding == PropertyListEncoding::ASCII || sites.encoding == PropertyListEncoding::Latin1;
    std::vector<Splice> result;
    std::string added;
    for (auto &[key, value] : changes) {
        const std::optional<std::string> text = fragment(value, asciiOnly, why);
        if (!text) {
            return std::nullopt;
        }
        if (const PropertyListSite *site = lastSite(sites, key)) {
            result.push_back({site->valueBegin, site->valueEnd, *text});
        } else {
            added += "\n\t<key>" + escapedPropertyListText(key, asciiOnly) + "</key>\n\t" + *text;
        }
    }
    if (!added.empty()) {
        result.push_back(insertion(sites, std::move(added)));
    }
    std::stable_sort(result.begin(), result.end(), [](const Splice &left, const Splice &right) { return left.begin < right.begin; });
    return result;
}

std::vector<PosixPreferencesPiece> piecesOf(const std::vector<Splice> &splices, std::uint64_t size) {
    std::vector<PosixPreferencesPiece> pieces;
    std::uint64_t at = 0;
    for (const Splice &splice : splices) {
        pieces.push_back({at, splice.begin, {}});
        pieces.push_back({0, 0, splice.text});
        at = splice.end;
    }
    pieces.push_back({at, size, {}});
    return pieces;
}

std::optional<std::string> wholeFile(int file, std::uint64_t size, std::string &why) {
    std::string bytes(static_cast<std::size_t>(size), '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count =
            uninterrupted([&] { return ::pread(file, bytes.data() + done, bytes.size() - done, static_cast<off_t>(done)); });
        if (count <= 0) {
            why = count < 0 ? std::string("it cannot be read: ") + std::strerror(errno) : "it changes while it is read";
            return std::nullopt;
        }
        done += static_cast<std::size_t>(count);
    }
    return bytes;
}

/// Text in other encodings is turned into UTF-8, changed there and turned back, which both ways loses nothing.
std::optional<std::string> splicedInOtherEncoding(const PosixPreferencesDocument &document, const std::vector<Splice> &splices, int oldFile,
                                                  std::string &why) {
    const auto bytes = wholeFile(oldFile, static_cast<std::uint64_t>(document.identity.size), why);
    std::optional<std::string> text = bytes ? decodedPropertyListText(*bytes, document.sites.encoding) : std::nullopt;
    if (!text) {
        return std::nullopt;
    }
    for (auto splice = splices.rbegin(); splice != splices.rend(); ++splice) {
        text->replace(static_cast<std::size_t>(splice->begin), static_cast<std::size_t>(splice->end - splice->begin), splice->text);
    }
    std::optional<std::string> encoded = encodedPropertyListText(*text, document.sites.encoding);
    if (!encoded) {
        why = "a value cannot be written in the file's encoding";
    }
    return encoded;
}

std::optional<PosixPreferencesEdit> wholeEdit(std::optional<std::string> content, PropertyList result) {
    if (!content) {
        return std::nullopt;
    }
    return PosixPreferencesEdit{{{0, 0, std::move(*content)}}, std::move(result)};
}

std::optional<PosixPreferencesEdit> planXMLEdit(const PosixPreferencesDocument &document, PosixPreferencesChanges changes, int oldFile,
                                                std::string &why) {
    const std::optional<std::vector<Splice>> planned = splices(document.sites, changes, why);
    if (!planned) {
        return std::nullopt;
    }
    PropertyList result = changed(document.list, changes);
    const PropertyListEncoding encoding = document.sites.encoding;
    if (encoding != PropertyListEncoding::UTF8 && encoding != PropertyListEncoding::ASCII) {
        return wholeEdit(splicedInOtherEncoding(document, *planned, oldFile, why), std::move(result));
    }
    return PosixPreferencesEdit{piecesOf(*planned, static_cast<std::uint64_t>(document.identity.size)), std::move(result)};
}

} // namespace

std::optional<PosixPreferencesEdit> planPreferencesEdit(const PosixPreferencesDocument &document, const PosixPreferencesChanges &changes,
                                                        int oldFile, std::string &why) {
    if (document.state == PosixPreferencesDocument::State::Missing) {
        PropertyListBuilder builder;
        const PropertyList empty = builder.finish(builder.dictionary({}));
        PropertyList result = changed(empty, changes);
        std::optional<std::string> content = writeXMLPropertyList(result.root(), &why);
        return wholeEdit(std::move(content), std::move(result));
    }
    if (document.format == PropertyListFormat::Binary) {
        PropertyList result = changed(document.list, changes);
        std::optional<std::string> content = writeBinaryPropertyList(result.root(), &why);
        return wholeEdit(std::move(content), std::move(result));
    }
    return planXMLEdit(document, changes, oldFile, why);
}

} // namespace orvane
