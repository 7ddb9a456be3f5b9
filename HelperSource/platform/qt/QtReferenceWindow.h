#pragma once

#include "ports/PopUpMenus.h"

#include <memory>

class QWindow;

namespace orvane {

/// A window that is never shown. Needs the application to be loaded.
class QtReferenceWindow final : public ReferenceWindow {
public:
    QtReferenceWindow();
    QtReferenceWindow(const QtReferenceWindow &) = delete;
    QtReferenceWindow &operator=(const QtReferenceWindow &) = delete;
    ~QtReferenceWindow() override;

    /// The window system's own number for it.
    [[nodiscard]] std::int64_t windowNumber() override;

private:
    std::unique_ptr<QWindow> _window;
};

} // namespace orvane
