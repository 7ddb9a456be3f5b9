#include "platform/posix/PosixFileSystem.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

// hierarchy_driver BASE CONTENTS NODES [remove]
//
// Makes a hierarchy of that many nodes below BASE with the writer and nothing else, so that a test can count its system
// calls. Its shape is that of a large preset: three nodes in ten are folders, at most six deep; half of the files are
// copies of one of the files "0" to "9" in CONTENTS, the others empty; one node in ten has a mode, another a label.
// With "remove" all of it is taken away again.

namespace {

using namespace orvane;

class Maker {
public:
    Maker(FileSystem &files, HierarchyWriter &writer, std::string contents)
        : _files(files), _writer(writer), _contents(std::move(contents)) {}

    bool make(int nodes) {
        bool good = _writer.enterFolder("top");
        for (int i = 0; good && i < nodes; ++i) {
            good = _makeNode(i);
        }
        while (_depth-- > 0) {
            _writer.leaveFolder({});
        }
        _writer.leaveFolder({});
        return good;
    }

private:
    bool _makeNode(int i) {
        const std::string name = "node number " + std::to_string(i);
        const ItemAttributes attributes = {i % 10 == 3 ? 6 : 0, i % 10 == 7 ? std::optional(0640U) : std::nullopt};
        if (i % 10 < 3) {
            if (_depth == 5 || (_depth > 0 && i % 4 == 0)) {
                _writer.leaveFolder({_folders % 10 == 3 ? 2 : 0, _folders % 10 == 7 ? std::optional(0750U) : std::nullopt});
                --_depth;
            }
            ++_depth;
            ++_folders;
            return _writer.enterFolder(name);
        }
        if ((i / 10 + i) % 2 == 0) {
            return _writer.makeEmptyFile(name, attributes);
        }
        const ContentSource *const content = _files.contentSource(_contents + "/" + std::to_string(i % 10));
        return content != nullptr && _writer.copyItem(name, *content, attributes);
    }

    FileSystem &_files;
    HierarchyWriter &_writer;
    std::string _contents;
    int _depth = 0;
    int _folders = 0;
};

} // namespace

int main(int count, char **arguments) {
    if (count < 4) {
        return 2;
    }
    PosixFileSystem files;
    const auto writer = files.beginHierarchy(arguments[1]);
    if (!writer || !Maker(files, *writer, arguments[2]).make(std::atoi(arguments[3]))) {
        std::perror("hierarchy_driver");
        return 1;
    }
    if (count > 4 && std::strcmp(arguments[4], "remove") == 0) {
        std::fflush(nullptr);
        writer->removeEverythingMade();
    }
    return 0;
}
