#include "slate_window_body.h"

#include "slate_window_signs.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

constexpr int bezel = 56;
constexpr int chin = 132;
constexpr int outerRadius = 36;
constexpr int panelLine = 2;
constexpr int keyWidth = 132;
constexpr int keyHeight = 96;

constexpr QRgb panelLineColour = 0xff111111;

constexpr int strongestLight = 8; ///< percent, at full brightness
constexpr std::array coldWhite{196, 222, 255};
constexpr std::array warmWhite{255, 208, 132};

/// From left to right; each name is also the protocol's.
const QStringList &keys()
{
    static const QStringList names = {u"prev"_s, u"menu"_s, u"next"_s};
    return names;
}

} // namespace

QRegion roundedRegion(const QRect &rectangle, int radius)
{
    QRegion region(rectangle);
    // Row by row at the corners: the smoothed edge belongs to it, so rows end at its outermost pixel.
    for (int y = 0; y < radius; ++y) {
        const double height = radius - (y + 1);
        const int gap = int(std::floor(radius - std::sqrt(double(radius) * radius - height * height)));
        for (const int row : {rectangle.top() + y, rectangle.bottom() - y}) {
            region -= QRect(rectangle.left(), row, gap, 1);
            region -= QRect(rectangle.right() + 1 - gap, row, gap, 1);
        }
    }
    return region;
}

DeviceBody::DeviceBody(QSize panel, double divisor)
    : m_panel(panel)
    , m_divisor(std::max(1.0, divisor))
{
}

int DeviceBody::scaled(int length) const
{
    return std::max(1, int(std::lround(length / m_divisor)));
}

QSize DeviceBody::size() const
{
    const QRect inner = panel();
    return {inner.width() + 2 * scaled(bezel), inner.height() + scaled(bezel) + scaled(chin)};
}

QRect DeviceBody::panel() const
{
    return {scaled(bezel), scaled(bezel), std::max(1, int(m_panel.width() / m_divisor)),
            std::max(1, int(m_panel.height() / m_divisor))};
}

QRegion DeviceBody::outline() const
{
    return roundedRegion(QRect(QPoint(0, 0), size()), scaled(outerRadius));
}

QPoint DeviceBody::panelPixel(QPoint point) const
{
    const auto pixel = [this](int distance, int length) {
        return std::clamp(int(std::floor((distance + 0.5) * m_divisor)), 0, std::max(0, length - 1));
    };
    const QPoint inside = point - panel().topLeft();
    return {pixel(inside.x(), m_panel.width()), pixel(inside.y(), m_panel.height())};
}

QRect DeviceBody::keyRectangle(const QString &key) const
{
    const QRect inner = panel();
    const QSize target(scaled(keyWidth), scaled(keyHeight));
    const int fromMiddle = int(keys().indexOf(key)) - 1;
    const int centreX = inner.left() + inner.width() / 2 + fromMiddle * target.width();
    const int centreY = inner.top() + inner.height() + scaled(chin) / 2;
    return {QPoint(centreX - target.width() / 2, centreY - target.height() / 2), target};
}

std::optional<QString> DeviceBody::keyAt(QPoint point) const
{
    for (const QString &key : keys()) {
        if (keyRectangle(key).contains(point))
            return key;
    }
    return std::nullopt;
}

void DeviceBody::paint(QPainter *painter, const QString &pressedKey) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(QColor::fromRgb(bodyColour));
    painter->drawRoundedRect(QRect(QPoint(0, 0), size()), scaled(outerRadius), scaled(outerRadius));
    painter->setRenderHint(QPainter::Antialiasing, false);
    const int line = scaled(panelLine);
    painter->fillRect(panel().adjusted(-line, -line, line, line), QColor::fromRgb(panelLineColour));

    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    for (const QString &key : keys()) {
        painter->save();
        painter->translate(QRectF(keyRectangle(key)).center());
        painter->scale(1.0 / m_divisor, 1.0 / m_divisor);
        painter->setPen(QPen(QColor::fromRgb(key == pressedKey ? pressedSignColour : signColour), signLine,
                             Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        paintKeySign(painter, key);
        painter->restore();
    }
    painter->restore();
}

QImage shownPanel(const QImage &upright, QSize size, bool lightOn, int brightness, int colour)
{
    QImage shown = upright;
    if (size != upright.size()) // the mean of all that falls on a pixel
        shown
            = upright.scaled(size.boundedTo(upright.size()), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    shown = std::move(shown).convertToFormat(QImage::Format_RGB32);
    if (!lightOn || brightness <= 0)
        return shown;

    // The light falls on all of the panel, but ink swallows it: its share falls with the pixel's own
    // lightness.
    std::array<int, 3> white{};
    const int warmth = std::clamp(colour, 0, 100);
    for (std::size_t i = 0; i < white.size(); ++i)
        white[i] = (coldWhite[i] * (100 - warmth) + warmWhite[i] * warmth) / 100;
    const int share
        = strongestLight * std::clamp(brightness, 0, 100); // of 100 * 100 * 255 with the lightness
    const auto lit
        = [](int value, int light, int weight) { return value + (light - value) * weight / 2'550'000; };
    for (int y = 0; y < shown.height(); ++y) {
        auto *pixels = static_cast<QRgb *>(static_cast<void *>(shown.scanLine(y)));
        for (int x = 0; x < shown.width(); ++x) {
            const QRgb pixel = pixels[x];
            const int weight = share * qGray(pixel);
            pixels[x] = qRgb(lit(qRed(pixel), white[0], weight), lit(qGreen(pixel), white[1], weight),
                             lit(qBlue(pixel), white[2], weight));
        }
    }
    return shown;
}

} // namespace lindenreed::remote
