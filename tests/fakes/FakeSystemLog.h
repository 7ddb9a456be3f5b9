#pragma once

#include "ports/SystemLog.h"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Keeps the entries in memory.
class FakeSystemLog final : public SystemLog {
public:
    void log(std::string_view text) override {
        const std::lock_guard lock(_mutex);
        _entries.emplace_back(text);
    }
    [[nodiscard]] std::vector<std::string> entries() const {
        const std::lock_guard lock(_mutex);
        return _entries;
    }

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _entries;
};

} // namespace orvane
