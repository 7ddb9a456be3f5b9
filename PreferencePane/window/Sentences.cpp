#include "window/Sentences.h"

#include "window/Page.h"

#include "platform/qt/QtText.h"

#include <QRegularExpression>

#include <array>
#include <vector>

// The helper and the readers of property lists put their reasons together in English, where no translation can be looked up. Here they
// are taken apart again. A sentence comes before those that fit it as well.

namespace orvane {

namespace {

constexpr std::array Sentences{
    // Property lists.
    QT_TRANSLATE_NOOP("Orvane", "reading failed: %1"),
    QT_TRANSLATE_NOOP("Orvane", "line %1: %2"),
    QT_TRANSLATE_NOOP("Orvane", "the file is empty"),
    QT_TRANSLATE_NOOP("Orvane", "this is no property list"),
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

class UsersLanguage final : public SentenceLanguage {
public:
    [[nodiscard]] std::string text(const char *english) override { return QtUtf8Of(translated(english)); }
    [[nodiscard]] std::string error(int error) override { return QtUtf8Of(qt_error_string(error)); }
    [[nodiscard]] std::string composed(const std::string &english) override { return QtUtf8Of(translatedSentence(english)); }
};

} // namespace

QString translatedSentence(const Sentence &sentence) {
    UsersLanguage language;
    return QtTextOf(sentence.in(language));
}

QString translatedSentence(const std::string &english) {
    return translatedParts(QtTextOf(english), 0);
}

} // namespace orvane
