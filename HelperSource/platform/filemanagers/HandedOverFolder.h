#pragma once

#include "platform/filemanagers/BoundedWork.h"
#include "ports/FrontWindow.h"

#include <string>

namespace orvane {

/// A folder that was handed over with a request (by an entry of a file manager's context menu, or by `orvane menu --in DIR`)
/// stands for the front window's until it is cleared. Main thread only.
class HandedOverFolder final : public FrontWindow {
public:
    /// `behind` is asked while no folder is handed over; it must outlive this.
    explicit HandedOverFolder(FrontWindow &behind) : _behind(behind) {}

    /// Takes an absolute path that leads to a folder now. Otherwise false, and no folder is handed over, also not the one before:
    /// a request that names no folder must not get an older one's.
    bool setFolder(std::string path);
    void clear() { _folder.clear(); }

    /// True while a folder is handed over.
    [[nodiscard]] bool fileManagerIsActive() override;
    /// The folder that was handed over, as it was written; nothing when it has gone in the meantime.
    [[nodiscard]] std::optional<std::string> folder() override;

private:
    [[nodiscard]] bool _isFolder(const std::string &path);

    FrontWindow &_behind;
    std::string _folder; ///< empty: none
    BoundedWork _work;
};

} // namespace orvane
