#pragma once

#include "ports/TextCase.h"

#include <map>
#include <string>
#include <string_view>

namespace orvane {

/// Maps ASCII letters and the characters of its table; everything else stays.
class FakeTextCase final : public TextCase {
public:
    [[nodiscard]] std::string uppercase(std::string_view text) override {
        std::string result;
        while (!text.empty()) {
            const auto length = _lengthOfEntryAtStartOf(text);
            if (length > 0) {
                result += table.find(text.substr(0, length))->second;
                text.remove_prefix(length);
                continue;
            }
            const char byte = text.front();
            result += byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
            text.remove_prefix(1);
        }
        return result;
    }

    /// One UTF-8 character to its upper case.
    std::map<std::string, std::string, std::less<>> table{
        {"ß", "SS"}, {"ä", "Ä"}, {"é", "É"}, {"ŉ", "ʼN"}, {"ı", "I"}, {"ς", "Σ"}, {"σ", "Σ"}, {"д", "Д"}, {"ﬁ", "FI"}, {"𐐨", "𐐀"},
    };

private:
    [[nodiscard]] std::size_t _lengthOfEntryAtStartOf(std::string_view text) const {
        for (std::size_t length = 4; length > 0; --length) {
            if (length <= text.size() && table.contains(text.substr(0, length))) {
                return length;
            }
        }
        return 0;
    }
};

} // namespace orvane
