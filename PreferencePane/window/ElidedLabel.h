#pragma once

#include <QLabel>

namespace orvane {

/// A label of one line that asks for little room and leaves the middle of its text out where it does not fit. `text()`, and with it
/// what screen readers say, is always the whole.
class ElidedLabel final : public QLabel {
public:
    explicit ElidedLabel(QWidget *parent);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace orvane
