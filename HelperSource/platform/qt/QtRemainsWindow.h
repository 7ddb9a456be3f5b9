#pragma once

#include "platform/qt/RemainsRemoval.h"
#include "ports/CreationJournal.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QString>

#include <chrono>
#include <functional>
#include <vector>

class QDialogButtonBox;
class QPushButton;

namespace orvane {

class QtAlertText;

/// Says which creations were ended half-way and what is left of them, and asks whether that is to be removed; afterwards says what came
/// of it. The button for keeping is the one that Return presses. Closing the window is no answer. Neither is what comes in the first
/// moments: it was meant for what the user was at when the window came up, which on some desktops takes the keyboard whatever we do.
class QtRemainsWindow final : public QDialog {
public:
    /// `answered` is called at most once, with whether to remove; the window then waits for `showRemoval`, or closes.
    QtRemainsWindow(const std::vector<CreationRemains> &remains, std::function<void(bool remove)> answered);

    void showRemoval(const RemainsRemoval &removal);

    /// How long after it comes up an answer is none.
    static constexpr std::chrono::milliseconds TimeToSeeIt{700};

protected:
    void showEvent(QShowEvent *event) override;

private:
    void _answer(bool remove);
    void _showTexts(const QString &title, const QString &message);
    void _layOut();

    std::function<void(bool)> _answered;
    QElapsedTimer _sinceShown;
    QtAlertText *_text = nullptr;
    QDialogButtonBox *_buttons = nullptr;
    QPushButton *_keep = nullptr;
    QPushButton *_remove = nullptr;
};

} // namespace orvane
