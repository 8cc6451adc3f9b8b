// Birch trunks in autumn, the wood behind them out of focus.

#include "pictures.h"

namespace lindenreed::samples {

namespace {

constexpr float floorLine = 1.00F; ///< where the wood's ground meets the haze

struct Trunk
{
    float x; ///< at the foot
    float foot; ///< y
    float width; ///< half, at the foot
    float lean;
    std::uint32_t seed;

    float middle(float y) const
    {
        return x + lean * (foot - y) + 0.35F * width * noise({y * 2.2F, 7}, seed)
            + 0.012F * noise({y * 0.9F, 3}, seed);
    }
    float halfWidth(float y) const
    {
        const float flare = 1 + 0.30F * std::exp((y - foot) * 16) * smooth(foot + 0.1F, foot, y);
        return width * (0.62F + 0.38F * smooth(-0.3F, foot, y)) * flare
            * (1 + 0.05F * noise({y * 9, 1}, seed + 1));
    }
};

Colour background(Point p)
{
    const Colour high{0.83F, 0.74F, 0.50F};
    const Colour light{0.98F, 0.95F, 0.84F};
    const Colour floor{0.47F, 0.37F, 0.20F};
    Colour colour = mix(high, light, smooth(-0.1F, 0.72F, p.y));
    colour = mix(colour, {0.78F, 0.66F, 0.42F}, smooth(floorLine - 0.08F, floorLine + 0.03F, p.y));
    colour = mix(colour, floor * 0.62F, smooth(floorLine, 1.38F, p.y));
    return colour * (1 + 0.10F * layeredNoise(p * 4, 4, 3));
}

void paintFoliage(Canvas &canvas, int count, float least, float most, float opacity, std::uint32_t seed)
{
    Random random(seed);
    for (int i = 0; i < count; ++i) {
        const Point place{random.next(), std::pow(random.next(), 1.5F) * 0.72F - 0.03F};
        if (noise(place * 4, seed) < -0.15F)
            continue;
        const Colour gold{0.86F, 0.63F, 0.22F};
        const Colour russet{0.66F, 0.40F, 0.14F};
        const Colour pale{0.97F, 0.86F, 0.52F};
        const float choice = random.next();
        const Colour colour = choice < 0.5F ? mix(russet, gold, choice * 2) : mix(gold, pale, choice * 2 - 1);
        canvas.spot(place, random.between(least, most), colour, opacity * random.between(0.4F, 1.0F), 0.25F);
    }
}

void paintFarTrunk(Canvas &canvas, const Trunk &trunk, Colour bark, Colour shade)
{
    const float reach = 1.4F * trunk.width + std::abs(trunk.lean) * 1.1F + 0.015F;
    canvas.paint({trunk.x - reach, 0}, {trunk.x + reach, trunk.foot}, [&](Point p, Colour under) {
        const float width = trunk.halfWidth(p.y);
        const float across = (p.x - trunk.middle(p.y)) / width;
        const float inside = unit((1 - std::abs(across)) * width / Canvas::pixel + 0.5F);
        if (inside <= 0)
            return under;
        const float marks = smooth(0.10F, 0.34F, layeredNoise({across * 1.2F, p.y * 26}, 3, trunk.seed));
        return mix(under, mix(bark, shade, unit(0.20F + 0.45F * across + 0.6F * marks)), inside);
    });
}

Colour barkColour(const Trunk &trunk, float across, float y)
{
    const float around = std::asin(std::clamp(across, -0.999F, 0.999F));
    const float size = trunk.width / 0.06F; // marks grow with the trunk
    const Colour white{0.95F, 0.93F, 0.88F};
    const Colour grey{0.66F, 0.63F, 0.58F};
    const Colour black{0.085F, 0.075F, 0.068F};

    const float tone = layeredNoise({around * 1.3F, y * 8 / size}, 4, trunk.seed + 2);
    Colour colour = mix(white, grey, smooth(-0.05F, 0.50F, tone));
    // Peeling layers: thin, nearly level lines.
    const float peel = noise({around * 1.1F, y * 130 / size}, trunk.seed + 3);
    colour = colour * (1 - 0.10F * smooth(0.1F, 0.6F, peel));
    // Pores: short dark dashes.
    const float dash = noise({around * 4.2F, y * 95 / size}, trunk.seed + 4) + 0.35F * tone;
    colour = mix(colour, black * 2.2F, smooth(0.42F, 0.56F, dash) * 0.85F);
    // Scars, more and larger towards the foot.
    const float foot = smooth(trunk.foot - 0.55F, trunk.foot, y);
    const float scar
        = layeredNoise({around * 0.9F, y * 9.0F / size}, 5, trunk.seed + 5) + 0.24F * foot * foot;
    const float cracks = 0.05F * noise({around * 8, y * 60 / size}, trunk.seed + 6);
    colour = mix(colour, black, smooth(0.22F, 0.29F, scar + cracks));

    // Light comes from the upper left, some is thrown back from the right.
    const float light
        = 0.34F + 0.72F * std::pow(unit(std::cos(around + 0.62F)), 0.8F) + 0.12F * smooth(0.6F, 1.0F, across);
    return colour * std::min(light, 1.04F) * Colour{1.0F, 0.985F, 0.95F};
}

void paintTrunk(Canvas &canvas, const Trunk &trunk)
{
    const float reach = 1.4F * trunk.width + std::abs(trunk.lean) * 1.3F + 0.03F;
    canvas.paint({trunk.x - reach, 0}, {trunk.x + reach, trunk.foot + 0.02F}, [&](Point p, Colour under) {
        const float width = trunk.halfWidth(p.y);
        const float across = (p.x - trunk.middle(p.y)) / width;
        const float grass = 0.016F * layeredNoise({p.x * 90, 3}, 2, trunk.seed);
        const float inside = unit((1 - std::abs(across)) * width / Canvas::pixel + 0.5F)
            * smooth(trunk.foot + 0.004F, trunk.foot - 0.006F, p.y + grass);
        return inside > 0 ? mix(under, barkColour(trunk, across, p.y), inside) : under;
    });
}

void paintFloor(Canvas &canvas)
{
    Random random(71);
    for (int i = 0; i < 5200; ++i) {
        const float depth = std::pow(random.next(), 0.7F);
        const Point place{random.next(), floorLine + 0.02F + depth * 0.33F};
        const float size = 0.0018F + 0.0085F * depth * random.between(0.5F, 1.0F);
        const Colour leaf
            = mix(Colour{0.36F, 0.22F, 0.08F}, {0.90F, 0.68F, 0.30F}, std::pow(random.next(), 1.6F))
            * mix(1.0F, 0.62F, depth);
        const float turn = random.between(-0.5F, 0.5F);
        const Point half{size * std::cos(turn), size * 0.42F * std::sin(turn)};
        canvas.stroke(place - half, size * 0.22F, place + half, size * 0.36F, leaf, 0.85F);
    }
    for (int i = 0; i < 900; ++i) {
        const float depth = random.next();
        const Point from{random.next(), floorLine + 0.05F + depth * 0.32F};
        const float height = 0.012F + 0.05F * depth * random.next();
        const Point to{from.x + random.between(-0.5F, 0.5F) * height, from.y - height};
        const Colour blade
            = mix(Colour{0.42F, 0.36F, 0.16F}, {0.72F, 0.62F, 0.30F}, random.next()) * mix(1.0F, 0.6F, depth);
        canvas.stroke(from, 0.0011F, to, 0.0004F, blade, 0.9F);
    }
}

void paintSpray(Canvas &canvas, Point from, float angle, float reach, std::uint32_t seed)
{
    Random random(seed);
    const Colour wood{0.17F, 0.13F, 0.11F};
    constexpr int parts = 16;
    Point place = from;
    for (int part = 0; part < parts; ++part) {
        angle += random.between(-0.09F, 0.09F) + 0.06F * (-1.57F - angle); // hangs straighter towards its tip
        const Point next = place + Point{std::cos(angle), -std::sin(angle)} * (reach / parts);
        const float taper = 1 - float(part) / parts;
        canvas.stroke(place, 0.0018F * taper + 0.0005F, next, 0.0017F * taper + 0.0005F, wood);
        place = next;
        for (const float side : {-1.0F, 1.0F}) {
            if (random.next() < 0.30F)
                continue;
            const float away = angle + side * random.between(0.4F, 1.0F);
            const Point stem
                = place + Point{std::cos(away), -std::sin(away)} * random.between(0.004F, 0.010F);
            const Point tip = stem
                + Point{std::cos(away + random.between(-0.4F, 0.4F)), -std::sin(away)}
                    * random.between(0.013F, 0.020F);
            const Colour colour = mix(Colour{0.64F, 0.40F, 0.10F}, {0.97F, 0.80F, 0.36F}, random.next());
            canvas.stroke(place, 0.0006F, stem, 0.0005F, wood);
            canvas.stroke(stem, 0.0046F, stem + (tip - stem) * 0.5F, 0.0042F, colour);
            canvas.stroke(stem + (tip - stem) * 0.4F, 0.0040F, tip, 0.0006F, colour);
            canvas.stroke(stem, 0.0005F, tip, 0.0004F, colour * 0.72F);
        }
    }
}

} // namespace

Canvas birches()
{
    Canvas canvas(Canvas::Format::Portrait);
    canvas.paint([](Point p, Colour) { return background(p); });
    paintFoliage(canvas, 520, 0.012F, 0.05F, 0.30F, 21);

    Random random(2);
    for (int i = 0; i < 44; ++i) {
        const float depth = float(i) / 43;
        const Trunk trunk{random.next(), floorLine + 0.01F + 0.06F * depth, mix(0.0040F, 0.013F, depth),
                          random.between(-0.05F, 0.05F), 300U + unsigned(i) * 7};
        const float haze = mix(0.78F, 0.25F, depth);
        paintFarTrunk(canvas, trunk, mix(Colour{0.93F, 0.90F, 0.83F}, {0.97F, 0.93F, 0.80F}, haze),
                      mix(Colour{0.30F, 0.26F, 0.21F}, {0.90F, 0.82F, 0.64F}, haze));
    }
    paintFoliage(canvas, 330, 0.010F, 0.034F, 0.42F, 22);
    canvas.blur(0.0055F);
    // Rays of the low sun through the haze.
    canvas.paint([](Point p, Colour under) {
        const float ray = layeredNoise({(p.x - p.y * 0.55F) * 6, 2}, 3, 9);
        return under + Colour{0.11F, 0.10F, 0.07F} * (smooth(0.0F, 0.4F, ray) * smooth(1.15F, 0.5F, p.y));
    });
    paintFloor(canvas);

    const Trunk near[] = {
        {0.425F, 1.100F, 0.026F, 0.030F, 511},  {0.930F, 1.130F, 0.031F, -0.020F, 523},
        {0.085F, 1.120F, 0.030F, -0.035F, 531}, {0.585F, 1.165F, 0.041F, -0.028F, 547},
        {0.790F, 1.215F, 0.056F, 0.038F, 557},  {0.262F, 1.275F, 0.078F, 0.012F, 569},
    };
    for (const Trunk &trunk : near)
        paintTrunk(canvas, trunk);
    const struct
    {
        float x, angle, reach;
    } sprays[] = {{0.36F, -1.35F, 0.30F}, {0.41F, -1.05F, 0.42F}, {0.47F, -1.25F, 0.22F},
                  {0.55F, -1.75F, 0.26F}, {0.68F, -1.45F, 0.36F}, {0.72F, -1.15F, 0.20F},
                  {0.90F, -1.70F, 0.17F}, {0.12F, -1.40F, 0.24F}, {0.06F, -1.65F, 0.15F}};
    std::uint32_t seed = 81;
    for (const auto &spray : sprays)
        paintSpray(canvas, {spray.x, -0.02F}, spray.angle, spray.reach, ++seed);
    canvas.finish(0.20F, 0.012F, 4);
    return canvas;
}

} // namespace lindenreed::samples
