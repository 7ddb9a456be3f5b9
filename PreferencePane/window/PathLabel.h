#pragma once

#include <QString>
#include <QWidget>

namespace orvane {

/// A path in one line, its middle left out where it does not fit; the whole of it as tool tip, for screen readers, and to be copied from
/// the context menu. The home folder is shown as "~".
class PathLabel final : public QWidget {
public:
    PathLabel(const QString &path, QWidget *parent);

    [[nodiscard]] const QString &path() const { return _path; }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString _path;
    QString _shown;
};

} // namespace orvane
