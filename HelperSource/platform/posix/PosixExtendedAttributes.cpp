#include "platform/posix/PosixExtendedAttributes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>

#include <sys/types.h>
#include <sys/xattr.h>

namespace orvane {

namespace {

/// Runs a call of the getxattr family, which takes a buffer and returns a length: first with a buffer that is enough for
/// nearly all, then, when it says ERANGE, with as much as it asks for (which may grow meanwhile).
template <typename Call> std::optional<std::string> readWhole(const Call &call) {
    std::array<char, 256> small{};
    ssize_t length = call(small.data(), small.size());
    if (length >= 0) {
        return std::string(small.data(), static_cast<std::size_t>(length));
    }
    for (int attempts = 0; errno == ERANGE && attempts < 8; ++attempts) {
        length = call(nullptr, 0);
        if (length < 0) {
            return std::nullopt;
        }
        std::string large(static_cast<std::size_t>(length), '\0');
        length = call(large.data(), large.size());
        if (length >= 0) {
            large.resize(static_cast<std::size_t>(length));
            return large;
        }
    }
    return std::nullopt;
}

bool travels(std::string_view name) {
    return !name.empty() && !name.starts_with("system.") && !name.starts_with("security.");
}

/// The names of an open file's attributes as the system gives them, each ended by a NUL.
std::optional<std::string> listedNames(int descriptor) {
    return readWhole([=](char *buffer, std::size_t size) { return ::flistxattr(descriptor, buffer, size); });
}

/// Takes the first name from such a list.
std::string takeName(std::string_view &list) {
    std::string name(list.substr(0, list.find('\0')));
    list.remove_prefix(std::min(name.size() + 1, list.size()));
    return name;
}

} // namespace

const PosixExtendedAttribute *findExtendedAttribute(const PosixExtendedAttributes &attributes, std::string_view name) {
    const auto found = std::find_if(attributes.begin(), attributes.end(), [name](const auto &each) { return each.name == name; });
    return found == attributes.end() ? nullptr : &*found;
}

std::optional<std::string> readExtendedAttribute(int descriptor, const char *name) {
    return readWhole([=](char *buffer, std::size_t size) { return ::fgetxattr(descriptor, name, buffer, size); });
}

std::optional<std::string> readExtendedAttribute(const std::string &path, const char *name) {
    return readWhole([&](char *buffer, std::size_t size) { return ::lgetxattr(path.c_str(), name, buffer, size); });
}

std::optional<std::vector<std::string>> extendedAttributeNames(int descriptor) {
    const auto list = listedNames(descriptor);
    if (!list && errno != ENOTSUP) {
        return std::nullopt;
    }
    std::vector<std::string> names;
    for (std::string_view left = list ? std::string_view(*list) : std::string_view(); !left.empty();) {
        names.push_back(takeName(left));
    }
    return names;
}

PosixExtendedAttributes readExtendedAttributes(int descriptor) {
    PosixExtendedAttributes attributes;
    const auto list = listedNames(descriptor);
    std::string_view left = list ? std::string_view(*list) : std::string_view();
    while (!left.empty()) {
        const std::string name = takeName(left);
        if (!travels(name)) {
            continue;
        }
        if (auto value = readExtendedAttribute(descriptor, name.c_str())) {
            attributes.push_back({name, std::move(*value)});
        }
    }
    return attributes;
}

} // namespace orvane
