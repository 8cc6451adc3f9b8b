// A dotted line for QML.

#pragma once

#include <QColor>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace lindenreed::device {

/// Square dots in one colour from the left or upper end on, horizontal unless `vertical`. Without a size of
/// its own it is one dot thick; whatever its thickness is made, that is the size of its dots.
class DottedSeparator : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    QML_ADDED_IN_VERSION(1, 0)

    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)
    Q_PROPERTY(bool vertical READ isVertical WRITE setVertical NOTIFY verticalChanged FINAL)

public:
    explicit DottedSeparator(QQuickItem *parent = nullptr);

    QColor color() const { return m_color; }
    void setColor(const QColor &color);
    bool isVertical() const { return m_vertical; }
    void setVertical(bool vertical);

signals:
    void colorChanged();
    void verticalChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &now, const QRectF &before) override;

private:
    void updateImplicitSize();

    QColor m_color = Qt::black;
    bool m_vertical = false;
};

} // namespace lindenreed::device
