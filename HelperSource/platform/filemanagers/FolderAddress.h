#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// Takes the slashes off the end of a path, all but the root's own.
[[nodiscard]] std::string withoutTrailingSlashes(std::string_view path);
/// The last component of an absolute path; empty for the root.
[[nodiscard]] std::string lastComponent(std::string_view path);
/// Whether a path leads to a folder now. Symbolic links are followed; no right to look inside is needed. May take as long as
/// the file system does.
[[nodiscard]] bool isFolder(const std::string &path);

/// The absolute path that a location stands for: a path itself, a `file` URI with strict percent encoding (no host, or
/// "localhost"), or an `sftp` URI, which gives the place where the GNOME virtual file system shows it below `runtimeFolder`.
/// Bytes are kept, UTF-8 or not. Nothing for every other location and for what is not well formed.
[[nodiscard]] std::optional<std::string> pathOfLocation(std::string_view location, const std::string &runtimeFolder);
/// The absolute path of a `file` URL in the form that KDE writes for people, where blanks and characters outside ASCII stand
/// for themselves and only `%`, `#` and `?` are encoded. Nothing for every other URL.
[[nodiscard]] std::optional<std::string> pathOfReadableURL(std::string_view url);
/// The `file` URL of an absolute path in that form. KDE's programs compare URLs as they are written, so that an ampersand that is
/// encoded would be another one.
[[nodiscard]] std::string readableURL(const std::string &path);

} // namespace orvane
