#include "platform/qt/QtPromptWindow.h"

#include "platform/qt/QtText.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <vector>

#include <QAbstractEventDispatcher>
#include <QAccessible>
#include <QCloseEvent>
#include <QCursor>
#include <QDialogButtonBox>
#include <QEventLoop>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QStyle>

namespace orvane {

namespace {

using namespace std::chrono_literals;

/// While the user types, the disk is asked at most once in this time.
constexpr auto PauseBeforeCheck = 120ms;

// Values are marked with characters that no text holds (Unicode's noncharacters), to find them again in the name.
constexpr char16_t ValueBegins = u'\uFDD0';
constexpr char16_t EditedValueBegins = u'\uFDD1';
constexpr char16_t ValueEnds = u'\uFDD2';

constexpr std::array Problems = {PromptProblem::BlankName, PromptProblem::AlreadyExists, PromptProblem::NameTooLong,
                                 PromptProblem::ImpossibleName};

/// Takes the marks out of a name and tells where they stood. Values inside values count as one.
QString withoutMarks(const QString &marked, QList<QtNamePart> &parts) {
    QString name;
    int depth = 0;
    for (const QChar character : marked) {
        if (character == ValueBegins || character == EditedValueBegins) {
            if (depth++ == 0) {
                parts.append({name.size(), 0, false});
            }
            parts.back().isEdited = parts.back().isEdited || character == EditedValueBegins;
        } else if (character == ValueEnds && depth > 0) {
            if (--depth == 0) {
                parts.back().length = name.size() - parts.back().start;
                if (parts.back().length == 0) { // an empty value shows nothing that could be highlighted
                    parts.removeLast();
                }
            }
        } else {
            name += character;
        }
    }
    return name;
}

QString textOf(PromptProblem problem) {
    switch (problem) {
    case PromptProblem::None:
        return {};
    case PromptProblem::BlankName:
        return QCoreApplication::translate("Orvane", "The folder’s name is blank.");
    case PromptProblem::AlreadyExists:
        return QCoreApplication::translate("Orvane", "An item of this name already exists.");
    case PromptProblem::NameTooLong:
        return QCoreApplication::translate("Orvane", "The folder’s name is too long.");
    case PromptProblem::ImpossibleName:
        return QCoreApplication::translate("Orvane", "A folder cannot have this name.");
    }
    return {};
}

} // namespace

QtPromptWindow::QtPromptWindow(QtApplication &application) : _application(application) {
    _appearance.setSingleShot(true);
    _appearance.setInterval(0);
    connect(&_appearance, &QTimer::timeout, this, [this] { _appear(); });
    _problemCheck.setSingleShot(true);
    _problemCheck.setInterval(PauseBeforeCheck);
    connect(&_problemCheck, &QTimer::timeout, this, [this] { _refreshProblem(); });
}

bool QtPromptWindow::connectOutlets(PromptOwner &owner) {
    _owner = &owner;
    _table = dynamic_cast<QtPromptTable *>(findChild<QTableView *>(QStringLiteral("_ui_variableEditor")));
    const auto *const buttons = findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    const bool isWhole = _table != nullptr && buttons != nullptr && buttons->button(QDialogButtonBox::Ok) != nullptr &&
                         buttons->button(QDialogButtonBox::Cancel) != nullptr && _table->connectOwner(owner);
    if (!isWhole) {
        return false;
    }
    _name = dynamic_cast<QtFolderNameView *>(findChild<QWidget *>(QStringLiteral("directoryName")));
    _problem = findChild<QLabel *>(QStringLiteral("problem"));
    _problemIcon = findChild<QLabel *>(QStringLiteral("problemIcon"));
    if (_name != nullptr) {
        _name->setPlace(QtTextOf(owner.promptParentFolder()));
    }
    _table->changed = [this] { _refresh(); };
    _connectButtons();
    _fitToContents();
    _refresh();
    _refreshProblem();
    return true;
}

void QtPromptWindow::_connectButtons() {
    const auto *const buttons = findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    QPushButton *const finish = buttons->button(QDialogButtonBox::Ok);
    QPushButton *const abort = buttons->button(QDialogButtonBox::Cancel);
    finish->setDefault(true); // but where the keyboard is at the other one, Return presses that
    for (QPushButton *const button : {finish, abort}) {
        button->setIcon({}); // as in the alerts
    }
    // Clicking a button takes no focus from the field: what is typed is committed by OK itself, and never by Cancel.
    finish->setFocusPolicy(Qt::TabFocus);
    abort->setFocusPolicy(Qt::TabFocus);
    connect(finish, &QPushButton::clicked, this, [this] { _owner->finishPrompt(); });
    connect(abort, &QPushButton::clicked, this, [this] { _owner->abortPrompt(); });
}

// Shape ---------------------------------------------------------------------------------------------------------------

void QtPromptWindow::_fitToContents() {
    // What does not always stand there keeps its room, so that nothing moves when it appears.
    if (_problem != nullptr) {
        _problem->setTextFormat(Qt::PlainText);
        _problem->setAlignment((isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter |
                               Qt::AlignAbsolute); // beside its icon
        _problem->setFixedHeight(std::max(_problem->fontMetrics().height(), style()->pixelMetric(QStyle::PM_SmallIconSize)));
        int widest = 0;
        for (const PromptProblem problem : Problems) {
            widest = std::max(widest, _problem->fontMetrics().horizontalAdvance(textOf(problem)));
        }
        _problem->setMinimumWidth(widest + 2 * _problem->margin() + 2);
    }
    if (_problemIcon != nullptr) {
        const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
        _problemIcon->setFixedSize(size, size);
    }
    _natural = layout() == nullptr ? size() : layout()->totalSizeHint();
    const QScreen *const screen = QGuiApplication::screenAt(QCursor::pos());
    const QSize room = (screen == nullptr ? QGuiApplication::primaryScreen() : screen)->availableGeometry().size() * 4 / 5;
    _natural = _natural.boundedTo(room);
    resize(_natural);
}

void QtPromptWindow::_placeOnScreen() {
    const QScreen *const pointed = QGuiApplication::screenAt(QCursor::pos());
    const QRect screen = (pointed == nullptr ? QGuiApplication::primaryScreen() : pointed)->availableGeometry();
    // A third of the free height above: where the eye looks first.
    move(screen.x() + (screen.width() - width()) / 2, screen.y() + std::max(0, screen.height() - height()) / 3);
}

std::string QtPromptWindow::stringWithSavedFrame() {
    const QSize kept = size() == _natural ? QSize(0, 0) : size();
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%d %d %d %d", pos().x(), pos().y(), kept.width(), kept.height());
    return text.data();
}

void QtPromptWindow::setFrameFromString(std::string_view frame) {
    const std::string text(frame);
    int x = 0;
    int y = 0;
    int w = 0;
    int h = 0;
    int used = 0;
    if (std::sscanf(text.c_str(), "%9d %9d %9d %9d%n", &x, &y, &w, &h, &used) != 4 ||
        text.find_first_not_of(' ', static_cast<std::size_t>(used)) != std::string::npos || w < 0 || h < 0) {
        return;
    }
    const QSize wanted = w == 0 || h == 0 ? _natural : QSize(w, h).expandedTo(minimumSizeHint());
    const QRect place(QPoint(x, y), wanted);
    const QScreen *best = nullptr;
    int most = 0;
    for (const QScreen *screen : QGuiApplication::screens()) {
        const QRect shared = screen->availableGeometry() & place;
        if (const int area = shared.width() * shared.height(); !shared.isEmpty() && area > most) {
            most = area;
            best = screen;
        }
    }
    if (best == nullptr) {
        return;
    }
    const QRect room = best->availableGeometry();
    const QSize size = wanted.boundedTo(room.size());
    resize(size);
    move(std::clamp(x, room.left(), room.right() + 1 - size.width()), std::clamp(y, room.top(), room.bottom() + 1 - size.height()));
    _hasFrame = true;
}

// Showing -------------------------------------------------------------------------------------------------------------

void QtPromptWindow::makeKeyAndOrderFront() {
    _appearance.start();
}

void QtPromptWindow::_appear() {
    _appearance.stop();
    if (isVisible() || _application.isQuitting()) {
        return;
    }
    if (!_hasFrame) {
        _placeOnScreen();
    }
    _application.bringToFront(*this);
}

void QtPromptWindow::orderOut() {
    _appearance.stop();
    hide();
}

void QtPromptWindow::disableScreenUpdates() {
    setUpdatesEnabled(false);
}

void QtPromptWindow::enableScreenUpdates() {
    setUpdatesEnabled(true);
    if (_appearance.isActive()) {
        _appear();
    }
}

// Session -------------------------------------------------------------------------------------------------------------

void QtPromptWindow::beginModalSession() {
    setWindowModality(Qt::ApplicationModal);
    _isInSession = true;
    _wasStopped = false;
}

long QtPromptWindow::runModalSession() {
    if (_appearance.isActive()) {
        _appear();
    }
    if (!_wasStopped && !_application.isQuitting()) {
        QEventLoop().processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return _wasStopped || _application.isQuitting() ? RunStoppedResponse : RunContinuesResponse;
}

void QtPromptWindow::endModalSession() {
    _isInSession = false;
}

void QtPromptWindow::stopModal() {
    _wasStopped = true;
    if (QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance()) {
        dispatcher->wakeUp(); // a session that waits for events looks again
    }
}

void QtPromptWindow::endEditing() {
    _table->endEditing();
}

void QtPromptWindow::reject() {
    _owner->abortPrompt();
}

void QtPromptWindow::closeEvent(QCloseEvent *event) {
    event->accept();
    _owner->windowWillClose(*this);
}

void QtPromptWindow::mousePressEvent(QMouseEvent *event) {
    QDialog::mousePressEvent(event);
    if (_table != nullptr && _table->editedRow() >= 0) { // clicking beside the fields ends the typing
        _table->endEditing();
        _table->setFocus();
    }
}

// What would come of it -----------------------------------------------------------------------------------------------

std::vector<PromptValueRow> QtPromptWindow::_rowsAsTyped() {
    const std::span<PromptValueRow> rows = _owner->promptRows();
    std::vector<PromptValueRow> typed(rows.begin(), rows.end());
    const auto edited = static_cast<std::size_t>(_table->editedRow());
    if (const std::optional<std::string> text = _table->typedText(); text && edited < typed.size()) {
        typed[edited].value = *text;
    }
    return typed;
}

void QtPromptWindow::_refresh() {
    if (_name != nullptr) {
        _refreshName(_rowsAsTyped());
    }
    if (!_problemCheck.isActive()) {
        _problemCheck.start();
    }
}

void QtPromptWindow::_refreshName(const std::vector<PromptValueRow> &rows) {
    const QString name = QtTextOf(_owner->directoryNameForRows(rows));
    std::vector<PromptValueRow> marked = rows;
    const auto edited = static_cast<std::size_t>(_table->editedRow());
    for (std::size_t i = 0; i < marked.size(); ++i) {
        const QChar begin(i == edited ? EditedValueBegins : ValueBegins);
        marked[i].value = QtUtf8Of(begin) + marked[i].value + QtUtf8Of(QChar(ValueEnds));
    }
    QList<QtNamePart> parts;
    const QString unmarked = withoutMarks(QtTextOf(_owner->directoryNameForRows(marked)), parts);
    if (unmarked != name) {
        parts.clear(); // the marks themselves made a difference: rather no highlight than a wrong name
    }
    _name->setName(name, parts);
}

void QtPromptWindow::_refreshProblem() {
    if (_problem == nullptr) {
        return;
    }
    const QString text = textOf(_owner->problemForRows(_rowsAsTyped()));
    if (text == _problem->text()) {
        return;
    }
    _problem->setText(text);
    if (_problemIcon != nullptr) {
        const QIcon icon = style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this);
        _problemIcon->setPixmap(text.isEmpty() ? QPixmap() : icon.pixmap(_problemIcon->size(), devicePixelRatio()));
    }
    QAccessibleEvent announcement(_problem, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&announcement);
}

} // namespace orvane
