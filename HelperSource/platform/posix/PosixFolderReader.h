#pragma once

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixContent.h"
#include "platform/posix/PosixMadeItems.h"

#include <string>
#include <vector>

namespace orvane {

/// Walks through a folder of contents, folder by folder, without following symbolic links. Of a deep chain only the
/// deepest folders stay open; the way back up goes through ".." and is checked. Failures leave `errno`.
class PosixFolderReader {
public:
    enum class Type { File, Link, Other };
    struct Entry {
        std::string name;
        Type type;
    };

    /// Goes into a folder by name, at first into `top` itself (`name` "."), and lists it.
    [[nodiscard]] bool descend(int top, const std::string &name);
    /// Goes back to the folder above; from the top one out of all.
    [[nodiscard]] bool ascend();
    [[nodiscard]] bool isOutside() const { return _frames.empty(); }

    [[nodiscard]] int folder() const { return _frames.back().folder.get(); }
    [[nodiscard]] PosixMadeItems::Identity identity() const { return _frames.back().identity; }
    [[nodiscard]] const PosixItemProperties &properties() const { return _frames.back().properties; }
    /// Everything in the current folder that is no folder.
    [[nodiscard]] const std::vector<Entry> &entries() const { return _frames.back().entries; }
    /// Takes one of the current folder's folders that were not visited yet; false when there is none.
    [[nodiscard]] bool takeFolder(std::string &name);

private:
    struct Frame {
        FileDescriptor folder;
        PosixMadeItems::Identity identity;
        PosixItemProperties properties;
        std::vector<Entry> entries;
        std::vector<std::string> folders;
    };

    [[nodiscard]] static bool _list(Frame &frame);

    std::vector<Frame> _frames;
};

} // namespace orvane
