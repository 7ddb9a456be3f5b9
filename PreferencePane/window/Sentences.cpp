#include "window/Sentences.h"

#include "window/Page.h"

#include "platform/qt/QtText.h"

#include <QRegularExpression>
#include <QStringList>

#include <array>
#include <vector>

// The command line says these sentences too, and looks them up in catalogues of its own; here they come put together, in English.
// Here they are taken apart again. A sentence comes before those that fit it as well.

namespace orvane {

namespace {

constexpr std::array Sentences{
    // Files that are added and exported.
    QT_TRANSLATE_NOOP("Orvane", "it is a folder"),
    QT_TRANSLATE_NOOP("Orvane", "it is no ordinary file"),
    QT_TRANSLATE_NOOP("Orvane", "it is not an ordinary file"),
    QT_TRANSLATE_NOOP("Orvane", "it is larger than 1 GiB"),
    QT_TRANSLATE_NOOP("Orvane", "its name cannot be used"),
    QT_TRANSLATE_NOOP("Orvane", "it is not a preset file"),
    QT_TRANSLATE_NOOP("Orvane", "it was made by a later version of Orvane"),
    QT_TRANSLATE_NOOP("Orvane", "its version is not known"),
    QT_TRANSLATE_NOOP("Orvane", "the preset is no dictionary"),
    QT_TRANSLATE_NOOP("Orvane", "the preset in it is no dictionary"),
    QT_TRANSLATE_NOOP("Orvane", "its ORVFileContents is no dictionary"),
    QT_TRANSLATE_NOOP("Orvane", "the content file '%1' in it has no data, or a mode that is none"),
    QT_TRANSLATE_NOOP("Orvane", "the script in it has no name or no data"),
    QT_TRANSLATE_NOOP("Orvane", "the content file '%1' cannot be stored: %2"),
    QT_TRANSLATE_NOOP("Orvane", "the content file '%1' is not used by the preset: left out"),
    QT_TRANSLATE_NOOP("Orvane", "the content file '%1' is left out: %2"),
    QT_TRANSLATE_NOOP("Orvane", "the contents of '%1' are not in the file"),
    QT_TRANSLATE_NOOP("Orvane", "the contents of %1 cannot be stored: %2"),
    QT_TRANSLATE_NOOP("Orvane", "the script '%1' is not the preset's: left out"),
    QT_TRANSLATE_NOOP("Orvane", "the script '%1' is not in the file"),
    QT_TRANSLATE_NOOP("Orvane", "the script '%1' is left out: %2"),
    QT_TRANSLATE_NOOP("Orvane", "the script '%1' cannot be stored: %2"),
    // Folders that are imported.
    QT_TRANSLATE_NOOP("Orvane", "it holds more than 1,000,000 items"),
    QT_TRANSLATE_NOOP("Orvane", "it was changed while it was read"),
    QT_TRANSLATE_NOOP("Orvane", "%1: left out: its name is not UTF-8"),
    QT_TRANSLATE_NOOP("Orvane", "%1: left out: %2"),
    QT_TRANSLATE_NOOP("Orvane", "%1: its contents are left out: %2"),
    QT_TRANSLATE_NOOP("Orvane", "a symbolic link"),
    QT_TRANSLATE_NOOP("Orvane", "a FIFO"),
    QT_TRANSLATE_NOOP("Orvane", "a socket"),
    QT_TRANSLATE_NOOP("Orvane", "a device"),
    QT_TRANSLATE_NOOP("Orvane", "reading failed: %1"),
    QT_TRANSLATE_NOOP("Orvane", "line %1: %2"),
    QT_TRANSLATE_NOOP("Orvane", "the file is empty"),
    QT_TRANSLATE_NOOP("Orvane", "this is no property list"),
    QT_TRANSLATE_NOOP("Orvane", "The folder for contents and scripts cannot be made."),
    // The preferences.
    QT_TRANSLATE_NOOP("Orvane", "The preferences file cannot be read. It is left as it is."),
    QT_TRANSLATE_NOOP("Orvane", "The preferences hold something else than a list of presets. It is left as it is."),
    QT_TRANSLATE_NOOP("Orvane", "The preferences cannot be written."),
    QT_TRANSLATE_NOOP("Orvane", "The preferences cannot hold the text '%1'."),
    // How the hot key stands.
    QT_TRANSLATE_NOOP("Orvane", "The hot key works by %1 (%2)."),
    QT_TRANSLATE_NOOP("Orvane", "The hot key works by %1."),
    QT_TRANSLATE_NOOP("Orvane", "The hot key is asked of %1, which has yet to answer."),
    QT_TRANSLATE_NOOP("Orvane", "The hot key does not work: by %1, another program has that combination."),
    QT_TRANSLATE_NOOP("Orvane", "The hot key does not work: %1 knows no such key."),
    QT_TRANSLATE_NOOP("Orvane", "%1 gives no hot key (%2)."),
    QT_TRANSLATE_NOOP("Orvane", "%1 gives no hot key."),
    QT_TRANSLATE_NOOP("Orvane", "the desktop portal"),
    QT_TRANSLATE_NOOP("Orvane", "The hot key %1 works."),
    QT_TRANSLATE_NOOP("Orvane", "The hot key %1 does not work: another program has it. "
                                "Choose another one, or bind a key to the command 'orvane menu'."),
    QT_TRANSLATE_NOOP("Orvane", "The hot key %1 does not work: this keyboard has no such key or modifier. "
                                "Choose another one, or bind a key to the command 'orvane menu'."),
    QT_TRANSLATE_NOOP("Orvane", "The hot key %1 does not work (status %2). "
                                "Choose another one, or bind a key to the command 'orvane menu'."),
};

/// Names and reasons inside of sentences that hold another one; deeper ones are names.
constexpr int Deepest = 3;

QRegularExpression patternOf(const char *sentence) {
    QString pattern = QRegularExpression::escape(QString::fromUtf8(sentence));
    for (int number = 1; number <= 2; ++number) {
        pattern.replace(QStringLiteral("\\%%1").arg(number), QStringLiteral("(.+)"));
    }
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern), QRegularExpression::DotMatchesEverythingOption);
}

const std::vector<QRegularExpression> &patterns() {
    static const std::vector<QRegularExpression> all = [] {
        std::vector<QRegularExpression> made;
        made.reserve(std::size(Sentences));
        for (const char *sentence : Sentences) {
            made.push_back(patternOf(sentence));
        }
        return made;
    }();
    return all;
}

QString translatedParts(const QString &english, int depth) {
    for (std::size_t i = 0; i < Sentences.size() && depth < Deepest; ++i) {
        const QRegularExpressionMatch match = patterns()[i].match(english);
        if (!match.hasMatch()) {
            continue;
        }
        QString text = translated(Sentences.at(i));
        const QString first = match.captured(1);
        const QString second = match.captured(2);
        if (!second.isEmpty()) {
            return text.arg(translatedParts(first, depth + 1), translatedParts(second, depth + 1));
        }
        return first.isEmpty() ? text : text.arg(translatedParts(first, depth + 1));
    }
    return english;
}

} // namespace

QString translatedSentence(const std::string &english) {
    return translatedParts(QtTextOf(english), 0);
}

} // namespace orvane
