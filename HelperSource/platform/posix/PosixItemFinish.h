#pragma once

#include "platform/posix/PosixContent.h"

#include <optional>

#include <sys/types.h>

// What items get besides their names: labels, modes, attributes and times, all on descriptors. A failure of these is no
// failure of the item: the file system may know no attributes, for one.

namespace orvane {

/// What a new file gets besides its bytes.
struct PosixFileFinish {
    const PosixContent *content = nullptr; ///< whose attributes and times it gets; null for none
    int label = 0;                         ///< 0 sets none
    std::optional<mode_t> mode = {};
};

/// Label, attributes, mode and times of a new file, the mode when nothing is left to be written. 0, or the first failure's `errno`.
[[nodiscard]] int finishNewFile(int file, const PosixFileFinish &finish);

/// Sets the label of an open item, keeping what else it has in the same attributes, of which a new one has none. 0 or `errno`.
[[nodiscard]] int setLabelOfOpenItem(int item, int label, bool isNew);

/// Sets mode bits (07777) of an open item, also of one opened as mere path. 0 or `errno`.
[[nodiscard]] int setModeOfOpenItem(int item, unsigned mode);

/// Lets the owner alone do everything in a folder of theirs that may keep them out, and is no symbolic link. 0 or `errno`.
[[nodiscard]] int openFolderToOwner(int parent, const char *path);

} // namespace orvane
