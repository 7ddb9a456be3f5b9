#include "platform/filemanagers/AccessibleTree.h"
#include "platform/filemanagers/PathBarFileManager.h"

namespace orvane {

/// Nemo 5.6: "Same", or "Same - /whole/path/Same" with show-full-path-titles; a path bar unless the user prefers the field.
std::unique_ptr<FileManager> makeNemo() {
    PathBarRule rule;
    rule.name = "Nemo";
    rule.classNames = {"nemo", "nemo-desktop"};
    rule.buttonRole = accessible_role::ToggleButton;
    rule.title.mayAppendFullPath = true;
    rule.title.domain = "nemo";
    rule.title.homeMessage = "Home";
    return std::make_unique<PathBarFileManager>(std::move(rule));
}

} // namespace orvane
