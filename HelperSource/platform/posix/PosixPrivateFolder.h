#pragma once

#include <string>

namespace orvane {

/// Makes a folder for one user's data, which its owner alone can use (mode 0700, as XDG Base Directory 0.8 asks), also
/// where the file mode mask would keep the owner out of it. Its parent must be there. False with `errno`, EEXIST when something is there
/// already. Any thread.
[[nodiscard]] bool makePrivateFolder(const std::string &path);

} // namespace orvane
