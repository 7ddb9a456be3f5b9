#pragma once

#include "platform/filemanagers/ActiveApplication.h"
#include "platform/qt/QtApplication.h"
#include "ports/PopUpMenus.h"
#include "ports/SystemLog.h"

#include <memory>

namespace orvane {

// What is chosen by the window system that Qt runs on. The application must have been loaded.

/// Pop-up menus: at the pointer on X11, else the best that the compositor allows. `active` is borrowed and told before each menu.
[[nodiscard]] std::unique_ptr<PopUpMenus> makeDesktopPopUpMenus(QtApplication &application, ActiveApplication &active, SystemLog &log);

/// Whoever knows which window the user works in; never null. Writes into the log what it chose.
[[nodiscard]] std::unique_ptr<ActiveApplication> makeDesktopActiveApplication(SystemLog &log);

} // namespace orvane
