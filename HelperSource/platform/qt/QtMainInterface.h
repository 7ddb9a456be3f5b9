#pragma once

#include "ports/Menu.h"

#include <map>
#include <string>

namespace orvane {

/// The helper's main interface file: lays out the preset menu with its fixed items. Main thread only.
class QtMainInterface {
public:
    /// What the items' selectors do, by name ("showPreferences:"). An item whose selector is not there does nothing.
    using Actions = std::map<std::string, MenuItem::Action>;

    /// Reads the file and appends the items of its widget "menuBarMenu" (a QMenu) to `menu`, their texts translated. Each has tag 0.
    /// False when the file is missing or broken, or holds no item; `menu` is then unchanged and `why` says what is wrong.
    [[nodiscard]] static bool load(const std::string &path, Menu &menu, const Actions &actions, std::string &why);
};

} // namespace orvane
