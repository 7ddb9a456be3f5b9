#include "window/HotKeyField.h"

#include "window/HotKeyInstructions.h"
#include "window/Icons.h"
#include "window/Page.h"

#include "hotkeys/HotKeyController.h"
#include "hotkeys/SGIntegerValue.h"
#include "hotkeys/SRRecorderControl.h"
#include "platform/posix/PosixHotKeyStatement.h"
#include "platform/qt/QtText.h"

#include <QClipboard>
#include <QEvent>
#include <QFileSystemWatcher>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace orvane {

namespace {

/// The Carbon mask in which the helper registers it.
std::uint32_t carbonModifiersOf(const StoredHotKey &hotKey) {
    return static_cast<std::uint32_t>(SRRecorderControl().cocoaToCarbonFlags(static_cast<std::uintptr_t>(hotKey.flags)));
}

bool isSameCombination(const StoredHotKey &one, const StoredHotKey &other) {
    return one.code == other.code && carbonModifiersOf(one) == carbonModifiersOf(other);
}

} // namespace

HotKeyField::HotKeyField(SettingsContext &context, QWidget *parent)
    : HotKeyField(context, wayOfSession(context.hotKeyEvents != nullptr), parent) {}

HotKeyField::HotKeyField(SettingsContext &context, Way way, QWidget *parent)
    : QWidget(parent), _context(context), _way(way), _ui_recorder(new HotKeyRecorder(this)), _ui_clear(new QToolButton(this)),
      _ui_message(new InlineMessage(QStringLiteral("hotKeyMessage"), this)),
      _ui_hint(new InlineMessage(QStringLiteral("hotKeyHint"), this)) {
    setObjectName(QStringLiteral("hotKeyField"));
    setFocusProxy(_ui_recorder);
    auto *const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    auto *const row = new QHBoxLayout;
    row->addWidget(_ui_recorder);
    row->addWidget(_ui_clear);
    row->addStretch();
    rows->addLayout(row);
    rows->addWidget(_ui_hint);
    rows->addWidget(_ui_message);
    if (_way == Way::CommandOnly) {
        _ui_command = _makeCommandRow();
        rows->addWidget(_ui_command);
    }

    _ui_clear->setObjectName(QStringLiteral("clearHotKey"));
    _ui_clear->setIcon(iconFor(Icon::Close));
    _ui_clear->setAutoRaise(true);
    _ui_clear->setFocusPolicy(Qt::TabFocus);
    _ui_clear->setToolTip(translated("Remove the shortcut"));
    _ui_clear->setAccessibleName(_ui_clear->toolTip());
    connect(_ui_clear, &QToolButton::clicked, this, [this] {
        _ui_recorder->setFocus();
        _context.general.clearHotKey();
    });
    _ui_recorder->recorded = [this](const StoredHotKey &hotKey) { return _record(hotKey); };
    _ui_recorder->unknownKey = [this] {
        _ui_message->say(InlineMessage::Kind::Warning, translated("This key cannot be part of a shortcut. Press another one."));
    };
    _ui_recorder->cleared = [this] { _context.general.clearHotKey(); };
    _ui_recorder->recordingDidChange = [this](bool) { _sayAtRest(); };
    auto *const watcher = new QFileSystemWatcher(this); // the helper says there how its hot key stands
    watcher->addPath(QtTextOf(_context.paths.stateFolder));
    connect(watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!_ui_recorder->isRecording()) {
            _sayAtRest();
        }
    });
    _context.general.addObserver(*this);
    _refresh();
}

HotKeyField::~HotKeyField() {
    _context.general.removeObserver(*this);
}

HotKeyField::Way HotKeyField::wayOfSession(bool hasHotKeyEvents) {
    if (hasHotKeyEvents) {
        return Way::Direct;
    }
    return desktopGivesHotKeys() ? Way::ByDesktop : Way::CommandOnly;
}

QWidget *HotKeyField::_makeCommandRow() {
    auto *const row = new QWidget(this);
    auto *const command = new QLineEdit(QString::fromLatin1(HotKeyCommand), row);
    command->setObjectName(QStringLiteral("hotKeyCommand"));
    command->setReadOnly(true);
    command->setAccessibleName(translated("Command to bind a key to"));
    auto *const copy = new QPushButton(translated("&Copy"), row);
    copy->setObjectName(QStringLiteral("copyHotKeyCommand"));
    connect(copy, &QPushButton::clicked, this, [command] { QGuiApplication::clipboard()->setText(command->text()); });
    auto *const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(command);
    layout->addWidget(copy);
    layout->addStretch();
    return row;
}

void HotKeyField::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        _ui_clear->setIcon(iconFor(Icon::Close));
    }
}

void HotKeyField::generalSettingsDidChange() {
    _refresh();
}

void HotKeyField::_refresh() {
    _ui_recorder->setHotKey(_context.general.hotKey());
    _ui_clear->setVisible(_context.general.hasHotKey());
    _sayAtRest();
}

/// What there is to say while nothing has gone wrong.
void HotKeyField::_sayAtRest() {
    const bool isRecording = _ui_recorder->isRecording();
    _ui_hint->say(InlineMessage::Kind::Hint,
                  isRecording
                      ? translated("Hold down modifiers and press a key. Esc leaves everything as it is, Backspace removes the shortcut.")
                      : wordsOfHotKey(_context.general.hotKey()));
    if (isRecording) {
        _ui_message->clear();
    } else {
        const QString desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
        const auto statement = PosixHotKeyStatement::ofDirectory(_context.paths.stateFolder);
        const QString otherwise = _way == Way::CommandOnly ? hotKeyInstructions(desktops) : QString();
        _ui_message->say(InlineMessage::Kind::Note, statement ? hotKeyStatement(*statement, desktops) : otherwise);
    }
}

/// Whether the running helper may hold it: what stands on disk is what it registers.
bool HotKeyField::_isHelpers(const StoredHotKey &hotKey) const {
    const PropertyListValue &stored = _context.general.values().base().root();
    const StoredHotKey onDisk{SGIntegerValue(stored.find(ORVHotKeyCodeKey)), SGIntegerValue(stored.find(ORVHotKeyFlagsKey))};
    return isSameCombination(hotKey, onDisk);
}

/// Takes the key and gives it back at once.
EventStatus HotKeyField::_try(const StoredHotKey &hotKey) const {
    HotKeyEvents *const events = _context.hotKeyEvents;
    if (_way != Way::Direct || events == nullptr || _isHelpers(hotKey)) {
        return EventNoError;
    }
    constexpr EventHotKeyID Trial{FourCharacterCode("ORVs"), 1};
    EventHotKeyRef taken = nullptr;
    const EventStatus status = events->registerEventHotKey(static_cast<std::uint32_t>(hotKey.code), carbonModifiersOf(hotKey), Trial,
                                                           events->getEventDispatcherTarget(), 0, taken);
    if (status == EventNoError) {
        events->unregisterEventHotKey(taken);
    }
    return status;
}

bool HotKeyField::_record(const StoredHotKey &hotKey) {
    const auto refuse = [this](const QString &why) {
        _ui_message->say(InlineMessage::Kind::Warning, why);
        return false;
    };
    if (carbonModifiersOf(hotKey) == 0) {
        return refuse(
            translated("A shortcut needs at least one of the keys Super, Alt, Ctrl and Shift. Hold it down and press the other key."));
    }
    if (hotKeyTypesText(hotKey)) {
        return refuse(translated("With Shift alone, this key could not be typed any more. Hold down another modifier, too."));
    }
    const EventStatus status = isSameCombination(hotKey, _context.general.hotKey()) ? EventNoError : _try(hotKey);
    switch (status) {
    case EventNoError:
        _context.general.setHotKey(hotKey);
        return true;
    case EventHotKeyExistsError:
        return refuse(
            translated("Another program has %1 (%2). Press another combination.").arg(textOfHotKey(hotKey), wordsOfHotKey(hotKey)));
    case EventHotKeyInvalidError:
        return refuse(translated("This keyboard has no such key or modifier. Press another combination."));
    default:
        return refuse(translated("The desktop refuses this combination. Press another one."));
    }
}

} // namespace orvane
