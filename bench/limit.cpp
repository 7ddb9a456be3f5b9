// The speed limit: makes a hierarchy with bare system calls and nothing else, on one thread, from a plan in which every
// name is resolved already. Its time is what any program pays that makes the same items; everything that a
// program needs beyond it (its start, reading a preset, asking, substituting) shows as a ratio above 1.
//
// The calls are the plain ones: mkdirat and openat for a folder, openat and close for a file, pread and write from a
// source that stays open for each copy, fsetxattr for a label, fchmod where a node has a mode. Paths are never resolved
// twice, every item is reached through the descriptor of its folder.
//
// Plan, one record a line, fields separated by tabs:
//   c PATH                        a content file; the first is number 0
//   d MODE LABEL NAME             make a folder and enter it (MODE in octal or "-", LABEL 0 to 7)
//   u                             label, mode, and back to the parent
//   f MODE LABEL CONTENT NAME     make a file (CONTENT a number or "-" for an empty file)

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t CopyBlock = 64 * 1024;
constexpr const char *LabelAttribute = "user.com.apple.FinderInfo";

enum class CopyWay { ReadWrite, Sendfile, Clone };

struct Content {
    int descriptor;
    off_t size;
};

struct Folder {
    int descriptor;
    int mode; ///< -1 for none
    int label;
};

[[noreturn]] void fail(const char *what, const char *name) {
    std::fprintf(stderr, "limit: %s %s: %s\n", what, name, std::strerror(errno));
    std::exit(1);
}

double seconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Walks over the plan's text; a field ends at a tab or at the end of its line, where a NUL is put.
class PlanReader {
public:
    explicit PlanReader(char *text) : _next(text) {}
    [[nodiscard]] bool atEnd() const { return *_next == '\0'; }
    char *field() {
        char *start = _next;
        while (*_next != '\t' && *_next != '\n') {
            ++_next;
        }
        *_next++ = '\0';
        return start;
    }

private:
    char *_next;
};

int modeOf(const char *field) {
    return *field == '-' ? -1 : static_cast<int>(std::strtol(field, nullptr, 8));
}

class Player {
public:
    Player(int base, CopyWay way) : _way(way) { _folders.push_back({base, -1, 0}); }

    void play(PlanReader plan) {
        while (!plan.atEnd()) {
            switch (*plan.field()) {
            case 'c':
                _openContent(plan.field());
                break;
            case 'd':
                _enterFolder(plan);
                break;
            case 'u':
                _leaveFolder();
                break;
            case 'f':
                _makeFile(plan);
                break;
            default:
                errno = EINVAL;
                fail("plan", "unknown record");
            }
        }
    }

private:
    void _openContent(const char *path) {
        const int descriptor = open(path, O_RDONLY | O_CLOEXEC);
        struct stat status {};
        if (descriptor < 0 || fstat(descriptor, &status) != 0) {
            fail("content", path);
        }
        _contents.push_back({descriptor, status.st_size});
    }

    void _enterFolder(PlanReader &plan) {
        const int mode = modeOf(plan.field());
        const int label = std::atoi(plan.field());
        const char *name = plan.field();
        const int parent = _folders.back().descriptor;
        if (mkdirat(parent, name, 0777) != 0) {
            fail("mkdirat", name);
        }
        const int descriptor = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (descriptor < 0) {
            fail("openat", name);
        }
        _folders.push_back({descriptor, mode, label});
    }

    void _leaveFolder() {
        const Folder folder = _folders.back();
        _folders.pop_back();
        _finish(folder.descriptor, folder.mode, folder.label);
    }

    void _makeFile(PlanReader &plan) {
        const int mode = modeOf(plan.field());
        const int label = std::atoi(plan.field());
        const char *content = plan.field();
        const char *name = plan.field();
        const int descriptor = openat(_folders.back().descriptor, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
        if (descriptor < 0) {
            fail("openat", name);
        }
        if (*content != '-') {
            _copy(_contents.at(static_cast<std::size_t>(std::atoi(content))), descriptor, name);
        }
        _finish(descriptor, mode, label);
    }

    void _finish(int descriptor, int mode, int label) {
        if (label != 0) {
            std::array<char, 32> information{};
            information[9] = static_cast<char>(label << 1);
            if (fsetxattr(descriptor, LabelAttribute, information.data(), information.size(), 0) != 0) {
                fail("fsetxattr", LabelAttribute);
            }
        }
        if (mode >= 0 && fchmod(descriptor, static_cast<mode_t>(mode)) != 0) {
            fail("fchmod", "");
        }
        close(descriptor);
    }

    void _copy(const Content &content, int target, const char *name) {
        if (_way == CopyWay::Clone) {
            if (ioctl(target, FICLONE, content.descriptor) != 0) {
                fail("FICLONE", name);
            }
            return;
        }
        off_t offset = 0;
        while (offset < content.size) {
            const ssize_t done = _way == CopyWay::Sendfile ? _sendBlock(content, target, offset) : _copyBlock(content, target, offset);
            if (done <= 0) {
                fail("copy", name);
            }
            offset += done;
        }
    }

    static ssize_t _sendBlock(const Content &content, int target, off_t offset) {
        return sendfile(target, content.descriptor, &offset, static_cast<std::size_t>(content.size - offset));
    }

    ssize_t _copyBlock(const Content &content, int target, off_t offset) {
        const ssize_t got = pread(content.descriptor, _block.data(), _block.size(), offset);
        return got <= 0 ? got : write(target, _block.data(), static_cast<std::size_t>(got));
    }

    CopyWay _way;
    std::vector<Content> _contents;
    std::vector<Folder> _folders;
    std::array<char, CopyBlock> _block;
};

/// Removes everything in a folder through descriptors; the kinds come from the folder itself, so nothing is asked twice.
void removeContents(int folder) {
    DIR *stream = fdopendir(folder);
    if (stream == nullptr) {
        fail("fdopendir", "");
    }
    while (const dirent *entry = readdir(stream)) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        if (entry->d_type == DT_DIR) {
            removeContents(openat(dirfd(stream), entry->d_name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        }
        if (unlinkat(dirfd(stream), entry->d_name, entry->d_type == DT_DIR ? AT_REMOVEDIR : 0) != 0) {
            fail("unlinkat", entry->d_name);
        }
    }
    closedir(stream);
}

char *textOfFile(const char *path) {
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC);
    struct stat status {};
    if (descriptor < 0 || fstat(descriptor, &status) != 0) {
        fail("plan", path);
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    // One byte more than the file: the end mark. Private, because fields are cut in place.
    char *text = static_cast<char *>(mmap(nullptr, size + 1, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    std::size_t filled = 0;
    while (filled < size) {
        const ssize_t got = read(descriptor, text + filled, size - filled);
        if (got <= 0) {
            fail("plan", path);
        }
        filled += static_cast<std::size_t>(got);
    }
    close(descriptor);
    return text;
}

} // namespace

int main(int argc, char **argv) {
    CopyWay way = CopyWay::ReadWrite;
    bool undo = false;
    std::vector<const char *> operands;
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (word == "--sendfile") {
            way = CopyWay::Sendfile;
        } else if (word == "--clone") {
            way = CopyWay::Clone;
        } else if (word == "--undo") {
            undo = true;
        } else {
            operands.push_back(argv[i]);
        }
    }
    if (operands.size() != 2) {
        std::fputs("usage: limit [--sendfile | --clone] [--undo] PLAN BASE\n", stderr);
        return 2;
    }
    char *plan = textOfFile(operands[0]);
    const int base = open(operands[1], O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (base < 0) {
        fail("base", operands[1]);
    }
    const double started = seconds();
    Player(base, way).play(PlanReader(plan));
    if (undo) {
        const double made = seconds();
        removeContents(base);
        std::printf("%.6f %.6f\n", made - started, seconds() - made);
    }
    return 0;
}
