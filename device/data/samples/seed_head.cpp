// A dandelion's seed head against the light; a few seeds have set out.

#include "pictures.h"

#include <numbers>

namespace lindenreed::samples {

namespace {

constexpr Point head{0.46F, 0.56F};
constexpr float coreRadius = 0.040F;
constexpr float beakRadius = 0.225F; ///< where the parachutes sit
constexpr Colour silver{0.97F, 0.96F, 0.92F};

struct Direction
{
    float x, y, z; ///< z points to the viewer
};

Direction crossed(Direction a, Direction b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Direction unitLength(Direction d)
{
    const float size = std::sqrt(d.x * d.x + d.y * d.y + d.z * d.z);
    return {d.x / size, d.y / size, d.z / size};
}

void paintBackground(Canvas &canvas)
{
    canvas.paint([](Point p, Colour) {
        const Colour dark{0.055F, 0.085F, 0.060F};
        const Colour green{0.30F, 0.40F, 0.22F};
        const Colour light{0.78F, 0.77F, 0.52F};
        const float sunny = bell(length(p - Point{0.86F, 0.16F}), 0.62F);
        Colour colour = mix(dark, green, unit(0.15F + 0.95F * sunny + 0.30F * layeredNoise(p * 1.7F, 2, 5)));
        return mix(colour, light, std::pow(sunny, 2.6F) * 0.9F);
    });
    Random random(33);
    for (int i = 0; i < 46; ++i) {
        const Point place{random.next(), random.next() * 1.33F};
        const float light = bell(length(place - Point{0.88F, 0.22F}), 0.62F);
        canvas.spot(place, random.between(0.022F, 0.070F), {0.90F, 0.90F, 0.62F},
                    0.05F + 0.24F * light * random.next(), 0.16F);
    }
    for (int i = 0; i < 26; ++i) {
        const float x = random.between(-0.1F, 1.1F);
        const Point top{x + random.between(-0.22F, 0.22F), random.between(0.85F, 1.15F)};
        canvas.stroke({x, 1.40F}, random.between(0.006F, 0.016F), top, 0.003F,
                      mix(Colour{0.05F, 0.08F, 0.04F}, {0.34F, 0.42F, 0.20F}, random.next()), 0.55F);
    }
    canvas.blur(0.011F);
}

/// A parachute of fine hairs: they leave `hub` about `axis` and spread like the ribs of an umbrella.
void paintParachute(Canvas &canvas, Point hub, Direction axis, float reach, Colour colour, float opacity,
                    Random &random)
{
    const Direction helper = std::abs(axis.z) < 0.9F ? Direction{0, 0, 1} : Direction{1, 0, 0};
    const Direction side = unitLength(crossed(axis, helper));
    const Direction up = crossed(axis, side);
    constexpr int hairs = 22;
    for (int hair = 0; hair < hairs; ++hair) {
        const float turn
            = (float(hair) + random.between(-0.3F, 0.3F)) / hairs * 2 * std::numbers::pi_v<float>;
        const float spread = random.between(0.86F, 1.02F);
        const float along = std::sqrt(1.06F - spread * spread);
        const float size = reach * random.between(0.86F, 1.06F);
        const Point out{side.x * std::cos(turn) + up.x * std::sin(turn),
                        side.y * std::cos(turn) + up.y * std::sin(turn)};
        const Point tip = hub + (out * spread + Point{axis.x, axis.y} * along) * size;
        const Point bend = hub + (out * spread * 0.52F + Point{axis.x, axis.y} * (along * 0.36F)) * size;
        canvas.stroke(hub, 0.00075F, bend, 0.00060F, colour, opacity);
        canvas.stroke(bend, 0.00060F, tip, 0.00035F, colour, opacity * 0.9F);
    }
    canvas.spot(hub, 0.0020F, colour, opacity, 0.5F);
}

void paintSeed(Canvas &canvas, Point foot, Point tip, Colour colour, float opacity)
{
    const Point way = tip - foot;
    canvas.stroke(foot, 0.0023F, foot + way * 0.13F, 0.0030F, {0.30F, 0.20F, 0.12F}, opacity);
    canvas.stroke(foot + way * 0.13F, 0.0024F, foot + way * 0.20F, 0.0008F, {0.36F, 0.25F, 0.15F}, opacity);
    canvas.stroke(foot + way * 0.19F, 0.00085F, tip, 0.00065F, colour, opacity * 0.85F);
}

void paintHead(Canvas &canvas, bool backHalf)
{
    constexpr int count = 190;
    Random random(backHalf ? 61 : 62);
    for (int i = 0; i < count; ++i) {
        // Evenly over the sphere.
        const float z = 1 - 2 * (float(i) + 0.5F) / count;
        const float turn = float(i) * 2.3999632F;
        const float across = std::sqrt(1 - z * z);
        const Direction axis{across * std::cos(turn), across * std::sin(turn), z};
        if ((z < 0) != backHalf)
            continue;
        // The wind has taken those at the upper right.
        const bool gone = axis.x * 0.74F - axis.y * 0.67F > 0.72F;
        const bool stalkSide = axis.y > 0.90F;
        if (gone || stalkSide)
            continue;
        const float light = unit(0.72F + 0.30F * (axis.x * 0.6F - axis.y * 0.7F) + 0.12F * z);
        const Colour colour = silver * light;
        const Point foot = head + Point{axis.x, axis.y} * coreRadius;
        const Point tip = head + Point{axis.x, axis.y} * (beakRadius * random.between(0.96F, 1.03F));
        paintSeed(canvas, foot, tip, colour, backHalf ? 0.45F : 0.85F);
        paintParachute(canvas, tip, axis, 0.098F, colour, backHalf ? 0.36F : 0.74F, random);
    }
}

void paintCore(Canvas &canvas)
{
    const float outer = coreRadius * 1.02F;
    canvas.paint(head - Point{outer, outer}, head + Point{outer, outer}, [&](Point p, Colour under) {
        const Point place = (p - head) * (1 / coreRadius);
        const float distance = length(place);
        const float pits = noise(place * 7, 8);
        const float light = 0.55F + 0.45F * unit(0.5F + (place.x * 0.5F - place.y * 0.6F) * 0.8F);
        const Colour colour = Colour{0.50F, 0.44F, 0.30F} * light * (1 + 0.45F * pits);
        return mix(under, colour, smooth(1.0F, 0.94F, distance));
    });
}

void paintStalk(Canvas &canvas)
{
    const auto middle = [](float y) { return head.x + 0.035F * std::pow((y - head.y) / 0.77F, 1.8F); };
    canvas.paint({head.x - 0.05F, head.y + 0.02F}, {head.x + 0.10F, 1.36F}, [&](Point p, Colour under) {
        const float width = 0.0105F + 0.004F * (p.y - head.y);
        const float across = (p.x - middle(p.y)) / width;
        const float inside = unit((1 - std::abs(across)) * width / Canvas::pixel + 0.5F);
        const float light = 0.42F + 0.60F * smooth(-1.0F, 0.85F, across);
        const float grain = 1 + 0.06F * noise({across * 5, p.y * 14}, 13);
        const Colour colour
            = mix(Colour{0.40F, 0.42F, 0.22F}, {0.62F, 0.48F, 0.32F}, smooth(1.3F, 0.6F, p.y));
        return mix(under, colour * light * grain, inside);
    });
    for (int i = 0; i < 9; ++i) {
        const float side = float(i) / 4.0F - 1;
        const Point from = head + Point{side * 0.012F, coreRadius * 0.72F};
        const Point bend = from + Point{side * 0.026F, 0.020F};
        const Point tip = bend + Point{side * 0.006F, 0.045F - 0.012F * std::abs(side)};
        const Colour green = Colour{0.36F, 0.40F, 0.19F} * (0.75F + 0.25F * side);
        canvas.stroke(from, 0.0046F, bend, 0.0044F, green);
        canvas.stroke(bend, 0.0044F, tip, 0.0008F, green);
    }
}

void paintFlyingSeed(Canvas &canvas, Point foot, Direction axis, float size, Random &random)
{
    const Point tip = foot + Point{axis.x, axis.y} * (0.165F * size);
    paintSeed(canvas, foot, tip, silver, 0.95F);
    paintParachute(canvas, tip, axis, 0.094F * size, silver, 0.78F, random);
}

} // namespace

Canvas seedHead()
{
    Canvas canvas(Canvas::Format::Portrait);
    paintBackground(canvas);
    paintStalk(canvas);
    paintHead(canvas, true);
    canvas.blur(0.0011F);
    canvas.glow(head, 0.16F, {0.07F, 0.07F, 0.05F});
    paintCore(canvas);
    paintHead(canvas, false);
    Random random(90);
    paintFlyingSeed(canvas, {0.712F, 0.330F}, unitLength({0.55F, -0.80F, 0.22F}), 1.0F, random);
    paintFlyingSeed(canvas, {0.835F, 0.185F}, unitLength({0.35F, -0.85F, 0.40F}), 0.86F, random);
    paintFlyingSeed(canvas, {0.590F, 0.150F}, unitLength({0.62F, -0.62F, -0.42F}), 0.72F, random);
    canvas.finish(0.22F, 0.010F, 5);
    return canvas;
}

} // namespace lindenreed::samples
