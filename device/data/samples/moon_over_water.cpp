// A full moon, its path on the water, a boat in it.

#include "pictures.h"

namespace lindenreed::samples {

namespace {

constexpr Point moon{0.56F, 0.36F};
constexpr float moonRadius = 0.085F;
constexpr float horizon = 0.83F;
constexpr Colour moonlight{0.98F, 0.94F, 0.84F};

Colour sky(Point p)
{
    const Colour high{0.030F, 0.050F, 0.100F};
    const Colour low{0.30F, 0.36F, 0.46F};
    const Colour colour = mix(high, low, std::pow(unit(p.y / horizon), 1.7F));
    const float distance = length(p - moon);
    return colour + Colour{0.30F, 0.31F, 0.31F} * (bell(distance, 0.30F) + 0.6F * bell(distance, 0.12F));
}

void paintStars(Canvas &canvas)
{
    Random random(5);
    for (int i = 0; i < 420; ++i) {
        const Point place{random.next(), random.next() * 0.72F};
        const float bright = std::pow(random.next(), 5.0F);
        const float clear = smooth(0.20F, 0.45F, length(place - moon));
        canvas.spot(place, 0.0012F + 0.0022F * bright, {0.9F, 0.93F, 1.0F}, (0.25F + 0.75F * bright) * clear,
                    0.7F);
    }
}

void paintMoon(Canvas &canvas)
{
    const float outer = moonRadius + 2 * Canvas::pixel;
    canvas.paint(moon - Point{outer, outer}, moon + Point{outer, outer}, [](Point p, Colour under) {
        const Point place = (p - moon) * (1 / moonRadius);
        const float distance = length(place);
        const float seas = smooth(0.02F, 0.30F, layeredNoise(place * 1.5F + Point{3.2F, 1.4F}, 5, 77));
        const float craters = layeredNoise(place * 9, 4, 78) * 0.09F;
        const float limb = 1 - 0.20F * std::pow(unit(distance), 4.0F);
        const Colour ground = moonlight * ((1.02F - 0.27F * seas + craters) * limb);
        return mix(under, ground, unit((moonRadius - length(p - moon)) / Canvas::pixel + 0.5F));
    });
}

void paintClouds(Canvas &canvas)
{
    canvas.paint({0, 0}, {1, horizon}, [](Point p, Colour under) {
        const Point bent{p.x * 2.0F + 0.5F * layeredNoise(p * 3, 3, 31), p.y * 6.5F};
        const float thick = smooth(0.02F, 0.46F,
                                   layeredNoise(bent, 6, 34) + 0.24F * bell(p.y - 0.50F, 0.12F)
                                       + 0.16F * bell(p.y - 0.20F, 0.07F) - 0.06F);
        const float lit = bell(length(p - moon), 0.33F);
        const float rim = thick * (1 - thick) * 4;
        const Colour body = mix(Colour{0.085F, 0.105F, 0.15F}, {0.42F, 0.43F, 0.44F}, lit * 0.75F);
        return mix(under, body + Colour{0.55F, 0.53F, 0.48F} * (rim * lit * 0.75F), thick * 0.80F);
    });
}

void paintCoast(Canvas &canvas)
{
    const auto coast = [&](float rise, float fromX, float toX, Colour colour, std::uint32_t seed) {
        canvas.paint({0, horizon - 0.2F}, {1, horizon}, [&](Point p, Colour under) {
            const float height
                = rise * smooth(fromX, toX, p.x) * (0.62F + 0.5F * layeredNoise({p.x * 4, 2}, 6, seed));
            return mix(under, colour, unit((p.y - (horizon - height)) / Canvas::pixel + 0.5F));
        });
    };
    coast(0.115F, 0.62F, -0.25F, {0.165F, 0.205F, 0.265F}, 14);
    coast(0.070F, 0.70F, 1.12F, {0.125F, 0.160F, 0.215F}, 15);
}

void paintWater(Canvas &canvas)
{
    canvas.paint({0, horizon}, {1, 1.36F}, [](Point p, Colour) {
        const float depth = p.y - horizon + 0.004F;
        const float away = 0.09F / depth; // distance on the water
        const Point place{(p.x - 0.5F) * away * 9, away * 26};
        const float swell = layeredNoise(place, 5, 53);
        const float chop = layeredNoise(place * 3.3F, 3, 54);
        const float tilt = swell * 0.75F + chop * 0.45F;

        const float mirrored = std::max(0.0F, horizon - depth * 1.9F - tilt * 0.22F);
        Colour colour = sky({p.x + tilt * 0.05F, mirrored}) * 0.62F * (0.80F + 0.55F * tilt);
        // The steeper a ripple must stand to show the moon, the rarer it is.
        const float aside = std::abs(p.x - moon.x + 0.018F * swell) / (0.045F + depth * 0.30F);
        const float glint = smooth(-0.34F, 0.30F, tilt - aside * aside * 0.62F + 0.10F);
        const float fade = 0.72F + 0.28F * smooth(0.45F, 0.02F, depth);
        colour = colour + moonlight * (glint * fade * smooth(1.7F, 0.3F, aside));
        return colour + Colour{0.020F, 0.026F, 0.036F} * smooth(0.15F, 0.45F, depth);
    });
}

void paintBoat(Canvas &canvas)
{
    const Point hull{0.472F, 0.902F};
    const Colour dark{0.018F, 0.024F, 0.038F};
    const auto triangle = [&](Point a, Point b, Point c, Colour colour, float opacity) {
        const auto side = [](Point from, Point to, Point p) {
            const Point way = to - from;
            return ((p.x - from.x) * way.y - (p.y - from.y) * way.x) / length(way);
        };
        const float turn = side(a, b, c) > 0 ? 1.0F : -1.0F;
        canvas.paint({std::min({a.x, b.x, c.x}), std::min({a.y, b.y, c.y})},
                     {std::max({a.x, b.x, c.x}), std::max({a.y, b.y, c.y})}, [&](Point p, Colour under) {
                         const float inside
                             = std::min({side(a, b, p) * turn, side(b, c, p) * turn, side(c, a, p) * turn});
                         return mix(under, colour, unit(inside / Canvas::pixel + 0.5F) * opacity);
                     });
    };
    // Reflection first, broken by the ripples.
    canvas.paint(hull + Point{-0.09F, 0.004F}, hull + Point{0.09F, 0.20F}, [&](Point p, Colour under) {
        const float down = p.y - hull.y;
        const float sway = 0.020F * layeredNoise({p.x * 22, p.y * 120}, 3, 91) * (0.4F + down * 7);
        const float width = 0.047F * (1 - down / 0.21F);
        const float inside = smooth(width, width * 0.72F, std::abs(p.x - hull.x + sway - 0.004F));
        return mix(under, dark, inside * 0.80F * smooth(0.20F, 0.02F, down));
    });
    const Point mastFoot = hull + Point{-0.004F, -0.004F};
    const Point mastTop = hull + Point{0.004F, -0.178F};
    triangle(mastTop + Point{0.003F, 0.006F}, hull + Point{0.004F, -0.022F}, hull + Point{0.064F, -0.022F},
             {0.050F, 0.060F, 0.080F}, 1);
    triangle(mastTop + Point{-0.004F, 0.018F}, hull + Point{-0.010F, -0.022F}, hull + Point{-0.050F, -0.016F},
             {0.080F, 0.090F, 0.110F}, 1);
    canvas.stroke(mastFoot, 0.0022F, mastTop, 0.0012F, dark);
    triangle(hull + Point{-0.058F, -0.014F}, hull + Point{0.066F, -0.012F}, hull + Point{0.046F, 0.010F},
             dark, 1);
    triangle(hull + Point{-0.058F, -0.014F}, hull + Point{0.046F, 0.010F}, hull + Point{-0.042F, 0.010F},
             dark, 1);
    canvas.spot(hull + Point{0.040F, -0.022F}, 0.0065F, dark, 1, 0.2F);
    canvas.stroke(hull + Point{0.040F, -0.020F}, 0.006F, hull + Point{0.036F, -0.006F}, 0.008F, dark);
}

void paintReeds(Canvas &canvas)
{
    Random random(19);
    const Colour dark{0.012F, 0.016F, 0.026F};
    for (int i = 0; i < 62; ++i) {
        const float x = std::pow(random.next(), 1.7F) * 0.40F - 0.03F;
        Point from{x, 1.37F};
        const float height = random.between(0.10F, 0.34F) * (1 - x * 1.3F);
        float lean = random.between(-0.16F, 0.30F);
        const float thick = random.between(0.0012F, 0.0028F);
        constexpr int parts = 9;
        for (int part = 0; part < parts; ++part) {
            lean += 0.035F * (random.next() - 0.2F);
            const Point to{from.x + lean * height / parts, from.y - height / parts};
            const float taper = 1 - float(part) / parts;
            canvas.stroke(from, thick * (0.25F + taper), to, thick * (0.15F + taper), dark);
            from = to;
        }
        if (i % 4 == 0)
            canvas.stroke(from + Point{0, 0.006F}, 0.0052F, from + Point{-lean * 0.05F, 0.046F}, 0.0052F,
                          dark);
    }
}

} // namespace

Canvas moonOverWater()
{
    Canvas canvas(Canvas::Format::Portrait);
    canvas.paint([](Point p, Colour) { return sky(p); });
    paintStars(canvas);
    paintMoon(canvas);
    paintClouds(canvas);
    paintCoast(canvas);
    paintWater(canvas);
    paintBoat(canvas);
    paintReeds(canvas);
    canvas.finish(0.18F, 0.012F, 2);
    return canvas;
}

} // namespace lindenreed::samples
