#include "slate_window_strip.h"

#include "slate_window_body.h"
#include "slate_window_signs.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace lindenreed::remote {

namespace {

constexpr int largestButton = 72;
constexpr int smallestButton = 36; ///< logical pixels: a mouse still finds it
constexpr double unitsAcross = 68; ///< signs are drawn in 32 of these
constexpr double gapAcross = 72.0 / 16; ///< gap to the body and margins are this part of a button
constexpr double topAcross = 56.0 / 72; ///< the panel begins this much below the body's upper edge

constexpr QRgb onColour = 0xffe4e5e7;
constexpr QRgb unavailableColour = 0xff4c4e51;

} // namespace

ButtonStrip::ButtonStrip(QSize body, double divisor, double ratio)
    : m_button(std::max(int(std::lround(largestButton / divisor)), int(std::lround(smallestButton * ratio))))
    , m_margin(int(std::lround(m_button / gapAcross / 2)))
{
    const int gap = int(std::lround(m_button / gapAcross));
    const int height = int(deviceButtons.size()) * m_button + 2 * m_margin;
    const int top = std::clamp(int(std::lround(topAcross * largestButton / divisor)), 0,
                               std::max(0, body.height() - height));
    m_plate = QRect(body.width() + gap, top, m_button, height);
}

QRegion ButtonStrip::outline() const
{
    return roundedRegion(m_plate, m_button / 4);
}

QRect ButtonStrip::buttonRectangle(DeviceButton button) const
{
    return {m_plate.left(), m_plate.top() + m_margin + int(button) * m_button, m_button, m_button};
}

std::optional<DeviceButton> ButtonStrip::buttonAt(QPoint point) const
{
    for (const DeviceButton button : deviceButtons) {
        if (buttonRectangle(button).contains(point))
            return button;
    }
    return std::nullopt;
}

void ButtonStrip::paint(QPainter *painter, const ButtonStates &states,
                        std::optional<DeviceButton> pressed) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(QColor::fromRgb(bodyColour));
    const double radius = m_button / 4.0;
    painter->drawRoundedRect(m_plate, radius, radius);
    painter->setBrush(Qt::NoBrush);
    for (const DeviceButton button : deviceButtons) {
        painter->save();
        painter->translate(QRectF(buttonRectangle(button)).center());
        painter->scale(m_button / unitsAcross, m_button / unitsAcross);
        const QRgb colour = !states.isAvailable(button) ? unavailableColour
            : button == pressed                         ? pressedSignColour
            : states.isOn(button)                       ? onColour
                                                        : signColour;
        painter->setPen(QPen(QColor::fromRgb(colour), signLine, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        paintButtonSign(painter, button);
        if (states.isOn(button)) { // a lamp at the edge: not by brightness alone
            painter->setPen(Qt::NoPen);
            painter->setBrush(QColor::fromRgb(colour));
            painter->drawEllipse(QPointF(-26, 0), 2.6, 2.6);
        }
        painter->restore();
    }
    painter->restore();
}

} // namespace lindenreed::remote
