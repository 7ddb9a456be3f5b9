#pragma once

#include "ResourceFolder.h"

#include "ports/PropertyList.h"
#include "ports/Sentence.h"
#include "presets/ORVPresetFile.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include <sys/types.h>

// A preset with its content files and its script, out of the support folder and into it.

namespace orvane {

/// The first text or key of a value, at any depth, that does not hold; nothing when all do. It borrows from the value.
[[nodiscard]] std::optional<std::string_view> firstTextThatDoesNot(const std::function<bool(std::string_view)> &hold,
                                                                   const PropertyListValue &root);

/// A preset file with these parts: as XML, or in the binary form where XML cannot hold one of the texts. Nothing, with the reason in
/// `why`, for what neither can hold.
[[nodiscard]] std::optional<std::string> bytesOfPresetFile(const ORVPackedPreset &parts, Sentence &why);

/// Told of what is left out or missing, one line each.
using PackingWarning = std::function<void(const Sentence &text)>;

/// Gathers a preset's parts from the support folder. What is missing is warned of and left out.
class PresetPartsReader {
public:
    PresetPartsReader(std::string supportPath, PackingWarning warn) : _supportPath(std::move(supportPath)), _warn(std::move(warn)) {}
    PresetPartsReader(const PresetPartsReader &) = delete;
    PresetPartsReader &operator=(const PresetPartsReader &) = delete;

    /// The parts borrow from this object.
    [[nodiscard]] ORVPackedPreset read(const PropertyList &preset);

private:
    /// A resource as it was read.
    struct File {
        std::string bytes;
        mode_t mode = 0;
    };
    [[nodiscard]] static std::optional<File> _readResource(const std::string &path, Sentence &why);
    [[nodiscard]] const File *_read(std::string_view folder, const std::string &name, FixedText warning);

    std::string _supportPath;
    PackingWarning _warn;
    std::deque<File> _files; ///< what the parts borrow
};

/// Puts the resources of one preset file where presets look for them. What was put there goes again when the object is destroyed
/// before `keep()`.
class PresetAddition {
public:
    /// `parts` is borrowed. `shouldStop`, which may be empty, is asked as by `ResourceFolder`.
    PresetAddition(const ORVPackedPreset &parts, const std::string &supportPath, PackingWarning warn,
                   const std::function<bool()> &shouldStop = {});
    PresetAddition(const PresetAddition &) = delete;
    PresetAddition &operator=(const PresetAddition &) = delete;

    /// False, with the reason in `problem`, when one cannot be stored.
    [[nodiscard]] bool storeResources(Sentence &problem);
    /// The preset with the names that its resources have got.
    [[nodiscard]] PropertyList preset() const { return ORVPresetWithResources(_parts.preset, _names); }
    /// Name of the script that was stored; nothing when there was none.
    [[nodiscard]] const std::optional<std::string> &script() const { return _script; }
    /// As with `ResourceFolder`; why flushing fails comes into `problem`.
    [[nodiscard]] bool flush(Sentence &problem);
    void keep();

private:
    [[nodiscard]] bool _storeContent(const ORVPackedContent &content, Sentence &problem);
    void _keepContentName(const std::string &name);
    [[nodiscard]] bool _storeScript(Sentence &problem);

    const ORVPackedPreset &_parts;
    std::string _supportPath;
    PackingWarning _warn;
    ResourceFolder _contents;
    ResourceFolder _scripts;
    ORVRenamedResources _names;
    std::optional<std::string> _script;
};

} // namespace orvane
