#include "window/ProblemText.h"

#include "window/Page.h"

#include "platform/qt/QtText.h"
#include "ports/Sentence.h"

namespace orvane {

namespace {

/// The first letter large: problems read as sentences here, and as parts of lines elsewhere.
QString sentence(const char *format, const std::vector<std::string> &arguments) {
    QString text = QtSingleLine(QtTextOf(textWithArguments(QtUtf8Of(translated(format)), arguments)));
    if (!text.isEmpty()) {
        text[0] = text[0].toUpper();
    }
    return text;
}

} // namespace

QString textOfProblem(const ORVPresetProblem &problem) {
    return sentence(problem.format, problem.arguments);
}

QString textOfProblem(const ORVNameProblem &problem) {
    return sentence(problem.format, problem.arguments);
}

QString titleOfSeverity(ORVProblemSeverity severity) {
    switch (severity) {
    case ORVProblemSeverity::Note:
        return translated("Note");
    case ORVProblemSeverity::Warning:
        return translated("Warning");
    case ORVProblemSeverity::Error:
        break;
    }
    return translated("Error");
}

} // namespace orvane
