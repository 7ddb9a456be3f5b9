#include "platform/filemanagers/AccessibleTree.h"
#include "platform/filemanagers/PathBarFileManager.h"

namespace orvane {

/// Thunar 4.18: "Same - Thunar"; a location field unless the user prefers the path bar. The channel "thunar" of its settings has
/// misc-full-path-in-window-title.
std::unique_ptr<FileManager> makeThunar() {
    PathBarRule rule;
    rule.name = "Thunar";
    rule.classNames = {"thunar"};
    rule.buttonRole = accessible_role::ToggleButton;
    rule.title.separator = " - ";
    rule.title.mayShowFullPath = true;
    rule.title.domain = "thunar";
    rule.title.rootMessage = "File System";
    return std::make_unique<PathBarFileManager>(std::move(rule));
}

} // namespace orvane
