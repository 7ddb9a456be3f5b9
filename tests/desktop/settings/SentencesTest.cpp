// What parts without a window say in English is said in the window in the user's language.

#include "SettingsWindowDesk.h"

#include "platform/qt/QtTranslations.h"
#include "window/HotKeyInstructions.h"
#include "window/Sentences.h"

#include <QLocale>
#include <QTranslator>

#include <sys/stat.h>

namespace orvane::test {
namespace {

class Sentences : public SettingsWindowTest {
protected:
    Sentences() { EXPECT_TRUE(QtInstallTranslations(environment("ORVANE_TEST_BUILT_RESOURCES"), QLocale(QLocale::German))); }
    ~Sentences() override {
        crash();
        for (QTranslator *translator : qApp->findChildren<QTranslator *>()) {
            QCoreApplication::removeTranslator(translator);
            delete translator;
        }
    }
    template <class Text> static std::string german(const Text &text) { return translatedSentence(text).toStdString(); }
};

TEST_F(Sentences, WhyAFileCannotBeTakenIsSaidInTheUsersLanguage) {
    start();
    ContentStore &contents = context().contents;
    Sentence problem;
    EXPECT_FALSE(contents.addContent(path("/tmp"), problem));
    EXPECT_EQ(german(problem), "es ist ein Ordner") << problem.english();
    ASSERT_EQ(::mkfifo(path("/fifo").c_str(), 0600), 0);
    EXPECT_FALSE(contents.addScript(path("/fifo"), problem));
    EXPECT_EQ(german(problem), "es ist keine gewöhnliche Datei") << problem.english();
    writeFile(path("/other.plist"), "<plist><dict><key>a</key><string>b</string></dict></plist>");
    EXPECT_FALSE(contents.readPresetFile(path("/other.plist"), problem));
    EXPECT_EQ(german(problem), "es ist keine Vorlagendatei") << problem.english();
    writeFile(path("/text"), "no preset");
    EXPECT_FALSE(contents.readPresetFile(path("/text"), problem));
    EXPECT_EQ(german(problem).substr(0, 8), "Zeile 1:") << problem.english();
    writeFile(path("/empty"), "");
    EXPECT_FALSE(contents.readPresetFile(path("/empty"), problem));
    EXPECT_NE(german(problem).find("die Datei ist leer"), std::string::npos) << problem.english();
}

TEST_F(Sentences, WhatIsMissingInAPresetFileIsSaidWithItsName) {
    writePresets({"One"});
    start();
    context().presets.setContentFilename(std::array{item("c.txt")}, "gone: really.txt");
    Sentence problem;
    std::vector<Sentence> warnings;
    ASSERT_TRUE(context().contents.writePresetFile(context().presets.record(context().presets.presetAt(0)), path("/one.orvpreset"), false,
                                                   warnings, problem));
    ASSERT_EQ(warnings.size(), 1U);
    EXPECT_TRUE(german(warnings.front()).starts_with("die Inhaltsdatei „gone: really.txt“ wird ausgelassen: "))
        << warnings.front().english();
    const auto again = context().contents.readPresetFile(path("/one.orvpreset"), problem);
    ASSERT_TRUE(again) << problem.english();
    ASSERT_EQ(again->warnings.size(), 1U);
    EXPECT_EQ(german(again->warnings.front()), "der Inhalt von „gone: really.txt“ fehlt in der Datei") << again->warnings.front().english();
}

TEST_F(Sentences, WhatIsLeftOutOfAFolderIsSaidWithItsPlaceAndItsKind) {
    std::filesystem::create_directories(path("/in/sub"));
    ASSERT_EQ(::mkfifo(path("/in/sub/pipe").c_str(), 0600), 0);
    start();
    Sentence problem;
    FolderImportRequest request;
    request.folder = path("/in");
    request.withContent = true;
    const auto imported = context().contents.importFolder(request, problem);
    ASSERT_TRUE(imported) << problem.english();
    ASSERT_EQ(imported->warnings.size(), 1U);
    EXPECT_EQ(german(imported->warnings.front()), "in/sub/pipe: ausgelassen: eine FIFO") << imported->warnings.front().english();
}

TEST_F(Sentences, TheStoresProblemsAreSaidInTheUsersLanguage) {
    writeFile(preferencesFile(), "damaged");
    start();
    EXPECT_TRUE(bar("fileBar").text().startsWith(QStringLiteral("Die Einstellungsdatei kann nicht gelesen werden.")))
        << bar("fileBar").text().toStdString();
}

TEST_F(Sentences, HowTheHotKeyStandsIsSaidInTheUsersLanguage) {
    EXPECT_EQ(hotKeyStatement("The hot key works by sway.", QStringLiteral("sway")).toStdString(),
              "Das Tastenkürzel funktioniert über sway.");
    EXPECT_EQ(hotKeyStatement("The hot key ⌃⇧K works.", {}).toStdString(), "Das Tastenkürzel ⌃⇧K funktioniert.");
    const QString weston = QStringLiteral("weston");
    EXPECT_TRUE(
        hotKeyInstructions(weston).startsWith(QStringLiteral("Dieser Desktop gibt Programmen keine eigenen Tastenkürzel. Belegen")));
    EXPECT_EQ(german(std::string("something that nobody knows")), "something that nobody knows");
}

} // namespace
} // namespace orvane::test
