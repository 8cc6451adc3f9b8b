// Functions that every screen calls: lengths, theme pictures, menus, messages, paging.

#pragma once

#include <QAbstractItemModel>
#include <QObject>
#include <QRectF>
#include <QString>
#include <QtQml/qqmlregistration.h>

class QQuickItem;

namespace lindenreed::device {

/// Main thread. Keeps nothing itself: what belongs to a loader lives and dies with that loader.
class Global : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_ADDED_IN_VERSION(1, 0)
    QML_SINGLETON

    /// URL of a theme picture without its final slash and name.
    Q_PROPERTY(QString defaultNormalImagesPrefix READ defaultNormalImagesPrefix CONSTANT FINAL)

public:
    using QObject::QObject;

    QString defaultNormalImagesPrefix() const { return QStringLiteral("image://resource"); }

    Q_INVOKABLE int dp(double value) const; ///< pixels for a density-independent length
    Q_INVOKABLE int pixelsFromDesign(double value) const; ///< pixels for a length of a 300 dpi panel
    Q_INVOKABLE QString getNormalImage(const QString &name) const; ///< URL of a theme picture

    /// Shows the ContextMenu that `loader` holds, or loads when it becomes visible, beside `area`, a
    /// rectangle in global coordinates. `delegate` is "ImageTextButton" or "RadioButton"; of the latter's
    /// rows the one whose text is the title is checked. An empty `title` shows none. The menu does not own
    /// `model`.
    Q_INVOKABLE void openContextMenuLoader(QQuickItem *loader, QAbstractItemModel *model,
                                           const QString &delegate, const QString &title,
                                           const QRectF &area) const;

    /// Shows an InfoMessage through `loader`, which is made visible and is expected to load its component
    /// then, and hides it after `timeout` milliseconds; 0 leaves it until it is closed. `message` is plain
    /// text, `icon` a URL or the name of a theme picture, or empty. A second message replaces the first and
    /// has its whole time.
    Q_INVOKABLE void openInfoMessageLoader(QQuickItem *loader, const QString &message, const QString &icon,
                                           int timeout) const;

    /// Hides what openInfoMessageLoader showed. Nothing happens where nothing is shown.
    Q_INVOKABLE void closeInfoMessageLoader(QQuickItem *loader) const;

    /// Move a grid, list or flickable by one page, at once. In a grid or list a page is one row less than
    /// what shows, and ends at a row; what a footer of the list keeps clear at the lower edge does not count
    /// as seen.
    Q_INVOKABLE void scrollFlickablePageUp(QQuickItem *flickable) const;
    Q_INVOKABLE void scrollFlickablePageDown(QQuickItem *flickable) const;
};

} // namespace lindenreed::device
