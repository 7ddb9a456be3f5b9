#pragma once

#include <QString>
#include <QWidget>

class QLabel;

namespace orvane {

/// A line or two about the field above it, with a sign of how much it matters. Takes no room while it has nothing to say. Screen
/// readers are told when it changes.
class InlineMessage final : public QWidget {
public:
    enum class Kind { Hint, Note, Warning, Error };

    /// `name` is the object name.
    InlineMessage(const QString &name, QWidget *parent);

    /// Replaces what it says; an empty text hides it. Plain text, which may hold line breaks.
    void say(Kind kind, const QString &text);
    void clear() { say(Kind::Hint, {}); }
    [[nodiscard]] const QString &text() const { return _text; }
    [[nodiscard]] Kind kind() const { return _kind; }
    /// One line: how many there are depends on the width.
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void _show();

    QLabel *_ui_icon;
    QLabel *_ui_text;
    QString _text;
    Kind _kind = Kind::Hint;
};

} // namespace orvane
