#pragma once

#include "platform/filemanagers/ApplicationWindow.h"
#include "platform/filemanagers/Deadline.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

/// Where the user's folders are, read once.
struct Surroundings {
    std::string home;
    std::string configurationFolder;
    std::string runtimeFolder; ///< may be empty
};

/// How one file manager tells which folder a window shows. Objects are constant; any thread.
class FileManager {
public:
    virtual ~FileManager() = default;
    /// As its users call it, for the log.
    [[nodiscard]] virtual const char *name() const = 0;
    /// Whether a window of this class is one of its windows. `className` is in lower case.
    [[nodiscard]] virtual bool hasClass(const std::string &className) const = 0;
    /// Absolute path of an existing folder that the window shows. Nothing when in doubt. Starts no program and does not
    /// outlast the deadline as far as other programs are concerned; a file system may hang it.
    [[nodiscard]] virtual std::optional<std::string> folder(const ApplicationWindow &window, const Surroundings &surroundings,
                                                            const Deadline &deadline) const = 0;
};

[[nodiscard]] std::unique_ptr<FileManager> makeCaja();
[[nodiscard]] std::unique_ptr<FileManager> makeDolphin();
[[nodiscard]] std::unique_ptr<FileManager> makeNautilus();
[[nodiscard]] std::unique_ptr<FileManager> makeNemo();
[[nodiscard]] std::unique_ptr<FileManager> makePCManFM();
[[nodiscard]] std::unique_ptr<FileManager> makePCManFMQt();
[[nodiscard]] std::unique_ptr<FileManager> makeThunar();

/// One of each.
[[nodiscard]] std::vector<std::shared_ptr<const FileManager>> allFileManagers();
/// The one that a window belongs to; nothing for every other program's window.
[[nodiscard]] std::shared_ptr<const FileManager> fileManagerOf(const ApplicationWindow &window,
                                                               const std::vector<std::shared_ptr<const FileManager>> &fileManagers);

} // namespace orvane
