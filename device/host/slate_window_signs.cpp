#include "slate_window_signs.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <numbers>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

/// In the colour of the line, without a line.
void fill(QPainter *painter, const QPainterPath &path)
{
    painter->fillPath(path, painter->pen().color());
}

void ray(QPainter *painter, double degrees, QPointF middle, double from, double to)
{
    const double angle = degrees * std::numbers::pi / 180;
    const QPointF direction(std::cos(angle), -std::sin(angle));
    painter->drawLine(middle + direction * from, middle + direction * to);
}

void paintCard(QPainter *painter)
{
    painter->drawPolygon(QPolygonF({{-11, -14.5}, {4, -14.5}, {11, -7.5}, {11, 14.5}, {-11, 14.5}}));
    for (const double x : {-5.5, 0.5})
        painter->drawLine(QPointF(x, -8.5), QPointF(x, -4.5));
}

void paintStick(QPainter *painter)
{
    painter->drawRoundedRect(QRectF(-9, -3.5, 18, 18), 3, 3);
    painter->drawPolyline(QPolygonF({{-6, -3.5}, {-6, -14.5}, {6, -14.5}, {6, -3.5}}));
    QPainterPath contacts;
    contacts.addRect(-3.6, -11, 2.4, 3.6);
    contacts.addRect(1.2, -11, 2.4, 3.6);
    fill(painter, contacts);
}

void paintTurn(QPainter *painter)
{
    painter->drawRoundedRect(QRectF(-6.5, -8.5, 13, 17), 2, 2);
    // Three quarters of a turn, clockwise, with the head at its end.
    const QRectF circle(-15, -15, 30, 30);
    painter->drawArc(circle, 35 * 16, 110 * 16);
    painter->drawArc(circle, 215 * 16, 110 * 16);
    painter->drawPolyline(QPolygonF({{12.8, -15}, {12.3, -8.6}, {5.9, -9.1}}));
    painter->drawPolyline(QPolygonF({{-12.8, 15}, {-12.3, 8.6}, {-5.9, 9.1}}));
}

void paintSun(QPainter *painter)
{
    painter->drawEllipse(QPointF(0, 0), 6, 6);
    for (int degrees = 0; degrees < 360; degrees += 45)
        ray(painter, degrees, {0, 0}, 11, 15);
}

void paintHalves(QPainter *painter)
{
    painter->drawEllipse(QPointF(0, 0), 14, 14);
    QPainterPath half;
    half.moveTo(0, -14);
    half.arcTo(QRectF(-14, -14, 28, 28), 90, -180);
    half.closeSubpath();
    fill(painter, half);
}

void paintMoon(QPainter *painter)
{
    QPainterPath disc;
    disc.addEllipse(QPointF(-1, 1), 13.5, 13.5);
    QPainterPath shade;
    shade.addEllipse(QPointF(6, -5), 11.5, 11.5);
    painter->drawPath(disc - shade);
}

void paintRisingSun(QPainter *painter)
{
    painter->drawLine(QPointF(-15, 10), QPointF(15, 10));
    painter->drawArc(QRectF(-7.5, 2.5, 15, 15), 0, 180 * 16);
    for (int degrees = 30; degrees <= 150; degrees += 30)
        ray(painter, degrees, {0, 10}, 13, 17.5);
}

} // namespace

void paintKeySign(QPainter *painter, const QString &key)
{
    if (key == "menu"_L1) {
        for (const double y : {-11.5, 0.0, 11.5}) {
            painter->drawLine(QPointF(-5.5, y), QPointF(15.5, y));
            QPainterPath head;
            head.addEllipse(QPointF(-14.0, y), 4.0, 4.0);
            fill(painter, head);
        }
        return;
    }
    const double tip = key == "prev"_L1 ? -16.0 : 16.0;
    const double back = tip > 0 ? -14.5 : 14.5; // where the wings of the head are, seen from the tip
    painter->drawLine(QPointF(tip, 0), QPointF(-tip, 0));
    painter->drawPolyline(QPolygonF({{tip + back, -14.5}, {tip, 0}, {tip + back, 14.5}}));
}

void paintButtonSign(QPainter *painter, DeviceButton button)
{
    switch (button) {
    case DeviceButton::Card:
        paintCard(painter);
        break;
    case DeviceButton::Usb:
        paintStick(painter);
        break;
    case DeviceButton::Turn:
        paintTurn(painter);
        break;
    case DeviceButton::Light:
        paintSun(painter);
        break;
    case DeviceButton::Invert:
        paintHalves(painter);
        break;
    case DeviceButton::Sleep:
        paintMoon(painter);
        break;
    case DeviceButton::Wake:
        paintRisingSun(painter);
        break;
    }
}

} // namespace lindenreed::remote
