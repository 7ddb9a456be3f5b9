#pragma once

#include <QColor>
#include <QHash>
#include <QPalette>
#include <QString>
#include <QTranslator>
#include <QWidget>

#include <string>
#include <vector>

namespace orvane::test {

/// Light text on a dark ground, as dark desktops set it.
QPalette darkPalette();

/// Texts of another language, longer than the English ones.
class German final : public QTranslator {
public:
    German();
    German(const German &) = delete;
    German &operator=(const German &) = delete;
    ~German() override;
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char *context, const char *source, const char *note, int number) const override;
};

/// Contrast of two colours (WCAG 2.1): 1 for the same, 21 for black on white.
double contrast(const QColor &one, const QColor &other);
/// A colour that lies over another one, `alpha` of 255.
QColor over(const QColor &below, const QColor &tint, int alpha);

/// The window stands on the screen whole and is no smaller than its contents need; every label, button and field has the room that
/// its text takes, none lies outside its window or over another.
void expectNothingIsCut(const QWidget &window);
/// Whatever a screen reader can reach in the window has a name and something else than "nothing" for a role.
void expectEverythingHasAName(QWidget &window);
/// Presses Tab again and again, as a user does: every widget of the window that takes the keyboard is reached, and then the first one
/// again. The focus must not be in a field in which Tab means something else.
void expectTabReachesEverything(QWidget &window);
/// Role and name of what a screen reader finds in the window, in its order, as "role: name".
std::vector<std::string> whatScreenReadersFind(QWidget &window);

} // namespace orvane::test
