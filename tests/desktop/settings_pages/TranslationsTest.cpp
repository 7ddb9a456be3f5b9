// The translations as the programs load them.

#include "desktop/qt/QtTestSupport.h"

#include "platform/qt/QtTranslations.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLocale>
#include <QTemporaryDir>
#include <QTranslator>

namespace orvane::test {
namespace {

class Translations : public testing::Test {
protected:
    ~Translations() override {
        for (QTranslator *translator : qApp->findChildren<QTranslator *>()) {
            QCoreApplication::removeTranslator(translator);
            delete translator;
        }
    }
    static bool install(const char *language) {
        return QtInstallTranslations(environment("ORVANE_TEST_BUILT_RESOURCES"), QLocale(QString::fromLatin1(language)));
    }
    static std::string text(const char *source) { return QCoreApplication::translate("Orvane", source).toStdString(); }
};

TEST_F(Translations, German) {
    EXPECT_TRUE(install("de_AT"));
    EXPECT_EQ(text("No counters yet"), "Noch keine Zähler");
    EXPECT_EQ(text("Quit Orvane"), "Orvane beenden");
    EXPECT_EQ(text("Delete Preset"), "Vorlage löschen");
    EXPECT_EQ(text("the label is empty"), "die Bezeichnung ist leer");
}

TEST_F(Translations, French) {
    EXPECT_TRUE(install("fr_CA"));
    EXPECT_EQ(text("No counters yet"), "Aucun compteur pour l’instant");
    EXPECT_EQ(text("&Open Log"), "&Ouvrir le journal");
}

TEST_F(Translations, EnglishComesWithoutOne) {
    EXPECT_FALSE(install("en_GB"));
    EXPECT_EQ(text("No counters yet"), "No counters yet");
}

TEST_F(Translations, ALanguageWithoutATranslationStaysEnglish) {
    EXPECT_FALSE(install("fi_FI"));
    EXPECT_EQ(text("No counters yet"), "No counters yet");
}

TEST_F(Translations, AFolderWithoutThemIsNoFailure) {
    const QTemporaryDir empty;
    EXPECT_FALSE(QtInstallTranslations(empty.path().toStdString(), QLocale(QLocale::German)));
    EXPECT_EQ(text("No counters yet"), "No counters yet");
}

} // namespace
} // namespace orvane::test
