#pragma once

#include "ports/KeyValueObserver.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Remembers the changes as "will KEY" and "did KEY"; the hook runs after each was written down.
class FakeKeyValueObserver final : public KeyValueObserver {
public:
    void willChangeValueForKey(std::string_view key) override { _record("will ", key); }
    void didChangeValueForKey(std::string_view key) override { _record("did ", key); }

    std::vector<std::string> journal;
    std::function<void(const std::string &entry)> hook;

private:
    void _record(std::string_view what, std::string_view key) {
        journal.push_back(std::string(what).append(key));
        if (hook) {
            hook(journal.back());
        }
    }
};

} // namespace orvane
