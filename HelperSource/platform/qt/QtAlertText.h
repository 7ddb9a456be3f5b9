#pragma once

#include <QString>
#include <QTextEdit>

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

} // namespace orvane
