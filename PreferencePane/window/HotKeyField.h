#pragma once

#include "window/HotKeyRecording.h"
#include "window/InlineMessage.h"
#include "window/SettingsContext.h"

#include <QLineEdit>
#include <QWidget>

#include <functional>

class QToolButton;

namespace orvane {

/// The field in which a hot key is recorded: a click, Space or Return begins, and the next combination is it. Escape gives up,
/// Backspace and Delete take the hot key away, Tab goes on to the next field. The modifiers show while they are held. It holds the
/// keyboard while it records, so that no other program answers to the combination.
class HotKeyRecorder final : public QLineEdit {
public:
    explicit HotKeyRecorder(QWidget *parent);
    ~HotKeyRecorder() override;

    /// Shows that one; ends a recording.
    void setHotKey(const StoredHotKey &hotKey);
    [[nodiscard]] bool isRecording() const { return _isRecording; }

    /// Told what was pressed: a key, with whatever modifiers. The recording is over when it says true, else it goes on.
    std::function<bool(const StoredHotKey &hotKey)> recorded;
    /// A key that has no place on the Mac's keyboard.
    std::function<void()> unknownKey;
    std::function<void()> cleared;
    /// A recording begins or ends.
    std::function<void(bool isRecording)> recordingDidChange;

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void _begin();
    void _end();
    void _show();
    void _pressed(const QKeyEvent &event);

    StoredHotKey _hotKey;
    std::uint32_t _heldFlags = 0;
    bool _isRecording = false;
};

/// The hot key of the preferences, with what there is to say about it.
class HotKeyField final : public QWidget, private GeneralSettingsObserver {
public:
    /// How this desktop gives hot keys to programs.
    enum class Way {
        Direct,      ///< it can be tried here
        ByDesktop,   ///< the helper asks the desktop
        CommandOnly, ///< not at all: a key has to be bound to a command
    };

    explicit HotKeyField(SettingsContext &context, QWidget *parent = nullptr);
    HotKeyField(SettingsContext &context, Way way, QWidget *parent);
    ~HotKeyField() override;

    /// The field itself, for a label's buddy.
    [[nodiscard]] HotKeyRecorder &recorder() { return *_ui_recorder; }
    /// The way of the session that this program runs in.
    [[nodiscard]] static Way wayOfSession(bool hasHotKeyEvents);

protected:
    void changeEvent(QEvent *event) override;

private:
    void generalSettingsDidChange() override;
    [[nodiscard]] bool _record(const StoredHotKey &hotKey);
    [[nodiscard]] bool _isHelpers(const StoredHotKey &hotKey) const;
    [[nodiscard]] EventStatus _try(const StoredHotKey &hotKey) const;
    void _refresh();
    void _sayAtRest();
    QWidget *_makeCommandRow();

    SettingsContext &_context;
    const Way _way;
    HotKeyRecorder *_ui_recorder;
    QToolButton *_ui_clear;
    InlineMessage *_ui_message;
    InlineMessage *_ui_hint;
    QWidget *_ui_command = nullptr;
};

} // namespace orvane
