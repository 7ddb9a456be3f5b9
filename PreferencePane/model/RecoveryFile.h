#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// The one file that keeps unsaved edits over a crash, readable for the user alone. Main thread only.
class RecoveryFile {
public:
    virtual ~RecoveryFile() = default;
    /// What was written last; nothing when there is none, or it cannot be read.
    [[nodiscard]] virtual std::optional<std::string> read() = 0;
    /// Replaces what is there, whole or not at all. False when that is impossible.
    virtual bool write(std::string_view bytes) = 0;
    virtual void remove() = 0;
};

} // namespace orvane
