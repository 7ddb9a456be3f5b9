#pragma once

#include <QString>
#include <QStringList>

namespace orvane {

/// Starts a program (looked for in PATH) that then lives on its own, in a session of its own. It gets the null device for all three
/// standard descriptors, nothing else of ours, and the environment without what is meant for this process only: permissions
/// to come to the front, who started us, Qt's switches, our own variables. False when there is no such program.
[[nodiscard]] bool startDetached(const QString &program, const QStringList &arguments);

/// Another program of Orvane's: beside the running one, where both are installed, or in the folder of that name beside the running one's,
/// where a build puts it. Empty when it is in neither place.
[[nodiscard]] QString programOfOurs(const QString &name, const QString &folderInBuild);

} // namespace orvane
