#include "platform/filemanagers/AccessibleTree.h"
#include "platform/filemanagers/PathBarFileManager.h"

namespace orvane {

/// PCManFM 1.3 (GTK 2): "Same"; on the accessibility bus only with the module atk-bridge (package libatk-adaptor).
std::unique_ptr<FileManager> makePCManFM() {
    PathBarRule rule;
    rule.name = "PCManFM";
    rule.classNames = {"pcmanfm"};
    rule.buttonRole = accessible_role::RadioButton;
    rule.order = PathBarOrder::RootFirst;
    return std::make_unique<PathBarFileManager>(std::move(rule));
}

} // namespace orvane
