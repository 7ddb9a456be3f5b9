#pragma once

#include "ports/Resources.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Resources as told: the text of "SGKeyCodes.plist" stands for the property list of that text in `lists`.
class FakeResources final : public Resources {
public:
    std::map<std::string, std::string, std::less<>> strings;   ///< by name, dot and type
    std::map<std::string, PropertyList, std::less<>> lists;    ///< by text
    std::map<std::string, std::string, std::less<>> languages; ///< by key
    std::vector<std::string> journal;                          ///< resources and keys that were asked for

    [[nodiscard]] std::optional<std::string> stringOfResource(std::string_view name, std::string_view type) override {
        const std::string file = std::string(name) + "." + std::string(type);
        journal.push_back(file);
        const auto found = strings.find(file);
        return found == strings.end() ? std::nullopt : std::optional(found->second);
    }
    [[nodiscard]] std::optional<PropertyList> propertyListOfString(std::string_view text) override {
        const auto found = lists.find(text);
        return found == lists.end() ? std::nullopt : std::optional(found->second);
    }
    [[nodiscard]] std::string localizedString(std::string_view key) override {
        journal.emplace_back(key);
        const auto found = languages.find(key);
        return found == languages.end() ? std::string(key) : found->second;
    }
};

} // namespace orvane
