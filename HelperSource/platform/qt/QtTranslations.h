#pragma once

#include <string>

class QLocale;

namespace orvane {

/// Has every text looked up in the user's languages from now on: Orvane's own in `translations` of the resource folder, Qt's in Qt's. A
/// language without a translation stays English. To be called once, when the application is loaded and before anything is shown.
void QtInstallTranslations(const std::string &resourceFolder);
/// The same for one language. False when there is no translation for it.
bool QtInstallTranslations(const std::string &resourceFolder, const QLocale &locale);

} // namespace orvane
