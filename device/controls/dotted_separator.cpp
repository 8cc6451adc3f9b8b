#include "dotted_separator.h"

#include "measures.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>

namespace lindenreed::device {

namespace {

constexpr double dot = 2; // design pixels
constexpr double pitch = 8;

QImage drawDots(QSize area, bool vertical, const QColor &colour)
{
    QImage image(area, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const int side = vertical ? area.width() : area.height();
    const int length = vertical ? area.height() : area.width();
    const int step = std::max(measures::pixelsFromDesign(pitch), 2 * side);
    for (int at = 0; at < length; at += step)
        painter.fillRect(vertical ? 0 : at, vertical ? at : 0, side, side, colour);
    return image;
}

} // namespace

DottedSeparator::DottedSeparator(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    updateImplicitSize();
}

void DottedSeparator::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    emit colorChanged();
    update();
}

void DottedSeparator::setVertical(bool vertical)
{
    if (vertical == m_vertical)
        return;
    m_vertical = vertical;
    updateImplicitSize();
    emit verticalChanged();
    update();
}

void DottedSeparator::updateImplicitSize()
{
    const int side = std::max(measures::pixelsFromDesign(dot), 1);
    setImplicitSize(m_vertical ? side : 0, m_vertical ? 0 : side);
}

QSGNode *DottedSeparator::updatePaintNode(QSGNode *old, UpdatePaintNodeData *data)
{
    Q_UNUSED(data)
    delete old; // a line changes seldom: a new node is simpler than a changed one
    const QSize area = size().toSize();
    if (area.isEmpty())
        return nullptr;

    // A picture of the line, not a rectangle for each dot: it stays whole pixels wherever it is put.
    QSGImageNode *node = window()->createImageNode();
    node->setTexture(window()->createTextureFromImage(drawDots(area, m_vertical, m_color)));
    node->setOwnsTexture(true);
    node->setFiltering(QSGTexture::Nearest);
    node->setRect(QRectF(QPointF(), area));
    return node;
}

void DottedSeparator::geometryChange(const QRectF &now, const QRectF &before)
{
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size())
        update();
}

} // namespace lindenreed::device
