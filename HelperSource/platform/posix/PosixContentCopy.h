#pragma once

#include <cstddef>
#include <functional>

#include <sys/types.h>

// Copying of file contents from descriptor to descriptor.

namespace orvane {

/// Most that is copied from one question whether to stop to the next.
inline constexpr std::size_t PosixMostBytesUnasked = std::size_t{4} * 1024 * 1024;

/// Copies the first `size` bytes of `from` into the empty file `to`, in the cheapest way that the file systems offer:
/// sharing the blocks (FICLONE), copying inside the kernel (copy_file_range, then sendfile), last by reading and writing.
/// With `sparse` only what SEEK_DATA finds is copied, so that holes stay holes. Positions of both descriptors change.
/// A source that is shorter meanwhile gives a shorter copy. `shouldStop`, which may be null, is asked every few MiB whether to go no
/// further, which fails with ECANCELED. False with `errno`.
[[nodiscard]] bool copyContents(int from, int to, off_t size, bool sparse, const std::function<bool()> *shouldStop = nullptr);

} // namespace orvane
