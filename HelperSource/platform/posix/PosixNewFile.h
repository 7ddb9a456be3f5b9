#pragma once

#include "platform/posix/FileDescriptor.h"

#include <string>
#include <string_view>

#include <sys/types.h>

// Files that appear under their names whole or not at all.

namespace orvane {

/// Whether a file system knows no such call, or not in this form; others are real errors. FAT and some FUSE refuse links with EPERM.
[[nodiscard]] bool isUnknownToFileSystem(int error);

/// Makes an empty file under a hidden name of this process, which is put into `name`, for what is to get its final name when it is
/// whole. None, with `errno`, which is never EEXIST, when it cannot be made. What others have left under such names stays.
[[nodiscard]] FileDescriptor makeHiddenFile(int folder, std::string &name, mode_t mode);
/// Gives such a file its final name in the same folder, also where the file system cannot do that in one step. False, with `errno`,
/// when it cannot be had: EEXIST when something has that name, which is not replaced. (Where the file system knows neither
/// links nor renaming without replacing, between a last look and the renaming it would be.)
[[nodiscard]] bool publishHiddenFile(int folder, const std::string &hidden, const std::string &name);

/// Writes a file beside its final name and gives it that name when it is whole and on the disk. A file that is there is replaced with
/// `replaces` (where a link leads there, the file at its end), else that fails with EEXIST, as nothing else does. False with `errno`.
[[nodiscard]] bool writeWholeFile(const std::string &path, std::string_view bytes, bool replaces, mode_t mode = 0666);

} // namespace orvane
