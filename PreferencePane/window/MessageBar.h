#pragma once

#include <QFrame>
#include <QString>

#include <functional>
#include <vector>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QToolButton;

namespace orvane {

/// A message inside the window, with what can be done about it beside it. Hidden until it has something to say.
class MessageBar final : public QFrame {
public:
    enum class Kind { Note, Warning, Error };
    struct Choice {
        QString title; ///< may hold a mnemonic
        std::function<void()> chosen;
        const char *name; ///< of the button as an object, for accessibility tools and tests
    };

    explicit MessageBar(QWidget *parent);

    /// Replaces what it says. `isClosable`: the user may put it away, which `closed` is told.
    void say(Kind kind, const QString &text, std::vector<Choice> choices = {}, bool isClosable = true, std::function<void()> closed = {});
    void clear();
    [[nodiscard]] QString text() const;

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void _removeButtons();

    Kind _kind = Kind::Note;
    QLabel *_ui_icon;
    QLabel *_ui_text;
    QHBoxLayout *_ui_buttons;
    QToolButton *_ui_close;
    std::vector<QPushButton *> _buttons;
    std::function<void()> _closed;
};

} // namespace orvane
