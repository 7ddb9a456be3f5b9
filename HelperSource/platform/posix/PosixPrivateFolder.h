#pragma once

#include <string>
#include <vector>

namespace orvane {

/// Makes a folder for one user's data, which its owner alone can use (mode 0700, as XDG Base Directory 0.8 asks), also
/// where the file mode mask would keep the owner out of it. Its parent must be there. False with `errno`, EEXIST when something is there
/// already. Any thread.
[[nodiscard]] bool makePrivateFolder(const std::string &path);

/// Makes the folder and those of its parents that are missing, each as `makePrivateFolder` does. What is there already will do. `made`,
/// which may be null, gets the paths of those that were made, outermost first, also when it fails in the end. False with `errno`.
[[nodiscard]] bool makePrivateFolders(const std::string &path, std::vector<std::string> *made = nullptr);

} // namespace orvane
