#pragma once

#include "TemporaryFolder.h"
#include "platform/posix/PosixFileSystem.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <sys/types.h>

// What the tests of the real adapter share.

namespace orvane::testing {

/// Nobody's user and group number on Linux systems.
inline constexpr unsigned OrdinaryUser = 65534;

[[nodiscard]] bool isRoot();
/// Runs `work` in a child process, as an ordinary user when this is root; `work` returns "" or what went wrong. The result
/// is that text, or how the child ended otherwise, after at most a minute.
[[nodiscard]] std::string asOrdinaryUser(const std::function<std::string()> &work);
/// The same without a change of user, for what spoils a process (limits, umask, working folder).
[[nodiscard]] std::string inChild(const std::function<std::string()> &work);

/// Contents of a file; a failure is a text that no test expects.
[[nodiscard]] std::string contentsOf(const std::string &path);
void putFile(const std::string &path, std::string_view contents, mode_t mode = 0644);
void putFolder(const std::string &path, mode_t mode = 0755);
void putLink(const std::string &path, const std::string &target);
void setAttribute(const std::string &path, const char *name, std::string_view value);
[[nodiscard]] std::optional<std::string> attributeOf(const std::string &path, const char *name);
[[nodiscard]] bool isThere(const std::string &path);        ///< links not followed
[[nodiscard]] struct stat stateOf(const std::string &path); ///< links not followed
[[nodiscard]] unsigned modeOf(const std::string &path);     ///< 07777
/// Names in a folder, sorted.
[[nodiscard]] std::vector<std::string> namesIn(const std::string &path);
/// Descriptors that this process has open.
[[nodiscard]] std::size_t openDescriptors();
/// Runs a command line and returns its status.
[[nodiscard]] int run(const std::string &command);
/// Gives the item to the ordinary user, when this is root.
void giveToOrdinaryUser(const std::string &path);

} // namespace orvane::testing
