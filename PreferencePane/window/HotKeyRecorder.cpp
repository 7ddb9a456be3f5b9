#include "window/HotKeyField.h"
#include "window/Page.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>

namespace orvane {

HotKeyRecorder::HotKeyRecorder(QWidget *parent) : QLineEdit(parent) {
    setObjectName(QStringLiteral("hotKeyRecorder"));
    setReadOnly(true); // text comes from keys that are pressed, never from typing or pasting
    setContextMenuPolicy(Qt::NoContextMenu);
    setCursor(Qt::ArrowCursor);
    setPlaceholderText(translated("Click to record a shortcut"));
    setAccessibleName(translated("Shortcut"));
    setAccessibleDescription(translated("Press Space to record a shortcut, Delete to remove it."));
    // Room for the longest of its own texts.
    const int width =
        std::max(fontMetrics().horizontalAdvance(placeholderText()), fontMetrics().horizontalAdvance(translated("Press the keys…")));
    setMinimumWidth(width + 4 * fontMetrics().height());
    _show();
}

HotKeyRecorder::~HotKeyRecorder() {
    if (_isRecording) {
        releaseKeyboard();
    }
}

void HotKeyRecorder::setHotKey(const StoredHotKey &hotKey) {
    _hotKey = hotKey;
    _end();
    _show();
}

void HotKeyRecorder::_show() {
    const QString stored = textOfHotKey(_hotKey);
    if (!_isRecording) {
        setText(stored);
    } else {
        setText(_heldFlags != 0 ? textOfModifiers(_heldFlags) + QStringLiteral("…") : translated("Press the keys…"));
    }
    deselect();
    setCursorPosition(0);
    setToolTip(_isRecording ? QString() : wordsOfHotKey(_hotKey));
}

void HotKeyRecorder::_begin() {
    if (_isRecording) {
        return;
    }
    _isRecording = true;
    _heldFlags = 0;
    // Neither the desktop nor another program answers to what is pressed now; where that is impossible, the rest of it works.
    grabKeyboard();
    _show();
    recordingDidChange(true);
}

void HotKeyRecorder::_end() {
    if (!_isRecording) {
        return;
    }
    _isRecording = false;
    releaseKeyboard();
    _show();
    recordingDidChange(false);
}

void HotKeyRecorder::_pressed(const QKeyEvent &event) {
    const HotKeyPress press = hotKeyPressOf(event);
    _heldFlags = press.flags;
    if (press.isModifier) {
        _show();
        return;
    }
    if (press.flags == 0 && event.key() == Qt::Key_Escape) {
        _end();
    } else if (press.flags == 0 && (event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete)) {
        _end();
        cleared();
    } else if (!press.keyCode) {
        unknownKey();
    } else if (const StoredHotKey pressed{static_cast<std::int64_t>(*press.keyCode), static_cast<std::int64_t>(press.flags)};
               recorded(pressed)) {
        setHotKey(pressed);
    } else {
        _show();
    }
}

bool HotKeyRecorder::event(QEvent *event) {
    if (_isRecording && event->type() == QEvent::ShortcutOverride) {
        event->accept(); // the window's own shortcuts are keys like others now
        return true;
    }
    if (_isRecording && event->type() == QEvent::KeyPress) {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        const bool leaves = key.key() == Qt::Key_Backtab || (key.key() == Qt::Key_Tab && key.modifiers() == Qt::NoModifier);
        if (leaves && (key.modifiers() & ~Qt::ShiftModifier) == Qt::NoModifier) {
            _end();
            return QLineEdit::event(event); // goes on to the next field
        }
        if (!key.isAutoRepeat()) {
            _pressed(key);
        }
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void HotKeyRecorder::keyPressEvent(QKeyEvent *event) {
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const int key = event->key();
    if (isPlain && (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_F2)) {
        _begin();
    } else if (isPlain && (key == Qt::Key_Backspace || key == Qt::Key_Delete)) {
        cleared();
    } else {
        event->ignore(); // the window's: Escape, undo, access keys
    }
}

void HotKeyRecorder::keyReleaseEvent(QKeyEvent *event) {
    if (_isRecording && !event->isAutoRepeat()) {
        _heldFlags = hotKeyPressOf(*event).flags;
        _show();
    }
    event->accept();
}

void HotKeyRecorder::mousePressEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        setFocus(Qt::MouseFocusReason);
        _begin();
    }
    event->accept();
}

void HotKeyRecorder::mouseDoubleClickEvent(QMouseEvent *event) {
    mousePressEvent(event);
}

void HotKeyRecorder::focusOutEvent(QFocusEvent *event) {
    _end();
    QLineEdit::focusOutEvent(event);
}

void HotKeyRecorder::hideEvent(QHideEvent *event) {
    _end();
    QLineEdit::hideEvent(event);
}

} // namespace orvane
