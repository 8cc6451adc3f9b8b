// A finger for the gallery, which has to show what is seen only while one is down.

#pragma once

#include <QObject>
#include <QPointF>
#include <QUrl>

class QQuickItem;

/// Touches controls and takes pictures of them. Main thread.
class Finger : public QObject
{
    Q_OBJECT

public:
    /// `item` as it looks now. Empty for an item without a window.
    Q_INVOKABLE QUrl pictureOf(QQuickItem *item) const;

    /// `item` as it looks while a finger is on it at `point`, in its own coordinates. The finger moves away
    /// before it is lifted, so that nothing is activated. Empty for an item without a window.
    Q_INVOKABLE QUrl pictureOfHeld(QQuickItem *item, const QPointF &point) const;
};
