#pragma once

#include <QString>
#include <QTextEdit>

class QDialogButtonBox;
class QLabel;

namespace orvane {

/// The text of an alert: read-only, a title in bold above a message. It can be selected, wraps anywhere, takes the room that it needs and
/// scrolls when it is very long.
class QtAlertText final : public QTextEdit {
public:
    explicit QtAlertText(QWidget *parent);
    /// Plain text; line breaks in the message are kept. May be called again.
    void setTexts(const QString &title, const QString &message);

private:
    void _fit(const QTextCharFormat &title);
};

/// Puts the parts of a message into its window, which takes the size that they need.
void QtLayOutMessage(QWidget &window, QLabel &icon, QtAlertText &text, QDialogButtonBox &buttons);

} // namespace orvane
