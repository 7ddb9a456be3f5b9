#include "Command.h"
#include "CommandSupport.h"
#include "Options.h"
#include "PresetStorage.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/propertylist/PropertyListFiles.h"
#include "presets/ORVFileHelpers.h"
#include "presets/ORVPresetFile.h"
#include "presets/ORVPresetManager.h"
#include "presets/ORVPropertyListReading.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane {

namespace {

constexpr const char *Title = "Preset not exported";
constexpr std::array<OptionRule, 1> Rules = {{{"force", false}}};
/// A larger file is no text of a template any more; the whole preset file is made in memory.
constexpr off_t LargestContent = off_t{1} << 30;

/// A resource as it was read.
struct ReadFile {
    std::string bytes;
    mode_t mode = 0;
};

/// Reads a regular file whole, links followed; nothing, with the reason in `why`, for anything else.
std::optional<ReadFile> readResource(const std::string &path, std::string &why) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0) {
        why = std::strerror(errno);
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode) || status.st_size > LargestContent) {
        why = S_ISDIR(status.st_mode) ? "it is a folder" : S_ISREG(status.st_mode) ? "it is larger than 1 GiB" : "it is no ordinary file";
        return std::nullopt;
    }
    ReadFile result{std::string(static_cast<std::size_t>(status.st_size), '\0'), status.st_mode & 0777U};
    std::size_t done = 0;
    while (done < result.bytes.size()) {
        const ssize_t count = uninterrupted([&] { return ::read(file.get(), &result.bytes[done], result.bytes.size() - done); });
        if (count < 0) {
            why = std::strerror(errno);
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    result.bytes.resize(done);
    return result;
}

/// Gathers a preset's parts. What is missing is warned of and left out.
class PartsReader {
public:
    explicit PartsReader(std::string supportPath) : _supportPath(std::move(supportPath)) {}

    [[nodiscard]] ORVPackedPreset read(const PropertyList &preset) {
        ORVPackedPreset parts{preset, {}, std::nullopt};
        for (std::string &name : ORVContentNamesOfPreset(preset.root())) {
            if (const ReadFile *file = _read(ORVFileContentFolder, name, "the content file")) {
                parts.contents.push_back({std::move(name), file->bytes, file->mode});
            }
        }
        std::string script = ORVTextValue(preset.root().find("scriptFile"));
        if (!script.empty()) {
            if (const ReadFile *file = _read(ORVScriptsFolder, script, "the script")) {
                parts.script = ORVPackedScript{std::move(script), file->bytes};
            }
        }
        return parts;
    }

private:
    const ReadFile *_read(std::string_view folder, const std::string &name, const char *what) {
        std::string why;
        auto file = readResource(stringByAppendingPathComponent(stringByAppendingPathComponent(_supportPath, folder), name), why);
        if (!file) {
            warn(std::string(what) + " '" + name + "' is left out: " + why);
            return nullptr;
        }
        return &_files.emplace_back(std::move(*file));
    }

    std::string _supportPath;
    std::deque<ReadFile> _files; ///< what the parts borrow
};

/// Where a path leads in the end: the target of a link that exists, else the path.
std::string endOfLinks(const std::string &path) {
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? real.get() : path;
}

/// Writes a new file beside its final name and gives it that name when it is whole. False with `errno`.
bool writeNewFile(const std::string &path, std::string_view bytes, bool replaces) {
    const std::string target = replaces ? endOfLinks(path) : path;
    const std::string hidden = target.substr(0, target.rfind('/') + 1) + ".orvane-" + std::to_string(::getpid()) + ".part";
    FileDescriptor file(::open(hidden.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
    if (!file) {
        return false;
    }
    const bool written = writeWhole(file.get(), bytes) && ::fsync(file.get()) == 0 && file.closeChecked();
    if (written && replaces && ::rename(hidden.c_str(), target.c_str()) == 0) {
        return true;
    }
    // Only a link is refused for a name that is taken on every file system with links; renaming does it for the others.
    const bool made = written && !replaces &&
                      (::renameat2(AT_FDCWD, hidden.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0 ||
                       (errno == EINVAL && ::link(hidden.c_str(), target.c_str()) == 0 && ::unlink(hidden.c_str()) == 0));
    if (!made) {
        const int error = errno;
        ::unlink(hidden.c_str());
        errno = error;
    }
    return made;
}

ExitStatus writePresetFile(const std::string &path, const std::string &bytes, bool replaces) {
    if (path == "-") {
        return writeStandardOutput(bytes);
    }
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        return failure(Title, printable(path) + ": it is not an ordinary file.");
    }
    if (writeNewFile(path, bytes, replaces)) {
        return ExitStatus::Success;
    }
    return failure(Title, printable(path) + ": " + (errno == EEXIST ? "it exists; give --force to replace it." : std::strerror(errno)));
}

} // namespace

const char ExportCommandHelp[] = "Usage: orvane export PRESET FILE [--force]\n"
                                 "\n"
                                 "Writes a preset (an index or a label) with its contents and its script to one file, from\n"
                                 "which 'orvane add' takes it, on this computer or another. FILE \"-\" is standard output; a\n"
                                 "good ending is \".orvpreset\". Contents that are missing are left out with a warning.\n"
                                 "\n"
                                 "  --force  replace FILE when it exists\n"
                                 "\n"
                                 "Exit status: 0 exported, 1 not exported, 2 wrong usage.\n";

ExitStatus runExportCommand(CommandContext &context, const CommandArguments &arguments) {
    const ParsedOptions words = parseOptions(arguments, Rules);
    if (!words.error.empty() || words.operands.size() != 2) {
        return usageError("export", !words.error.empty() ? words.error : "a preset and a file are needed");
    }
    const auto presets = readPresets(context);
    if (!presets) {
        return ExitStatus::NotMade;
    }
    const auto index = presetNamed(words.operands.front(), *presets);
    if (!index) {
        return ExitStatus::Usage;
    }
    const PropertyList preset = presets->at(presets->root().array()[*index]);
    if (!preset.root().isDictionary()) {
        return failure(Title, "the preset is no dictionary.");
    }
    if (refusesNeverEnding(preset.root(), Refusal::Size)) {
        return ExitStatus::NotMade;
    }
    PartsReader reader(ORVApplicationSupportPath(context.folders));
    const ORVPackedPreset parts = reader.read(preset);
    std::string why;
    const auto bytes = writeXMLPropertyList(ORVPackPreset(parts).root(), &why);
    if (!bytes) {
        return failure(Title, printable(why));
    }
    return writePresetFile(words.operands.back(), *bytes, words.has("force"));
}

} // namespace orvane
