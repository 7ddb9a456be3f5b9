#pragma once

#include "ports/SystemLog.h"

#include <string>

namespace orvane {

/// Writes each entry to syslog, under the program's own name, and to the file `log` in a folder of the user.
///
/// Nothing is opened or made before the first entry. The folder is made when missing, for the user alone, as is the file.
/// An entry is one write at the file's end: a time stamp (ISO 8601, local time), a blank, the text and a line feed. So
/// several programs can share the file. A file that would grow beyond 1 MiB is first renamed to `log.1`, replacing the
/// one before. Control characters other than line feed and tab appear as \xNN, so that no entry can drive a terminal.
/// Syslog gets the first 8,000 bytes of a long entry, a size that every common daemon takes. What fails is left out silently.
class PosixSystemLog final : public SystemLog {
public:
    /// Takes a finished text to syslog.
    using Syslog = void (*)(const char *text);

    /// `directory` is an absolute path.
    explicit PosixSystemLog(std::string directory, Syslog syslog = writeToSyslog);

    void log(std::string_view text) override;

    static void writeToSyslog(const char *text);

private:
    void _appendToFile(const std::string &line) const;
    [[nodiscard]] bool _rotate(int descriptor) const;

    std::string _directory;
    std::string _path;
    Syslog _syslog;
};

} // namespace orvane
