#include "platform/filemanagers/AccessibleTree.h"
#include "platform/filemanagers/PathBarFileManager.h"

namespace orvane {

/// Caja 1.26: "Same"; path bar and location field are both in the tree, one of them hidden.
std::unique_ptr<FileManager> makeCaja() {
    PathBarRule rule;
    rule.name = "Caja";
    rule.classNames = {"caja"};
    rule.buttonRole = accessible_role::ToggleButton;
    return std::make_unique<PathBarFileManager>(std::move(rule));
}

} // namespace orvane
