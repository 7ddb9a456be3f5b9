#pragma once

#include "platform/posix/FileDescriptor.h"

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// How the running helper's hot key stands, in words for the user, where other programs of Orvane find it: in the file `hot-key` of
/// Orvane's state folder. Main thread only.
class PosixHotKeyStatement {
public:
    /// `directory` is an absolute path. Nothing is made before the first statement.
    explicit PosixHotKeyStatement(std::string directory);
    PosixHotKeyStatement(const PosixHotKeyStatement &) = delete;
    PosixHotKeyStatement &operator=(const PosixHotKeyStatement &) = delete;
    /// Takes the statement back.
    ~PosixHotKeyStatement();

    /// Replaces the statement; readers see the one before or the whole of this one. An empty text takes it back. What fails is left
    /// out silently: the log has the statement too.
    void say(std::string_view text);
    /// The statement of a helper that is running, the one before or the one after where it is just being replaced; nothing when there is
    /// none.
    [[nodiscard]] static std::optional<std::string> ofDirectory(const std::string &directory);

private:
    const std::string _directory;
    const std::string _path;
    bool _isSaid = false;
    FileDescriptor _file; ///< what was said last, locked for as long as that holds
};

} // namespace orvane
