#include "platform/filemanagers/AccessibleTree.h"
#include "platform/filemanagers/PathBarFileManager.h"

namespace orvane {

/// PCManFM-Qt 1.2: "Same"; the buttons of its path bar are check boxes to assistive programs. On the accessibility bus only
/// where that was up when it started.
std::unique_ptr<FileManager> makePCManFMQt() {
    PathBarRule rule;
    rule.name = "PCManFM-Qt";
    rule.classNames = {"pcmanfm-qt"};
    rule.buttonRole = accessible_role::CheckBox;
    return std::make_unique<PathBarFileManager>(std::move(rule));
}

} // namespace orvane
