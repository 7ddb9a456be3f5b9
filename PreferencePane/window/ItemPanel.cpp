#include "window/ItemPanel.h"

#include "window/Icons.h"
#include "window/LastFolder.h"
#include "window/Page.h"
#include "window/Sentences.h"
#include "window/TemplateEdit.h"

#include "model/Permissions.h"
#include "platform/qt/QtText.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace orvane {

namespace {

constexpr std::array<const char *, 8> Colors{"", "red", "orange", "yellow", "green", "blue", "purple", "gray"};
constexpr std::array<const char *, 3> Whos{QT_TRANSLATE_NOOP("Orvane", "Owner"), QT_TRANSLATE_NOOP("Orvane", "Group"),
                                           QT_TRANSLATE_NOOP("Orvane", "Others")};
constexpr std::array<const char *, 3> Rights{QT_TRANSLATE_NOOP("Orvane", "Read"), QT_TRANSLATE_NOOP("Orvane", "Write"),
                                             QT_TRANSLATE_NOOP("Orvane", "Execute")};

/// What a new item gets without any choice, where the boxes start from.
unsigned usualMode(bool isFolder) {
    return isFolder ? 0755 : 0644;
}

QLabel *makeTitle(const char *text, QWidget *buddy, QWidget *parent) {
    auto *const label = new QLabel(translated(text), parent);
    label->setBuddy(buddy);
    return label;
}

} // namespace

ItemPanel::ItemPanel(SettingsContext &context, QWidget *parent) : QWidget(parent), _context(context) {
    setObjectName(QStringLiteral("itemPanel"));
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    column->setSpacing(4);
    QWidget *const kind = _makeKind();
    column->addWidget(makeTitle(QT_TRANSLATE_NOOP("Orvane", "&Kind:"), _ui_kind, this));
    column->addWidget(kind);
    column->addSpacing(8);
    QWidget *const labels = _makeLabels();
    column->addWidget(makeTitle(QT_TRANSLATE_NOOP("Orvane", "Label col&our:"), _ui_labels.front(), this));
    column->addWidget(labels);
    column->addSpacing(8);
    QWidget *const permissions = _makePermissions();
    column->addWidget(makeTitle(QT_TRANSLATE_NOOP("Orvane", "Per&missions:"), _ui_octal, this));
    column->addWidget(permissions);
    column->addSpacing(8);
    QWidget *const content = _makeContent();
    _ui_contentTitle = makeTitle(QT_TRANSLATE_NOOP("Orvane", "Content &file:"), _ui_choose, this);
    column->addWidget(_ui_contentTitle);
    column->addWidget(content);
    column->addStretch(1);
    setItems({});
}

QWidget *ItemPanel::_makeKind() {
    _ui_kind = new QComboBox(this);
    _ui_kind->setObjectName(QStringLiteral("itemKind"));
    _ui_kind->setAccessibleName(translated("Kind"));
    _ui_kind->addItem(iconFor(Icon::Folder), translated("Folder"));
    _ui_kind->addItem(iconFor(Icon::File), translated("File"));
    connect(_ui_kind, &QComboBox::activated, this, [this](int kind) { _context.presets.setFolder(_items, kind == 0); });
    return _ui_kind;
}

QWidget *ItemPanel::_makeLabels() {
    auto *const row = new QWidget(this);
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (std::size_t i = 0; i < Colors.size(); ++i) {
        const char *const name = Colors.at(i);
        auto *const button = new QToolButton(row);
        button->setAutoRaise(true);
        button->setCheckable(true);
        button->setIcon(labelIcon(name));
        button->setToolTip(labelTitle(name));
        button->setAccessibleName(labelTitle(name));
        button->setFocusPolicy(Qt::StrongFocus);
        button->setObjectName(QStringLiteral("label-") + QLatin1String(*name == '\0' ? "none" : name));
        connect(button, &QToolButton::clicked, this, [this, name] {
            _context.presets.setColor(_items, name);
            _showLabels();
        });
        layout->addWidget(button);
        _ui_labels.at(i) = button;
    }
    layout->addStretch(1);
    return row;
}

QWidget *ItemPanel::_makePermissions() {
    auto *const box = new QWidget(this);
    auto *const grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(4);
    _ui_octal = new QLineEdit(box);
    _ui_octal->setObjectName(QStringLiteral("itemPermissions"));
    _ui_octal->setAccessibleName(translated("Permissions as three octal digits"));
    _ui_octal->setPlaceholderText(translated("as usual"));
    _ui_octal->setToolTip(translated("Three octal digits, such as 755; empty for what a new item gets anyway"));
    const int widest = std::max(_ui_octal->fontMetrics().horizontalAdvance(translated("as usual")),
                                _ui_octal->fontMetrics().horizontalAdvance(translated("differ")));
    _ui_octal->setMinimumWidth(std::max(64, widest + 2 * _ui_octal->fontMetrics().averageCharWidth() + 8));
    _ui_octal->setMaxLength(3);
    static const QRegularExpression digits(QStringLiteral("[0-7]{0,3}"));
    _ui_octal->setValidator(new QRegularExpressionValidator(digits, _ui_octal));
    connect(_ui_octal, &QLineEdit::textEdited, this, [this](const QString &text) {
        if (text.isEmpty() || text.size() == 3) {
            _setPermissions(text);
        }
    });
    connect(_ui_octal, &QLineEdit::editingFinished, this, [this] { _showPermissions(); });
    letDocumentUndo(*_ui_octal);
    _ui_octal->installEventFilter(this);
    grid->addWidget(_ui_octal, 0, 0);
    for (int right = 0; right < 3; ++right) {
        auto *const title = new QLabel(translated(Rights.at(static_cast<std::size_t>(right))), box);
        grid->addWidget(title, 0, right + 1, Qt::AlignHCenter | Qt::AlignVCenter);
    }
    for (int who = 0; who < 3; ++who) {
        grid->addWidget(new QLabel(translated(Whos.at(static_cast<std::size_t>(who))), box), who + 1, 0);
        for (int right = 0; right < 3; ++right) {
            const std::size_t number = static_cast<std::size_t>(who) * 3 + static_cast<std::size_t>(right);
            auto *const check = new QCheckBox(box);
            check->setObjectName(QStringLiteral("permission%1").arg(number));
            check->setAccessibleName(translated(Whos.at(static_cast<std::size_t>(who))) + QStringLiteral(": ") +
                                     translated(Rights.at(static_cast<std::size_t>(right))));
            connect(check, &QCheckBox::clicked, this, [this, number] { _boxClicked(number); });
            grid->addWidget(check, who + 1, right + 1, Qt::AlignHCenter);
            _ui_boxes.at(number) = check;
        }
    }
    grid->setColumnStretch(0, 1);
    return box;
}

QWidget *ItemPanel::_makeContent() {
    auto *const box = new QWidget(this);
    auto *const column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    _ui_content = new QLineEdit(box);
    _ui_content->setObjectName(QStringLiteral("itemContent"));
    _ui_content->setReadOnly(true);
    _ui_content->setAccessibleName(translated("Content file"));
    _ui_content->setPlaceholderText(translated("empty file"));
    auto *const row = new QHBoxLayout;
    row->setSpacing(6);
    _ui_choose = new QPushButton(translated("&Choose…"), box);
    _ui_choose->setObjectName(QStringLiteral("chooseContent"));
    _ui_choose->setToolTip(translated("Copies a file to Orvane's content files, from where each new file gets its contents"));
    const auto makeButton = [box](Icon icon, const char *title, const char *name) {
        auto *const button = new QToolButton(box);
        button->setObjectName(QLatin1String(name));
        button->setIcon(iconFor(icon));
        button->setToolTip(translated(title));
        button->setAccessibleName(translated(title));
        button->setFocusPolicy(Qt::StrongFocus);
        return button;
    };
    _ui_open = makeButton(Icon::Open, QT_TRANSLATE_NOOP("Orvane", "Open the content file"), "openContent");
    _ui_clear = makeButton(Icon::Delete, QT_TRANSLATE_NOOP("Orvane", "No content file"), "clearContent");
    row->addWidget(_ui_choose, 1);
    row->addWidget(_ui_open);
    row->addWidget(_ui_clear);
    column->addWidget(_ui_content);
    column->addLayout(row);
    connect(_ui_choose, &QPushButton::clicked, this, [this] { _chooseContent(); });
    connect(_ui_open, &QToolButton::clicked, this, [this] {
        const std::string name = _context.presets.text(_items.front(), "contentFilename");
        if (!_context.workspace.openFile(_context.contents.pathOfContent(name))) {
            _context.showMessage(translated("%1 cannot be opened.").arg(QtTextOf(name)), true);
        }
    });
    connect(_ui_clear, &QToolButton::clicked, this, [this] { _context.presets.setContentFilename(_items, {}); });
    return box;
}

void ItemPanel::setItems(std::vector<ItemID> items) {
    _items = std::move(items);
    std::erase_if(_items, [this](ItemID item) { return !_context.presets.isNode(item) || !_context.presets.isEditable(item); });
    refresh();
}

std::vector<std::string> ItemPanel::_texts(std::string_view key) const {
    std::vector<std::string> texts;
    for (const ItemID item : _items) {
        texts.push_back(_context.presets.text(item, key));
    }
    std::sort(texts.begin(), texts.end());
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    return texts;
}

void ItemPanel::refresh() {
    std::erase_if(_items, [this](ItemID item) { return !_context.presets.contains(item); });
    setEnabled(!_items.empty());
    const bool hasFolder = std::any_of(_items.begin(), _items.end(), [this](ItemID item) { return _context.presets.isFolder(item); });
    const bool hasFile = std::any_of(_items.begin(), _items.end(), [this](ItemID item) { return !_context.presets.isFolder(item); });
    _ui_kind->setCurrentIndex(hasFolder == hasFile ? -1 : hasFolder ? 0 : 1);
    _showLabels();
    _showPermissions();
    _showContent();
}

void ItemPanel::_showLabels() {
    const std::vector<std::string> colors = _texts("color");
    for (std::size_t i = 0; i < Colors.size(); ++i) {
        _ui_labels.at(i)->setChecked(colors.size() == 1 && colors.front() == Colors.at(i));
    }
}

/// Digits that no item has got yet.
bool ItemPanel::_isHalfTyped() const {
    return _ui_octal->isModified() && !_ui_octal->text().isEmpty() && _ui_octal->text().size() < 3;
}

/// Undoing in the field takes half-typed digits back, which no step knows of, before it takes steps back.
bool ItemPanel::eventFilter(QObject *watched, QEvent *event) {
    const bool isKey = event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (watched == _ui_octal && isKey && static_cast<const QKeyEvent &>(*event).matches(QKeySequence::Undo) && _isHalfTyped()) {
        if (event->type() == QEvent::KeyPress) {
            _ui_octal->setModified(false);
            _showPermissions();
        }
        event->accept(); // as the field's own key, no shortcut
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void ItemPanel::_showPermissions() {
    const std::vector<std::string> texts = _texts("permissions");
    const QString octal = texts.size() == 1 ? QtTextOf(texts.front()) : QString();
    if (_ui_octal->text() != octal && !(_ui_octal->hasFocus() && _isHalfTyped())) {
        _ui_octal->setText(octal);
    }
    _ui_octal->setPlaceholderText(texts.size() > 1 ? translated("differ") : translated("as usual"));
    std::array<int, 9> set{};
    for (const ItemID item : _items) {
        const auto mode = modeOfOctalText(_context.presets.text(item, "permissions"));
        const PermissionBoxes boxes = boxesOfMode(mode.value_or(usualMode(_context.presets.isFolder(item))));
        for (std::size_t i = 0; i < boxes.size(); ++i) {
            set.at(i) += boxes.at(i) ? 1 : 0;
        }
    }
    for (std::size_t i = 0; i < set.size(); ++i) {
        const QSignalBlocker blocker(_ui_boxes.at(i));
        const int count = set.at(i);
        const bool isMixed = count > 0 && count < static_cast<int>(_items.size());
        _ui_boxes.at(i)->setTristate(isMixed);
        _ui_boxes.at(i)->setCheckState(isMixed ? Qt::PartiallyChecked : count > 0 ? Qt::Checked : Qt::Unchecked);
    }
}

void ItemPanel::_showContent() {
    const std::vector<std::string> names = _texts("contentFilename");
    const bool areFiles =
        !_items.empty() && std::none_of(_items.begin(), _items.end(), [this](ItemID item) { return _context.presets.isFolder(item); });
    const bool hasContent = names.size() > 1 || (names.size() == 1 && !names.front().empty());
    _ui_content->setText(names.size() == 1 ? QtTextOf(names.front()) : QString());
    _ui_content->setCursorPosition(0);
    _ui_content->setToolTip(_ui_content->text());
    _ui_content->setPlaceholderText(names.size() > 1 ? translated("several files") : areFiles ? translated("empty file") : QString());
    _ui_content->setEnabled(areFiles || hasContent);
    _ui_choose->setEnabled(areFiles);
    _ui_open->setEnabled(areFiles && names.size() == 1 && hasContent);
    _ui_clear->setEnabled(hasContent);
}

void ItemPanel::_setPermissions(const QString &text) {
    static_cast<void>(_context.presets.setPermissions(_items, QtUtf8Of(text)));
}

/// Gives this right to all items or takes it from them; the others stay as each item has them.
void ItemPanel::_boxClicked(std::size_t box) {
    const bool gives = _ui_boxes.at(box)->checkState() != Qt::Unchecked;
    const EditHistory::Step step(_context.history, "Change Permissions");
    for (const ItemID item : std::vector<ItemID>(_items)) {
        const auto mode = modeOfOctalText(_context.presets.text(item, "permissions"));
        PermissionBoxes boxes = boxesOfMode(mode.value_or(usualMode(_context.presets.isFolder(item))));
        boxes.at(box) = gives;
        static_cast<void>(_context.presets.setPermissions(std::array{item}, octalTextOfMode(modeOfBoxes(boxes))));
    }
}

void ItemPanel::_chooseContent() {
    const QString path = QFileDialog::getOpenFileName(this, translated("Choose Content File"), LastFolder::path());
    LastFolder::note(path);
    if (path.isEmpty()) {
        return;
    }
    Sentence problem;
    const auto name = _context.contents.addContent(QFile::encodeName(path).toStdString(), problem);
    if (!name) {
        return _context.showMessage(translated("%1 cannot be used: %2").arg(path, translatedSentence(problem)), true);
    }
    _context.presets.setContentFilename(_items, *name);
    _context.resourcesDidChange();
}

} // namespace orvane
