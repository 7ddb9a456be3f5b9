#pragma once

#include <QIcon>
#include <QList>
#include <QString>
#include <QTextLayout>
#include <QWidget>

namespace orvane {

/// Part of a name that stands for a variable.
struct QtNamePart {
    qsizetype start = 0; ///< in UTF-16 units
    qsizetype length = 0;
    bool isEdited = false; ///< the user is typing it
    bool operator==(const QtNamePart &) const = default;
};

/// Shows a folder's name with the variables' values highlighted, and below where the folder will be. Always as high as two lines of a
/// name, so that nothing moves while it grows; a longer name loses its middle and stands whole in the tool tip, and so does a place.
class QtFolderNameView final : public QWidget {
public:
    explicit QtFolderNameView(QWidget *parent = nullptr);

    void setName(const QString &name, const QList<QtNamePart> &parts);
    /// The folder that the named one will be in, as a path; a home folder is shortened to "~". Empty shows nothing, as in the beginning.
    /// To be called before the size hints count.
    void setPlace(const QString &path);
    [[nodiscard]] const QString &name() const { return _name; }
    /// What is said of the place.
    [[nodiscard]] const QString &place() const { return _place; }
    [[nodiscard]] const QList<QtNamePart> &parts() const { return _parts; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    [[nodiscard]] QRect _textRect() const;
    [[nodiscard]] QFont _placeFont() const;
    [[nodiscard]] int _placeHeight() const;
    void _describe();
    /// Lays the text out in the view's width; the number of its lines.
    [[nodiscard]] int _layOut(QTextLayout &layout, const QString &text, const QList<QtNamePart> &parts) const;
    /// The name with `kept` of its units left, half of them at each end.
    void _shorten(qsizetype kept, QString &text, QList<QtNamePart> &parts) const;
    [[nodiscard]] QList<QTextLayout::FormatRange> _formats(const QList<QtNamePart> &parts) const;

    QString _name;
    QString _place;
    QList<QtNamePart> _parts;
    QIcon _icon;
};

} // namespace orvane
