#include "keyboard_drawing.h"

#include <QFont>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

// Pixels of a 300 dpi panel.
constexpr int lineHeight = 2;
constexpr int radius = 12;
constexpr int frameWidth = 6;
constexpr int letterSize = 50;
constexpr int labelSize = 42; // of what stands on a key that types nothing
constexpr int signSize = 64;
constexpr int signLine = 5;

const QColor ground(0xdd, 0xdd, 0xdd);

/// Signs are drawn on a grid of 24 units.
constexpr qreal grid = 24;

QPainterPath polygon(std::initializer_list<QPointF> corners, bool closed)
{
    QPainterPath path(*corners.begin());
    std::for_each(corners.begin() + 1, corners.end(), [&](const QPointF &corner) { path.lineTo(corner); });
    if (closed)
        path.closeSubpath();
    return path;
}

QPainterPath shiftSign()
{
    return polygon({{12, 4}, {20, 12}, {15.5, 12}, {15.5, 20}, {8.5, 20}, {8.5, 12}, {4, 12}}, true);
}

QPainterPath deleteSign()
{
    QPainterPath path = polygon({{9, 5}, {21, 5}, {21, 19}, {9, 19}, {3, 12}}, true);
    path.addPath(polygon({{12, 9}, {18, 15}}, false));
    path.addPath(polygon({{18, 9}, {12, 15}}, false));
    return path;
}

QPainterPath languageSign()
{
    QPainterPath path;
    path.addEllipse(QPointF(12, 12), 9, 9);
    path.addEllipse(QPointF(12, 12), 4, 9);
    path.addPath(polygon({{3, 12}, {21, 12}}, false));
    return path;
}

QPainterPath spaceSign()
{
    return polygon({{3, 13}, {3, 17}, {21, 17}, {21, 13}}, false);
}

QPainterPath doneSign()
{
    return polygon({{4, 12.5}, {9.5, 18}, {20, 7}}, false);
}

QPainterPath signOf(KeyAction action)
{
    switch (action) {
    case KeyAction::Shift:
        return shiftSign();
    case KeyAction::Delete:
        return deleteSign();
    case KeyAction::Language:
        return languageSign();
    case KeyAction::Space:
        return spaceSign();
    case KeyAction::Done:
        return doneSign();
    case KeyAction::Text:
    case KeyAction::Signs:
    case KeyAction::Letters:
        break;
    }
    return {};
}

void drawSign(QPainter &painter, const QPainterPath &sign, const QRect &key, const QColor &ink, int dpi)
{
    const int side = fromDesign(signSize, dpi);
    const qreal scale = side / grid;
    painter.save();
    painter.translate(key.topLeft()
                      + QPoint((key.width() - side) / 2, (key.height() - side) / 2)); // a whole pixel
    painter.scale(scale, scale);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ink, fromDesign(signLine, dpi) / scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(sign);
    painter.restore();
}

void drawText(QPainter &painter, const KeyboardKey &key, const QColor &ink, int dpi)
{
    QFont font(u"Noto Sans"_s);
    font.setPixelSize(fromDesign(key.action == KeyAction::Text ? letterSize : labelSize, dpi));
    font.setHintingPreference(QFont::PreferNoHinting);
    painter.setFont(font);
    painter.setPen(ink);
    painter.drawText(key.rectangle, Qt::AlignCenter, key.text);
}

} // namespace

void drawKeyboardGround(QPainter &painter, const QSize &keyboard, int dpi)
{
    painter.fillRect(QRect(QPoint(), keyboard), ground);
    painter.fillRect(0, 0, keyboard.width(), std::max(1, fromDesign(lineHeight, dpi)), Qt::black);
}

void drawKey(QPainter &painter, const KeyboardKey &key, KeyLook look, int dpi)
{
    const bool dark = (key.action == KeyAction::Done) != look.inverted;
    const QColor paper = dark ? Qt::black : Qt::white;
    const QColor ink = dark ? Qt::white : Qt::black;
    const int corner = fromDesign(radius, dpi);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.framed ? ink : paper);
    painter.drawRoundedRect(key.rectangle, corner, corner);
    if (look.framed) {
        const int frame = fromDesign(frameWidth, dpi);
        painter.setBrush(paper);
        painter.drawRoundedRect(key.rectangle.adjusted(frame, frame, -frame, -frame), corner - frame,
                                corner - frame);
    }

    const QPainterPath sign = signOf(key.action);
    if (sign.isEmpty())
        drawText(painter, key, ink, dpi);
    else
        drawSign(painter, sign, key.rectangle, ink, dpi);
}

} // namespace lindenreed::device
