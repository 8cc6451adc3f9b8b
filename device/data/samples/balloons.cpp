// Hot-air balloons over a valley at sunrise.

#include "pictures.h"

#include <array>
#include <numbers>

namespace lindenreed::samples {

namespace {

constexpr Colour warmMist{0.96F, 0.86F, 0.74F};

Colour sky(Point p)
{
    const Colour high{0.40F, 0.54F, 0.68F};
    const Colour middle{0.82F, 0.82F, 0.80F};
    const Colour low{1.0F, 0.88F, 0.72F};
    Colour colour = mix(high, middle, smooth(-0.10F, 0.62F, p.y));
    colour = mix(colour, low, smooth(0.50F, 0.98F, p.y));
    const float cirrus = layeredNoise({p.x * 1.3F + p.y * 1.1F, p.y * 5 - p.x * 1.4F}, 6, 15);
    return mix(colour, {0.99F, 0.96F, 0.92F},
               0.50F * smooth(0.02F, 0.42F, cirrus) * smooth(0.75F, 0.30F, p.y));
}

struct Balloon
{
    Point middle; ///< of the envelope's widest part
    float radius;
    std::array<Colour, 2> cloth;
    int gores;
    float turn;
    int pattern; ///< 0: stripes, 1: rings, 2: a zigzag band
    float haze;
};

/// Half the envelope's width, for -1 at the crown to 1.42 at the mouth.
float outline(float down)
{
    if (down < 0)
        return std::sqrt(std::max(0.0F, 1 - down * down));
    const float t = down / 1.42F;
    return std::max(0.0F, 1 - 0.42F * t * t - 0.40F * std::pow(t, 2.6F));
}

Colour clothAt(const Balloon &balloon, float around, float down)
{
    const float gore = around / (2 * std::numbers::pi_v<float>)*float(balloon.gores);
    const int number = int(std::floor(gore));
    const float withinGore = gore - std::floor(gore);
    bool second = false;
    if (balloon.pattern == 0)
        second = number % 2 != 0;
    else if (balloon.pattern == 1)
        second = (down > -0.62F && down < -0.32F) || (down > 0.10F && down < 0.42F) || down > 1.02F;
    else
        second = std::abs(down + 0.02F - 0.30F * std::abs(withinGore - 0.5F)) < 0.21F || down < -0.80F
            || down > 1.0F;
    const Colour colour = balloon.cloth[second ? 1 : 0];
    // Seams draw the cloth in; between them it bulges.
    const float seam = std::min(withinGore, 1 - withinGore);
    return colour * (0.80F + 0.20F * smooth(0.0F, 0.16F, seam))
        * (0.96F + 0.06F * std::cos((withinGore - 0.5F) * 3));
}

void paintBasket(Canvas &canvas, const Balloon &balloon, Colour air)
{
    const Point mouth = balloon.middle + Point{0, balloon.radius * 1.42F};
    const float size = balloon.radius * 0.125F;
    const Point basket = mouth + Point{0, balloon.radius * 0.36F};
    const Colour rope = mix(Colour{0.14F, 0.12F, 0.11F}, air, balloon.haze);
    for (const float side : {-1.0F, -0.4F, 0.4F, 1.0F})
        canvas.stroke(mouth + Point{side * balloon.radius * 0.17F, -balloon.radius * 0.02F},
                      balloon.radius * 0.006F, basket + Point{side * size, 0}, balloon.radius * 0.006F, rope);
    canvas.paint(basket - Point{size * 1.2F, 0}, basket + Point{size * 1.2F, size * 1.5F},
                 [&](Point p, Colour under) {
                     const Point place = (p - basket) * (1 / size);
                     const float half = 1 - 0.10F * place.y;
                     const float weave = 0.85F + 0.25F * std::sin(place.x * 17) * std::sin(place.y * 19);
                     const float light = 0.70F + 0.45F * place.x;
                     const Colour wicker = place.y < 0.16F ? Colour{0.22F, 0.14F, 0.09F}
                                                           : Colour{0.47F, 0.31F, 0.18F} * (weave * light);
                     const float inside = unit((half - std::abs(place.x)) * size / Canvas::pixel + 0.5F)
                         * unit((1.4F - place.y) * size / Canvas::pixel + 0.5F);
                     return mix(under, mix(wicker, air, balloon.haze), inside);
                 });
    for (const float side : {-0.45F, 0.35F}) {
        canvas.spot(basket + Point{side * size, -size * 0.42F}, size * 0.20F, rope, 1, 0.1F);
        canvas.stroke(basket + Point{side * size, -size * 0.20F}, size * 0.20F,
                      basket + Point{side * size, 0}, size * 0.26F, rope);
    }
    canvas.glow(mouth + Point{0, balloon.radius * 0.06F}, balloon.radius * 0.035F,
                Colour{0.5F, 0.36F, 0.16F} * (1 - balloon.haze));
}

void paintBalloon(Canvas &canvas, const Balloon &balloon)
{
    const Colour air = mix(sky(balloon.middle), warmMist, 0.25F);
    paintBasket(canvas, balloon, air);
    const float radius = balloon.radius;
    canvas.paint(balloon.middle - Point{radius * 1.02F, radius * 1.02F},
                 balloon.middle + Point{radius * 1.02F, radius * 1.44F}, [&](Point p, Colour under) {
                     const float down = (p.y - balloon.middle.y) / radius;
                     const float half = outline(down) * radius;
                     const float inside
                         = unit((half - std::abs(p.x - balloon.middle.x)) / Canvas::pixel + 0.5F)
                         * unit((1.42F - down) * radius / Canvas::pixel + 0.5F);
                     if (inside <= 0)
                         return under;
                     const float across
                         = half > 0 ? std::clamp((p.x - balloon.middle.x) / half, -1.0F, 1.0F) : 0;
                     const float around = std::asin(across);
                     // The sun stands low on the right; the sky lights the left.
                     const float tilt = down < 0 ? -down : -down * 0.45F;
                     const float facing = std::cos(around - 0.95F) * 0.88F + tilt * 0.30F;
                     const float light = 0.40F + 0.70F * smooth(-0.45F, 1.05F, facing);
                     Colour colour = clothAt(balloon, around + balloon.turn, down) * light;
                     colour = colour + Colour{0.05F, 0.06F, 0.08F} * smooth(0.2F, -0.9F, across);
                     colour = colour + Colour{0.30F, 0.25F, 0.16F} * std::pow(unit(facing * 0.88F), 9.0F);
                     if (down > 1.30F)
                         colour = colour * 0.62F;
                     return mix(under, mix(colour, air, balloon.haze), inside);
                 });
}

void paintHills(Canvas &canvas)
{
    const struct
    {
        float base, swell, detail;
        Colour colour;
        float mist;
        std::uint32_t seed;
    } rows[] = {
        {0.975F, 0.075F, 2.6F, {0.74F, 0.71F, 0.70F}, 0.10F, 71},
        {1.020F, 0.085F, 2.1F, {0.60F, 0.60F, 0.61F}, 0.11F, 74},
        {1.075F, 0.080F, 2.4F, {0.44F, 0.47F, 0.48F}, 0.12F, 77},
        {1.140F, 0.075F, 1.9F, {0.29F, 0.34F, 0.34F}, 0.14F, 80},
        {1.245F, 0.085F, 1.5F, {0.135F, 0.170F, 0.155F}, 0.60F, 83},
    };
    for (const auto &row : rows) {
        canvas.paint({0, 0.8F}, {1, 1.36F}, [&](Point p, Colour under) {
            const float ridge
                = row.base - row.swell * layeredNoise({p.x * row.detail + 3, 2.5F}, 5, row.seed) * 1.6F;
            const float trees = 0.010F * row.detail
                * std::pow(ridgedNoise({p.x * 55, 1.5F}, 3, row.seed + 1), 2.0F)
                * smooth(0.7F, 0.2F, row.colour.r);
            const float depth = p.y - ridge;
            const float wisp = 0.03F * layeredNoise({p.x * 4, p.y * 14}, 4, row.seed + 2);
            const float fields = 1 + 0.30F * layeredNoise({p.x * 6, p.y * 30}, 5, row.seed + 3);
            const float sunlit = 0.10F * smooth(0.2F, 1.0F, p.x) * smooth(0.08F, 0.0F, depth);
            const Colour ground = row.colour * fields + Colour{1.0F, 0.8F, 0.5F} * sunlit;
            const Colour colour = mix(ground, warmMist, 0.88F * smooth(0.0F, row.mist, depth + wisp));
            return mix(under, colour, unit((depth + trees) / Canvas::pixel + 0.5F));
        });
    }
}

} // namespace

Canvas balloons()
{
    Canvas canvas(Canvas::Format::Portrait);
    canvas.paint([](Point p, Colour) { return sky(p); });
    canvas.glow({1.02F, 0.93F}, 0.22F, {0.26F, 0.19F, 0.10F});
    paintHills(canvas);

    const Colour cream{0.98F, 0.93F, 0.82F};
    const Colour red{0.74F, 0.20F, 0.15F};
    const Colour navy{0.14F, 0.22F, 0.38F};
    const Colour ochre{0.90F, 0.62F, 0.20F};
    const Colour teal{0.16F, 0.42F, 0.42F};
    const Balloon flight[] = {
        {{0.660F, 0.845F}, 0.026F, {navy, cream}, 12, 0.2F, 0, 0.52F},
        {{0.475F, 0.790F}, 0.032F, {red, ochre}, 12, 0.1F, 1, 0.46F},
        {{0.120F, 0.800F}, 0.043F, {ochre, cream}, 14, 0.0F, 0, 0.36F},
        {{0.865F, 0.660F}, 0.058F, {teal, cream}, 14, 0.3F, 2, 0.25F},
        {{0.760F, 0.220F}, 0.088F, {navy, ochre}, 16, 0.1F, 1, 0.14F},
        {{0.360F, 0.430F}, 0.225F, {red, cream}, 20, 0.08F, 0, 0.0F},
    };
    for (const Balloon &balloon : flight)
        paintBalloon(canvas, balloon);
    canvas.finish(0.14F, 0.010F, 8);
    return canvas;
}

} // namespace lindenreed::samples
