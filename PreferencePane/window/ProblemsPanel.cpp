#include "window/ProblemsPanel.h"

#include "window/Icons.h"
#include "window/Page.h"
#include "window/ProblemText.h"

#include "platform/qt/QtText.h"

#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace orvane {

namespace {

enum Role { ItemRole = Qt::UserRole, KeyRole };

/// More of them help nobody, and would take long to show.
constexpr std::size_t MostListed = 500;

Icon iconOf(ORVProblemSeverity severity) {
    switch (severity) {
    case ORVProblemSeverity::Note:
        return Icon::Note;
    case ORVProblemSeverity::Warning:
        return Icon::Warning;
    case ORVProblemSeverity::Error:
        break;
    }
    return Icon::Error;
}

} // namespace

ProblemsPanel::ProblemsPanel(SettingsContext &context, QWidget *parent)
    : QWidget(parent), _context(context), _ui_summary(new QLabel(this)), _ui_list(new QListWidget(this)) {
    setObjectName(QStringLiteral("problemsPanel"));
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    _ui_list->setObjectName(QStringLiteral("problemList"));
    _ui_list->setAccessibleName(translated("Problems"));
    _ui_list->setUniformItemSizes(true);
    _ui_list->setIconSize(QSize(16, 16));
    _ui_list->setTextElideMode(Qt::ElideRight);
    _ui_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _ui_summary->setObjectName(QStringLiteral("problemSummary"));
    _ui_summary->setBuddy(_ui_list);
    column->addWidget(_ui_summary);
    column->addWidget(_ui_list, 1);
    const auto choose = [this](const QListWidgetItem *row) {
        if (row != nullptr) {
            Q_EMIT problemChosen(static_cast<ItemID>(row->data(ItemRole).toUInt()), row->data(KeyRole).toString());
        }
    };
    connect(_ui_list, &QListWidget::itemClicked, this, choose);
    connect(_ui_list, &QListWidget::itemActivated, this, choose);
}

QString ProblemsPanel::_place(const DocumentProblem &problem) const {
    const PresetDocument &document = _context.presets;
    if (!document.isNode(problem.item)) {
        return {};
    }
    QStringList names;
    for (ItemID item = problem.item; document.isNode(item) && names.size() < 4; item = document.parentOf(item)) {
        const QString name = QtSingleLine(QtTextOf(document.filename(item)));
        names.prepend(name.isEmpty() ? translated("(no name)") : name);
    }
    return names.join(QStringLiteral(" › "));
}

void ProblemsPanel::showPreset(ItemID preset) {
    _ui_list->clear();
    if (preset == NoItem) {
        _ui_summary->clear();
        setVisible(false);
        return;
    }
    _list(preset);
}

void ProblemsPanel::_list(ItemID preset) {
    std::vector<DocumentProblem> problems = _context.problems.problemsOfPreset(preset);
    std::stable_sort(problems.begin(), problems.end(),
                     [](const auto &left, const auto &right) { return left.problem.severity > right.problem.severity; });
    for (std::size_t i = 0; i < std::min(problems.size(), MostListed); ++i) {
        const DocumentProblem &each = problems[i];
        const QString place = _place(each);
        const QString text = textOfProblem(each.problem);
        const QString line = place.isEmpty() ? text : QtIsolated(place) + QStringLiteral(" — ") + text;
        auto *const row = new QListWidgetItem(iconFor(iconOf(each.problem.severity)), line, _ui_list);
        row->setData(ItemRole, static_cast<std::uint32_t>(each.item));
        row->setData(KeyRole, QtTextOf(each.key));
        row->setData(Qt::AccessibleTextRole, titleOfSeverity(each.problem.severity) + QStringLiteral(": ") + line);
        row->setToolTip(line);
    }
    setVisible(!problems.empty());
    _ui_summary->setText(problems.size() == 1 ? translated("1 p&roblem") : translated("%1 p&roblems").arg(problems.size()));
}

} // namespace orvane
