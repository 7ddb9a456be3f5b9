#pragma once

#include "ContentStore.h"

#include "ports/FinderInformation.h"

#include <string>

namespace orvane {

/// The support folder on disk.
class PosixSupportFolder final : public ContentStore {
public:
    /// `supportPath` is the support folder; it is made when something is stored. The port is borrowed.
    PosixSupportFolder(std::string supportPath, FinderInformation &finderInformation);

    [[nodiscard]] std::optional<std::string> addContent(const std::string &path, Sentence &problem) override;
    [[nodiscard]] std::optional<std::string> addScript(const std::string &path, Sentence &problem) override;
    [[nodiscard]] std::optional<IncomingPreset> importFolder(const FolderImportRequest &request, Sentence &problem) override;
    [[nodiscard]] std::optional<IncomingPreset> readPresetFile(const std::string &path, Sentence &problem) override;
    [[nodiscard]] bool writePresetFile(const PropertyList &preset, const std::string &path, bool replaces, std::vector<Sentence> &warnings,
                                       Sentence &problem) override;
    [[nodiscard]] std::string pathOfContent(std::string_view name) const override;
    [[nodiscard]] std::string pathOfScript(std::string_view name) const override;

private:
    [[nodiscard]] std::optional<std::string> _add(const std::string &folder, const std::string &path, bool isScript, Sentence &problem);

    std::string _supportPath;
    FinderInformation &_finderInformation;
};

} // namespace orvane
