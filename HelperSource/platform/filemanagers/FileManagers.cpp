#include "platform/filemanagers/FileManager.h"

namespace orvane {

std::vector<std::shared_ptr<const FileManager>> allFileManagers() {
    return {makeNautilus(), makeDolphin(), makeThunar(), makeNemo(), makeCaja(), makePCManFMQt(), makePCManFM()};
}

std::shared_ptr<const FileManager> fileManagerOf(const ApplicationWindow &window,
                                                 const std::vector<std::shared_ptr<const FileManager>> &fileManagers) {
    std::string className;
    for (const char character : window.className) {
        className += character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
    }
    for (const auto &fileManager : fileManagers) {
        if (fileManager->hasClass(className)) {
            return fileManager;
        }
    }
    return nullptr;
}

} // namespace orvane
