#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orvane {

/// What came of removing what creations left, as the user is told it.
struct RemainsRemoval {
    std::size_t removed = 0;          ///< items
    std::vector<std::string> changed; ///< paths of what was changed since, and so stays
    std::vector<std::string> left;    ///< paths of top folders of which something else could not be removed
};

} // namespace orvane
