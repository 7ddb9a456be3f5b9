#pragma once

#include "window/SettingsContext.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <optional>
#include <vector>

namespace orvane {

/// Makes presets in temporary folders, to be looked at: the same engine as in earnest, with the preview's values, but without the
/// preset's script, and counters are not counted on. The folders go with this object. Main thread only.
class Trial {
public:
    explicit Trial(SettingsContext &context) : _context(context) {}

    /// Makes the preset and opens what was made. Its path; nothing, with `problem` in words, when it cannot be made.
    [[nodiscard]] std::optional<QString> tryPreset(ItemID preset, QString &problem);

private:
    SettingsContext &_context;
    std::vector<std::unique_ptr<QTemporaryDir>> _folders;
};

} // namespace orvane
