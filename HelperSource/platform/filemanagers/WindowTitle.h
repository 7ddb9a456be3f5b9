#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// How a file manager writes a folder into its windows' titles.
struct TitleRule {
    const char *separator = nullptr;   ///< what stands between the folder and the program's name; none: the folder alone
    bool mayShowFullPath = false;      ///< a setting of the user's puts the whole path where the name is
    bool mayAppendFullPath = false;    ///< a setting of the user's puts " - " and the whole path behind the name
    const char *domain = nullptr;      ///< message catalogue with the names of special folders
    const char *homeMessage = nullptr; ///< what it calls the home folder, in English; none: its name as on disk
    const char *rootMessage = nullptr; ///< what it calls the root, in English; none: "/"
};

/// The part of a title that speaks of the folder, in front of the last separator.
[[nodiscard]] std::string folderPartOfTitle(const TitleRule &rule, std::string_view title);
/// The folder's absolute path, where the title says it in full.
[[nodiscard]] std::optional<std::string> fullPathInTitle(const TitleRule &rule, std::string_view title);
/// Whether a window with this title can show the folder at this absolute path: the last component is what the title says, or
/// the title names that special folder in the user's language.
[[nodiscard]] bool titleAgreesWithPath(const TitleRule &rule, std::string_view title, const std::string &path, const std::string &home);

} // namespace orvane
