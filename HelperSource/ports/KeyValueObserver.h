#pragma once

#include <string_view>

namespace orvane {

/// Told about changes of the manager's "promptValues" and "promptDirectoryName", so that a window can follow them.
class KeyValueObserver {
public:
    virtual ~KeyValueObserver() = default;
    /// Called on the main thread right before and right after the change.
    virtual void willChangeValueForKey(std::string_view key) = 0;
    virtual void didChangeValueForKey(std::string_view key) = 0;
};

} // namespace orvane
