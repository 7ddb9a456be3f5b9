#pragma once

#include "RecoveryFile.h"

#include <string>

namespace orvane {

/// A file of mode 0600 that is replaced as a whole. Its folder is made when it is first written.
class PosixRecoveryFile final : public RecoveryFile {
public:
    explicit PosixRecoveryFile(std::string path) : _path(std::move(path)) {}
    /// Only a regular file of the user's own is read, never through a symbolic link.
    [[nodiscard]] std::optional<std::string> read() override;
    bool write(std::string_view bytes) override;
    void remove() override;

private:
    std::string _path;
};

} // namespace orvane
