// What the sample pictures are painted on and with: colours in floating point, noise, soft shapes.

#pragma once

#include <QImage>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace lindenreed::samples {

/// A place in the picture: the shorter side is 1 long, the longer one 4/3; origin at the top left.
struct Point
{
    float x = 0;
    float y = 0;
};

inline Point operator+(Point a, Point b)
{
    return {a.x + b.x, a.y + b.y};
}
inline Point operator-(Point a, Point b)
{
    return {a.x - b.x, a.y - b.y};
}
inline Point operator*(Point a, float factor)
{
    return {a.x * factor, a.y * factor};
}
inline float length(Point a)
{
    return std::sqrt(a.x * a.x + a.y * a.y);
}

/// Red, green and blue as on the screen, 0 to 1; brighter values are cut off at the end.
struct Colour
{
    float r = 0;
    float g = 0;
    float b = 0;
};

inline Colour operator+(Colour a, Colour b)
{
    return {a.r + b.r, a.g + b.g, a.b + b.b};
}
inline Colour operator*(Colour a, float factor)
{
    return {a.r * factor, a.g * factor, a.b * factor};
}
inline Colour operator*(Colour a, Colour b)
{
    return {a.r * b.r, a.g * b.g, a.b * b.b};
}

inline float mix(float a, float b, float t)
{
    return a + (b - a) * t;
}
inline Colour mix(Colour a, Colour b, float t)
{
    return a * (1 - t) + b * t;
}
inline float unit(float value)
{
    return std::clamp(value, 0.0F, 1.0F);
}

/// 0 up to `from`, 1 from `to` on, soft in between; `from` may be the larger one.
inline float smooth(float from, float to, float value)
{
    const float t = unit((value - from) / (to - from));
    return t * t * (3 - 2 * t);
}

/// A bell of height 1 around 0.
inline float bell(float value, float width)
{
    return std::exp(-value * value / (width * width));
}

/// The same numbers on every machine.
class Random
{
public:
    explicit Random(std::uint32_t seed)
        : m_state(seed * 2654435761U + 12345U)
    {
    }
    float next(); ///< 0 to 1
    float between(float a, float b) { return mix(a, b, next()); }

private:
    std::uint64_t m_state;
};

/// Smooth noise about 0, within -1 and 1, features about 1 apart.
float noise(Point p, std::uint32_t seed);

/// Noise over noise, each twice as fine and half as strong; within -1 and 1.
float layeredNoise(Point p, int layers, std::uint32_t seed);

/// The same with sharp crests, 0 to 1.
float ridgedNoise(Point p, int layers, std::uint32_t seed);

class Canvas
{
public:
    // The shape of six-inch panels: what fills the screen is then dithered once and not enlarged.
    static constexpr int shortSide = 1600; ///< pixels
    static constexpr int longSide = 2161;
    static constexpr float pixel = 1.0F / shortSide;

    enum class Format { Portrait, Landscape };
    explicit Canvas(Format format);

    int width() const { return m_width; }
    int height() const { return m_height; }
    Colour &at(int x, int y) { return m_pixels[std::size_t(y) * std::size_t(m_width) + std::size_t(x)]; }
    Colour at(Point p) const; ///< the nearest pixel's; places outside count as the border's
    static Point centre(int x, int y) { return {(float(x) + 0.5F) * pixel, (float(y) + 0.5F) * pixel}; }

    /// shader(Point, Colour so far) gives the new colour, for every pixel or those of a rectangle.
    template <typename Shader>
    void paint(Shader shader)
    {
        paint({0, 0}, {float(m_width) * pixel, float(m_height) * pixel}, shader);
    }
    template <typename Shader>
    void paint(Point topLeft, Point bottomRight, Shader shader)
    {
        const int left = std::max(0, int(std::floor(topLeft.x / pixel)));
        const int top = std::max(0, int(std::floor(topLeft.y / pixel)));
        const int right = std::min(m_width, int(std::ceil(bottomRight.x / pixel)) + 1);
        const int bottom = std::min(m_height, int(std::ceil(bottomRight.y / pixel)) + 1);
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x)
                at(x, y) = shader(centre(x, y), at(x, y));
        }
    }

    /// A line with round ends that may taper, `opacity` 0 to 1. Thinner than a pixel it fades instead.
    void stroke(Point from, float fromRadius, Point to, float toRadius, Colour colour, float opacity = 1);

    /// A round spot, `softness` of its radius blurred.
    void spot(Point middle, float radius, Colour colour, float opacity, float softness);

    /// Adds light that falls off from the middle.
    void glow(Point middle, float radius, Colour light);

    void blur(float radius);

    /// Darkens the corners a little, as a lens does, and adds the grain of a print.
    void finish(float vignette, float grain, std::uint32_t seed);

    QImage image() const;

private:
    void blurAlong(bool rows, int reach);

    int m_width;
    int m_height;
    std::vector<Colour> m_pixels;
};

} // namespace lindenreed::samples
