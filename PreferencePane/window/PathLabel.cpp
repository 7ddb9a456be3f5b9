#include "window/PathLabel.h"

#include "window/Page.h"

#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QStyle>

namespace orvane {

namespace {

/// Widths in average characters.
constexpr int FewestCharacters = 16;
constexpr int MostCharacters = 60;

QString withTilde(const QString &path) {
    const QString home = QDir::homePath();
    return home.size() > 1 && path.startsWith(home + QLatin1Char('/')) ? QLatin1Char('~') + path.mid(home.size()) : path;
}

} // namespace

PathLabel::PathLabel(const QString &path, QWidget *parent) : QWidget(parent), _path(path), _shown(withTilde(path)) {
    setToolTip(_path);
    setAccessibleName(_path);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    auto *const copy = new QAction(translated("&Copy Path"), this);
    connect(copy, &QAction::triggered, this, [this] { QGuiApplication::clipboard()->setText(_path); });
    addAction(copy);
}

QSize PathLabel::sizeHint() const {
    const int most = MostCharacters * fontMetrics().averageCharWidth();
    return {std::min(most, fontMetrics().horizontalAdvance(_shown) + 1), fontMetrics().height()};
}

QSize PathLabel::minimumSizeHint() const {
    return {std::min(sizeHint().width(), FewestCharacters * fontMetrics().averageCharWidth()), fontMetrics().height()};
}

void PathLabel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QString text = fontMetrics().elidedText(_shown, Qt::ElideMiddle, width());
    style()->drawItemText(&painter, rect(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, palette(), isEnabled(), text,
                          QPalette::WindowText);
}

} // namespace orvane
