#include "window/TemplateEdit.h"

#include "window/Icons.h"

#include "model/TemplateSpans.h"
#include "platform/qt/QtText.h"

#include <QEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QTextCharFormat>

namespace orvane {

namespace {

QTextCharFormat formatOf(TemplateSpan::Kind kind, const QPalette &palette, const QColor &ink) {
    QTextCharFormat format;
    format.setForeground(ink);
    QColor tint = palette.color(QPalette::Highlight);
    tint.setAlphaF(isDark(palette) ? 0.38F : 0.22F);
    // On a selected row the ink is made for the highlight, so that a tint of the ink stands out.
    if (ink == palette.color(QPalette::HighlightedText)) {
        tint = ink;
        tint.setAlphaF(0.25F);
    }
    switch (kind) {
    case TemplateSpan::Kind::Variable:
        format.setBackground(tint);
        break;
    case TemplateSpan::Kind::AutomaticVariable:
        format.setBackground(tint);
        format.setFontItalic(true);
        break;
    case TemplateSpan::Kind::UnreplacedVariable:
        format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        format.setUnderlineColor(warningColor(palette));
        break;
    case TemplateSpan::Kind::EscapedBrace: {
        QColor faint = ink;
        faint.setAlphaF(0.6F);
        format.setForeground(faint);
        break;
    }
    case TemplateSpan::Kind::Problem:
        format.setForeground(errorColor(palette));
        format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        format.setUnderlineColor(errorColor(palette));
        break;
    }
    return format;
}

class UndoFilter final : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::ShortcutOverride) {
            const auto &key = static_cast<const QKeyEvent &>(*event);
            if (key.matches(QKeySequence::Undo) || key.matches(QKeySequence::Redo)) {
                event->ignore(); // the field would take it
                return true;
            }
        }
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

QList<QTextLayout::FormatRange> formatsOfTemplate(const QString &text, bool isDirectoryName, const QPalette &palette, const QColor &ink) {
    QList<QTextLayout::FormatRange> formats;
    for (const TemplateSpan &span : spansOfTemplate(QtUtf8Of(text), isDirectoryName)) {
        QTextLayout::FormatRange range;
        range.start = static_cast<int>(span.beginUnit);
        range.length = static_cast<int>(span.endUnit - span.beginUnit);
        range.format = formatOf(span.kind, palette, ink);
        formats.append(range);
    }
    return formats;
}

TemplateEdit::TemplateEdit(bool isDirectoryName, QWidget *parent) : QLineEdit(parent), _isDirectoryName(isDirectoryName) {
    connect(this, &QLineEdit::textChanged, this, [this] { _highlight(); });
}

/// A line edit shows formats only as those of an input method's text; giving it an event without any text changes nothing else.
void TemplateEdit::_highlight() {
    if (_isComposing) {
        return;
    }
    QList<QInputMethodEvent::Attribute> attributes;
    for (const QTextLayout::FormatRange &range : formatsOfTemplate(text(), _isDirectoryName, palette(), palette().color(QPalette::Text))) {
        attributes.append({QInputMethodEvent::TextFormat, range.start - cursorPosition(), range.length, range.format});
    }
    QInputMethodEvent event(QString(), attributes);
    QLineEdit::inputMethodEvent(&event);
}

void TemplateEdit::changeEvent(QEvent *event) {
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        _highlight();
    }
}

void TemplateEdit::inputMethodEvent(QInputMethodEvent *event) {
    _isComposing = !event->preeditString().isEmpty();
    QLineEdit::inputMethodEvent(event);
    if (!_isComposing) {
        _highlight();
    }
}

void letDocumentUndo(QLineEdit &field) {
    field.installEventFilter(new UndoFilter(&field));
}

} // namespace orvane
