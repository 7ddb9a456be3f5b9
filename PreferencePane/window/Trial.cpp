#include "window/Trial.h"

#include "window/ProblemText.h"
#include "window/Sentences.h"

#include "platform/TrialCreation.h"

#include "platform/qt/QtText.h"

#include <QDir>
#include <QFile>

namespace orvane {

std::optional<QString> Trial::tryPreset(ItemID preset, QString &problem) {
    const auto &problems = _context.problems.problemsOfPreset(preset);
    for (const DocumentProblem &each : problems) {
        if (each.problem.neverEnds) {
            problem = textOfProblem(each.problem);
            return std::nullopt;
        }
    }
    auto folder = std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/Orvane-XXXXXX"));
    if (!folder->isValid()) {
        problem = folder->errorString();
        return std::nullopt;
    }
    TrialRequest request;
    request.preset = _context.presets.record(preset);
    request.rows = _context.preview.rowsOfPreset(preset);
    request.supportFolder = _context.paths.supportFolder;
    request.parent = QFile::encodeName(folder->path()).toStdString();
    const TrialCreation made = makeTrialCreation(request);
    if (made.folder.empty()) {
        problem = QtSingleLine(translatedSentence(made.problem));
        return std::nullopt;
    }
    _folders.push_back(std::move(folder));
    static_cast<void>(_context.workspace.openFile(made.folder)); // where nothing opens it, its path is shown
    return QFile::decodeName(made.folder.c_str());
}

} // namespace orvane
