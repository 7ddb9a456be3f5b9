#include "platform/posix/PosixItemFinish.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/PosixFinderAttributes.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace orvane {

namespace {

/// The source's attributes with the label merged into them.
PosixExtendedAttributes withLabel(PosixExtendedAttributes attributes, int label) {
    for (PosixExtendedAttribute &changed : attributesForFinderLabel(attributes, label)) {
        const auto same = std::find_if(attributes.begin(), attributes.end(),
                                       [&](const PosixExtendedAttribute &each) { return each.name == changed.name; });
        if (same != attributes.end()) {
            same->value = std::move(changed.value);
        } else {
            attributes.push_back(std::move(changed));
        }
    }
    return attributes;
}

int writeAttributes(int file, const PosixFileFinish &finish) {
    if (finish.content == nullptr) {
        return finish.label != 0 ? setLabelOfOpenItem(file, finish.label, true) : 0;
    }
    const PosixExtendedAttributes &attributes = finish.content->properties().attributes;
    if (finish.label != 0) {
        return writeFinderAttributes(file, withLabel(attributes, finish.label));
    }
    return attributes.empty() ? 0 : writeFinderAttributes(file, attributes);
}

} // namespace

int finishNewFile(int file, const PosixFileFinish &finish) {
    int error = writeAttributes(file, finish);
    if (const int status = finish.mode ? setModeOfOpenItem(file, *finish.mode) : 0; error == 0) {
        error = status;
    }
    if (finish.content != nullptr && ::futimens(file, finish.content->properties().times.data()) != 0 && error == 0) {
        error = errno;
    }
    return error;
}

int setLabelOfOpenItem(int item, int label, bool isNew) {
    int error = 0;
    const PosixExtendedAttributes existing = isNew ? PosixExtendedAttributes() : readFinderAttributes(item, error);
    return error != 0 ? error : writeFinderAttributes(item, attributesForFinderLabel(existing, label));
}

int setModeOfOpenItem(int item, unsigned mode) {
    if (::fchmod(item, mode & 07777U) == 0) {
        return 0;
    }
    // A descriptor that is a mere path (O_PATH) takes no fchmod, but its entry in /proc does take chmod.
    const bool isSet = errno == EBADF && ::chmod(("/proc/self/fd/" + std::to_string(item)).c_str(), mode & 07777U) == 0;
    return isSet ? 0 : errno;
}

int openFolderToOwner(int parent, const char *path) {
    const FileDescriptor folder(::openat(parent, path, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    return folder ? setModeOfOpenItem(folder.get(), S_IRWXU) : errno;
}

} // namespace orvane
