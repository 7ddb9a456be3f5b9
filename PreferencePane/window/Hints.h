#pragma once

#include <QObject>

class QLabel;

namespace orvane {

/// Draws the label's text as a hint, which steps back behind what it is about and can be read all the same, or as any other text. Goes
/// with the palette from then on.
void showAsHint(QLabel &label, bool isHint = true);

/// Gives placeholders in fields the colour of hints, for as long as it lives, whatever the desktop's theme has there: some leave that
/// role of the palette as it is in light colours. There is one application palette, so one of these is enough.
class ReadablePlaceholders final : public QObject {
public:
    explicit ReadablePlaceholders(QObject *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static void _adjust();
};

} // namespace orvane
