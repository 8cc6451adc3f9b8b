// The device around the panel: where its parts are and how they look.

#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <QRegion>
#include <QString>

#include <optional>

class QPainter;

namespace lindenreed::remote {

inline constexpr QRgb bodyColour = 0xff2e2f31;
inline constexpr QRgb signColour = 0xff8a8c8f;
inline constexpr QRgb pressedSignColour = 0xffffffff;

/// Every pixel that a rectangle with smoothed round corners touches.
QRegion roundedRegion(const QRect &rectangle, int radius);

/// Measures of the device on the desk, in pixels of the display, from the body's top left corner. A divisor
/// of n, at least 1, shows everything at 1/n.
class DeviceBody
{
public:
    /// `panel`: the panel's size as the user holds it.
    explicit DeviceBody(QSize panel = {}, double divisor = 1);

    QSize size() const;
    QRect panel() const;
    QRegion outline() const; ///< every pixel that the body touches
    double divisor() const { return m_divisor; }

    /// The panel pixel under a point; one outside comes back as the nearest inside, for a finger that has
    /// left it.
    QPoint panelPixel(QPoint point) const;

    /// Which of the three keys is under a point: "prev", "menu" or "next".
    std::optional<QString> keyAt(QPoint point) const;
    QRect keyRectangle(const QString &key) const;

    /// Body and keys, without the panel's pixels. `pressedKey`: the one that a finger is on, else empty.
    void paint(QPainter *painter, const QString &pressedKey) const;

private:
    int scaled(int length) const;

    QSize m_panel;
    double m_divisor;
};

/// The panel in `size`, never larger than it is, with the light over its paper. `brightness` and `colour` are
/// 0 to 100, colour from cold to warm.
QImage shownPanel(const QImage &upright, QSize size, bool lightOn, int brightness, int colour);

} // namespace lindenreed::remote
