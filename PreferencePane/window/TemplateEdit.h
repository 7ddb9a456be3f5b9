#pragma once

#include <QLineEdit>
#include <QList>
#include <QPalette>
#include <QString>
#include <QTextLayout>

namespace orvane {

/// How the parts of a name template stand out: variables on a tint of the highlight, automatic ones in italics, what a creation would not
/// replace or never get done with underlined as a mistake. `text` is the ink that the rest has.
[[nodiscard]] QList<QTextLayout::FormatRange> formatsOfTemplate(const QString &text, bool isDirectoryName, const QPalette &palette,
                                                                const QColor &ink);

/// A line to type a name template into, with its variables highlighted.
class TemplateEdit final : public QLineEdit {
    Q_OBJECT

public:
    /// `isDirectoryName`: it is the top-level folder's, which is scanned as it stands.
    TemplateEdit(bool isDirectoryName, QWidget *parent);

protected:
    void changeEvent(QEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    void _highlight();

    bool _isDirectoryName;
    bool _isComposing = false; ///< an input method is at work on the text
};

/// Lets Ctrl+Z and Ctrl+Shift+Z in a field that changes the document while it is typed into undo steps of the document instead of
/// the field's own.
void letDocumentUndo(QLineEdit &field);

} // namespace orvane
