#pragma once

#include "platform/qt/QtApplication.h"
#include "platform/qt/QtRemainsWindow.h"

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace orvane {

/// Shows a `QtRemainsWindow` without getting in the user's way: it takes no keyboard, and it is out of sight while another question of
/// ours or a menu waits for its answer. Main thread only; one offer at a time.
class QtRemainsOffer final : public QObject {
public:
    explicit QtRemainsOffer(QtApplication &application) : _application(application) {}
    QtRemainsOffer(const QtRemainsOffer &) = delete;
    QtRemainsOffer &operator=(const QtRemainsOffer &) = delete;
    ~QtRemainsOffer() override = default;

    /// Returns at once. `answered` is called at most once, with whether to remove; never when the window is just closed.
    void offer(const std::vector<CreationRemains> &remains, std::function<void(bool remove)> answered);
    /// What came of removing, in the window that asked. Nothing when that was closed meanwhile.
    void showRemoval(const RemainsRemoval &removal);

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void _showUnlessAsking();
    void _withdraw();
    void _waitForEnd(bool isWaiting);

    QtApplication &_application;
    std::unique_ptr<QtRemainsWindow> _window;
    bool _isWaiting = false; ///< for another window or menu of ours to go
};

} // namespace orvane
