#include "platform/qt/QtTranslations.h"

#include "platform/qt/QtText.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace orvane {

namespace {

/// Takes the first of the user's languages that there is a translation for. English comes without one: whoever wants it rather than
/// another language gets it.
bool isLoaded(QTranslator &translator, const QLocale &locale, const QString &folder) {
    for (QString language : locale.uiLanguages()) {
        language.replace(QLatin1Char('-'), QLatin1Char('_'));
        if (language == QLatin1String("C") || language == QLatin1String("en") || language.startsWith(QLatin1String("en_"))) {
            return false;
        }
        if (translator.load(QStringLiteral("orvane_") + language, folder, QStringLiteral("_"))) {
            return true;
        }
    }
    return false;
}

} // namespace

void QtInstallTranslations(const std::string &resourceFolder) {
    static_cast<void>(QtInstallTranslations(resourceFolder, QLocale()));
}

bool QtInstallTranslations(const std::string &resourceFolder, const QLocale &locale) {
    QCoreApplication *const application = QCoreApplication::instance();
    auto *const own = new QTranslator(application);
    if (!isLoaded(*own, locale, QtTextOf(resourceFolder) + QStringLiteral("/translations"))) {
        delete own;
        return false; // a window whose standard buttons alone were in another language would be stranger than an English one
    }
    auto *const qt = new QTranslator(application);
    if (qt->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(qt);
    }
    QCoreApplication::installTranslator(own);
    return true;
}

} // namespace orvane
