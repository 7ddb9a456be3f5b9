#include "platform/qt/QtHintColor.h"

#include <algorithm>
#include <cmath>

namespace orvane {

namespace {

/// Of one channel of sRGB (WCAG 2.1, "relative luminance").
double linear(double channel) {
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor mixed(const QColor &text, const QColor &background, float part) {
    const auto of = [part](float one, float other) { return one * part + other * (1 - part); };
    return QColor::fromRgbF(of(text.redF(), background.redF()), of(text.greenF(), background.greenF()),
                            of(text.blueF(), background.blueF()));
}

} // namespace

double QtContrast(const QColor &one, const QColor &other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor QtHintColor(const QPalette &palette, QPalette::ColorRole text, QPalette::ColorRole background) {
    constexpr double Least = 4.5;
    constexpr int Quietest = 12; // twentieths of the text's colour
    constexpr int Whole = 20;
    const QColor ofText = palette.color(text);
    const QColor ofBackground = palette.color(background);
    for (int part = Quietest; part < Whole; ++part) {
        const QColor hint = mixed(ofText, ofBackground, static_cast<float>(part) / static_cast<float>(Whole));
        if (QtContrast(hint, ofBackground) >= Least) {
            return hint;
        }
    }
    return ofText;
}

} // namespace orvane
