#include "PropertyListFile.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/propertylist/PropertyListFiles.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace orvane {

std::optional<PropertyList> readPropertyListFile(const std::string &path, Sentence &why) {
    const FileDescriptor file(uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC); }));
    if (!file) {
        why = Sentence::ofError(errno);
        return std::nullopt;
    }
    return readPropertyListFile(file.get(), why);
}

std::optional<PropertyList> readPropertyListFile(int file, Sentence &why) {
    struct stat status {};
    if (::fstat(file, &status) == 0 && S_ISDIR(status.st_mode)) {
        why = forTranslation("it is a folder");
        return std::nullopt;
    }
    PropertyListReport report;
    auto document = readPropertyList(file, &report);
    if (!document) {
        why = Sentence::ofComposed(std::move(report.why));
    }
    return document;
}

} // namespace orvane
