// The Milky Way over dark hills, a lit window, a tree.

#include "pictures.h"

namespace lindenreed::samples {

namespace {

/// Distance from the middle of the Milky Way's band, and place along it.
Point bandPlace(Point p)
{
    const Point direction{0.52F, -0.854F};
    const Point offset = p - Point{0.50F, 0.62F};
    return {offset.x * direction.x + offset.y * direction.y, offset.x * direction.y - offset.y * direction.x};
}

float bandLight(Point p)
{
    const Point place = bandPlace(p);
    const float bent = place.y + 0.05F * noise(p * 2.3F, 61);
    const float core = bell(bent, 0.15F) * (0.75F + 0.5F * layeredNoise(p * 5, 5, 62));
    const float dust = smooth(0.02F, 0.34F,
                              layeredNoise({place.x * 2.6F, place.y * 7}, 6, 63) + 0.26F * bell(bent, 0.05F));
    return unit(core * (1 - 0.72F * dust) + 0.25F * bell(bent, 0.30F));
}

constexpr float hillFoot = 1.12F;

Colour sky(Point p)
{
    const Colour high{0.030F, 0.045F, 0.095F};
    const Colour low{0.20F, 0.27F, 0.36F};
    const Colour town{0.46F, 0.36F, 0.25F};
    Colour colour = mix(high, low, std::pow(unit(p.y / hillFoot), 2.4F));
    colour = colour + town * (bell(p.y - 1.14F, 0.16F) * bell(p.x - 0.20F, 0.45F));
    return colour + Colour{0.44F, 0.43F, 0.47F} * bandLight(p);
}

void paintStars(Canvas &canvas)
{
    Random random(88);
    for (int i = 0; i < 9000; ++i) {
        const Point place{random.next(), random.next() * 1.2F};
        const float chance = random.next();
        const float light = std::pow(random.next(), 7.0F);
        const float warm = random.next();
        if (chance > 0.25F + 0.75F * bandLight(place))
            continue;
        const Colour colour = mix(Colour{0.80F, 0.88F, 1.0F}, {1.0F, 0.92F, 0.80F}, warm);
        const float haze = smooth(1.18F, 0.85F, place.y);
        canvas.spot(place, 0.0011F + 0.0026F * light, colour, (0.30F + 0.70F * light) * haze, 0.75F);
        if (light > 0.72F)
            canvas.spot(place, 0.010F, colour, 0.22F * haze, 1);
    }
}

void paintHills(Canvas &canvas)
{
    const auto hill = [&](float base, float swell, float detail, Colour colour, std::uint32_t seed) {
        canvas.paint({0, 0.9F}, {1, 1.36F}, [&](Point p, Colour under) {
            const float crest = base - swell * layeredNoise({p.x * detail, 4}, 6, seed);
            const float depth = p.y - crest;
            const Colour slope
                = colour * (1 + 0.5F * layeredNoise(p * 14, 4, seed + 3)) * smooth(0.5F, -0.2F, depth);
            return mix(under, slope, unit(depth / Canvas::pixel + 0.5F));
        });
    };
    hill(1.10F, 0.10F, 2.2F, {0.135F, 0.165F, 0.215F}, 201);
    hill(1.16F, 0.08F, 1.9F, {0.080F, 0.102F, 0.135F}, 204);
}

float nearGround(float x)
{
    return 1.235F - 0.055F * bell(x - 0.70F, 0.30F) + 0.012F * noise({x * 5, 1}, 207);
}

void paintNearGround(Canvas &canvas)
{
    canvas.paint({0, 1.1F}, {1, 1.36F}, [](Point p, Colour under) {
        const float depth = p.y - nearGround(p.x);
        const float grass = layeredNoise({p.x * 70, p.y * 18}, 3, 209);
        return mix(under, Colour{0.026F, 0.032F, 0.040F} * (1 + 0.6F * grass),
                   unit(depth / Canvas::pixel * 0.5F + 0.5F));
    });
    Random random(45);
    for (int i = 0; i < 1500; ++i) {
        const float x = random.next();
        const Point from{x, nearGround(x) + 0.004F};
        const Point to{x + random.between(-0.006F, 0.008F), from.y - random.between(0.004F, 0.017F)};
        canvas.stroke(from, 0.0009F, to, 0.0003F, {0.022F, 0.027F, 0.034F});
    }
}

void paintBranch(Canvas &canvas, Point from, float angle, float reach, float thick, int generation,
                 Random &random)
{
    const Colour dark{0.012F, 0.014F, 0.020F};
    Point place = from;
    constexpr int parts = 4;
    for (int part = 0; part < parts; ++part) {
        angle += random.between(-0.16F, 0.16F);
        const Point next = place + Point{std::cos(angle), -std::sin(angle)} * (reach / parts);
        const float taper = 1 - 0.35F * float(part) / parts;
        canvas.stroke(place, thick * taper, next, thick * (taper - 0.08F), dark);
        place = next;
        if (generation < 4 && part >= 1 && random.next() < 0.45F)
            paintBranch(canvas, place, angle + random.between(-1.0F, 1.0F), reach * 0.55F, thick * 0.45F,
                        generation + 2, random);
    }
    if (generation >= 7) {
        for (int leaf = 0; leaf < 4; ++leaf)
            canvas.spot(place + Point{random.between(-0.009F, 0.009F), random.between(-0.008F, 0.008F)},
                        random.between(0.0022F, 0.0048F), dark, 0.95F, 0.3F);
        return;
    }
    const int forks = random.next() < 0.35F ? 3 : 2;
    for (int fork = 0; fork < forks; ++fork) {
        const float spread = (float(fork) / float(forks - 1) - 0.5F) * random.between(0.75F, 1.2F);
        paintBranch(canvas, place, angle + spread + 0.04F * (1.57F - angle),
                    reach * random.between(0.70F, 0.86F), thick * 0.64F, generation + 1, random);
    }
}

void paintHouse(Canvas &canvas)
{
    const Point foot{0.268F, nearGround(0.268F) + 0.004F};
    const Colour wall{0.020F, 0.023F, 0.030F};
    const Colour lamp{1.0F, 0.82F, 0.48F};
    canvas.glow(foot + Point{0.012F, -0.020F}, 0.030F, {0.30F, 0.21F, 0.10F});
    canvas.paint(foot + Point{-0.07F, -0.09F}, foot + Point{0.07F, 0.01F}, [&](Point p, Colour under) {
        const Point place = p - foot;
        const float roof = -0.043F - (0.034F - std::abs(place.x) * 0.62F);
        const bool body = std::abs(place.x) < 0.042F && place.y > -0.045F;
        const bool roofed = std::abs(place.x) < 0.052F && place.y > roof && place.y < -0.040F;
        const bool chimney = std::abs(place.x - 0.024F) < 0.0045F && place.y > -0.078F && place.y < -0.04F;
        const bool window = std::abs(place.x - 0.014F) < 0.0085F && std::abs(place.y + 0.024F) < 0.0095F;
        const bool bar = std::abs(place.x - 0.014F) < 0.0009F || std::abs(place.y + 0.024F) < 0.0009F;
        if (window && !bar)
            return lamp;
        return body || roofed || chimney ? wall : under;
    });
    // Light on the grass in front of the window.
    canvas.paint(foot + Point{-0.08F, 0}, foot + Point{0.14F, 0.09F}, [&](Point p, Colour under) {
        const Point place = p - foot - Point{0.020F, 0.016F};
        const float light = bell(place.x, 0.034F) * bell(place.y, 0.020F);
        const float grass = 0.7F + 0.6F * noise({p.x * 160, p.y * 50}, 211);
        return under + Colour{0.32F, 0.23F, 0.11F} * (light * grass);
    });
}

} // namespace

Canvas starryNight()
{
    Canvas canvas(Canvas::Format::Portrait);
    canvas.paint([](Point p, Colour) { return sky(p); });
    paintStars(canvas);
    paintHills(canvas);
    paintHouse(canvas);
    paintNearGround(canvas);
    paintHouse(canvas);
    Random random(124);
    paintBranch(canvas, {0.735F, nearGround(0.735F) + 0.01F}, 1.50F, 0.098F, 0.0135F, 0, random);
    canvas.finish(0.12F, 0.012F, 10);
    return canvas;
}

} // namespace lindenreed::samples
