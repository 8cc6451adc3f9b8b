#include "canvas.h"

namespace lindenreed::samples {

namespace {

std::uint32_t scrambled(std::uint32_t value)
{
    value ^= value >> 16;
    value *= 0x7feb352dU;
    value ^= value >> 15;
    value *= 0x846ca68bU;
    value ^= value >> 16;
    return value;
}

std::uint32_t hashed(int x, int y, std::uint32_t seed)
{
    return scrambled(std::uint32_t(x) * 0x9e3779b9U ^ (std::uint32_t(y) * 0x85ebca6bU + seed * 0xc2b2ae35U));
}

/// std::floor() is a call into the library on processors of the basic kind, and noise asks for nothing more
/// often.
int roundedDown(float value)
{
    const int towardsZero = int(value);
    return towardsZero - (value < float(towardsZero) ? 1 : 0);
}

/// The slope that noise has at a corner of its grid, times the way from there.
float slopeAt(int x, int y, float dx, float dy, std::uint32_t seed)
{
    const std::uint32_t bits = hashed(x, y, seed);
    const float slopeX = float(bits & 0xffffU) / 32767.5F - 1;
    const float slopeY = float(bits >> 16) / 32767.5F - 1;
    return slopeX * dx + slopeY * dy;
}

std::uint8_t byteOf(float value)
{
    return static_cast<std::uint8_t>(std::lround(unit(value) * 255));
}

} // namespace

float Random::next()
{
    m_state = m_state * 6364136223846793005ULL + 1442695040888963407ULL;
    return float(m_state >> 40) / float(1 << 24);
}

float noise(Point p, std::uint32_t seed)
{
    const int x = roundedDown(p.x);
    const int y = roundedDown(p.y);
    const float dx = p.x - float(x);
    const float dy = p.y - float(y);
    const float u = dx * dx * dx * (dx * (dx * 6 - 15) + 10);
    const float v = dy * dy * dy * (dy * (dy * 6 - 15) + 10);
    const float upper = mix(slopeAt(x, y, dx, dy, seed), slopeAt(x + 1, y, dx - 1, dy, seed), u);
    const float lower
        = mix(slopeAt(x, y + 1, dx, dy - 1, seed), slopeAt(x + 1, y + 1, dx - 1, dy - 1, seed), u);
    return std::clamp(mix(upper, lower, v) * 1.4F, -1.0F, 1.0F);
}

float layeredNoise(Point p, int layers, std::uint32_t seed)
{
    float sum = 0;
    float strength = 0.5F;
    for (int i = 0; i < layers; ++i) {
        sum += noise(p, seed + std::uint32_t(i)) * strength;
        strength *= 0.5F;
        p = {p.x * 1.99F + 17.3F, p.y * 1.99F - 9.1F};
    }
    return sum;
}

float ridgedNoise(Point p, int layers, std::uint32_t seed)
{
    float sum = 0;
    float strength = 0.5F;
    float weight = 1;
    for (int i = 0; i < layers; ++i) {
        float crest = 1 - std::abs(noise(p, seed + std::uint32_t(i)));
        crest *= crest;
        sum += crest * strength * weight;
        weight = unit(crest * 1.6F);
        strength *= 0.5F;
        p = {p.x * 2.03F + 5.7F, p.y * 2.03F + 31.4F};
    }
    return sum;
}

Canvas::Canvas(Format format)
    : m_width(format == Format::Portrait ? shortSide : longSide)
    , m_height(format == Format::Portrait ? longSide : shortSide)
    , m_pixels(std::size_t(m_width) * std::size_t(m_height))
{
}

Colour Canvas::at(Point p) const
{
    const int x = std::clamp(int(p.x / pixel), 0, m_width - 1);
    const int y = std::clamp(int(p.y / pixel), 0, m_height - 1);
    return m_pixels[std::size_t(y) * std::size_t(m_width) + std::size_t(x)];
}

void Canvas::stroke(Point from, float fromRadius, Point to, float toRadius, Colour colour, float opacity)
{
    const float reach = std::max(fromRadius, toRadius) + pixel;
    const Point way = to - from;
    const float wayLength = way.x * way.x + way.y * way.y;
    paint({std::min(from.x, to.x) - reach, std::min(from.y, to.y) - reach},
          {std::max(from.x, to.x) + reach, std::max(from.y, to.y) + reach}, [&](Point p, Colour under) {
              const Point offset = p - from;
              const float along = wayLength > 0 ? unit((offset.x * way.x + offset.y * way.y) / wayLength) : 0;
              const float radius = mix(fromRadius, toRadius, along);
              const float distance = length(offset - way * along);
              const float thin = std::min(1.0F, radius / (pixel * 0.5F));
              const float edge = std::max(radius, pixel * 0.5F);
              return mix(under, colour, unit((edge - distance) / pixel + 0.5F) * thin * opacity);
          });
}

void Canvas::spot(Point middle, float radius, Colour colour, float opacity, float softness)
{
    const float outer = radius + pixel;
    paint({middle.x - outer, middle.y - outer}, {middle.x + outer, middle.y + outer},
          [&](Point p, Colour under) {
              const float inner = std::min(radius * (1 - softness), radius - pixel);
              return mix(under, colour, smooth(radius, inner, length(p - middle)) * opacity);
          });
}

void Canvas::glow(Point middle, float radius, Colour light)
{
    paint([&](Point p, Colour under) {
        const float distance = length(p - middle) / radius;
        return under + light * (1 / (1 + distance * distance * 4)) * smooth(6, 1, distance);
    });
}

void Canvas::blurAlong(bool rows, int reach)
{
    const int lines = rows ? m_height : m_width;
    const int count = rows ? m_width : m_height;
    const float share = 1.0F / float(2 * reach + 1);
    std::vector<Colour> line(static_cast<std::size_t>(count));
    const auto pixelOf
        = [&](int index, int place) -> Colour & { return rows ? at(place, index) : at(index, place); };
    for (int index = 0; index < lines; ++index) {
        for (int place = 0; place < count; ++place)
            line[std::size_t(place)] = pixelOf(index, place);
        const auto clamped = [&](int place) { return line[std::size_t(std::clamp(place, 0, count - 1))]; };
        Colour sum;
        for (int place = -reach; place <= reach; ++place)
            sum = sum + clamped(place);
        for (int place = 0; place < count; ++place) {
            pixelOf(index, place) = sum * share;
            sum = sum + clamped(place + reach + 1) + clamped(place - reach) * -1;
        }
    }
}

void Canvas::blur(float radius)
{
    // Three boxes in a row are close to a bell.
    const int reach = std::max(1, int(radius / pixel * 0.6F));
    for (int i = 0; i < 3; ++i) {
        blurAlong(true, reach);
        blurAlong(false, reach);
    }
}

void Canvas::finish(float vignette, float grain, std::uint32_t seed)
{
    const Point middle = centre(m_width / 2, m_height / 2);
    paint([&](Point p, Colour under) {
        const float corner = length(p - middle) / length(middle);
        const float light = 1 - vignette * corner * corner * corner;
        const float dust = noise(p * 520, seed) * grain;
        return under * light + Colour{dust, dust, dust};
    });
}

QImage Canvas::image() const
{
    QImage result(m_width, m_height, QImage::Format_RGB888);
    for (int y = 0; y < m_height; ++y) {
        std::uint8_t *bytes = result.scanLine(y);
        for (int x = 0; x < m_width; ++x) {
            const Colour &colour = m_pixels[std::size_t(y) * std::size_t(m_width) + std::size_t(x)];
            *bytes++ = byteOf(colour.r);
            *bytes++ = byteOf(colour.g);
            *bytes++ = byteOf(colour.b);
        }
    }
    return result;
}

} // namespace lindenreed::samples
