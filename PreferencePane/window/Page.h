#pragma once

#include "window/SettingsContext.h"

#include <QCoreApplication>
#include <QString>

// A page of the settings window is a QWidget with the constructor `Page(SettingsContext &context, QWidget *parent)`. It keeps a
// reference to the context, watches the models it shows (and takes its observers away in its destructor), and takes no more room
// than it needs: the window scrolls it where it does not fit.

namespace orvane {

/// A text for people in their language; `source` is the English one.
[[nodiscard]] inline QString translated(const char *source) {
    return QCoreApplication::translate("Orvane", source);
}

/// Margin around a page, and the distance between its groups, in device-independent pixels.
inline constexpr int PageMargin = 12;
inline constexpr int PageSpacing = 12;

} // namespace orvane
