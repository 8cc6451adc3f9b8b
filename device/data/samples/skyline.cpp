// A city across the river at dusk.

#include "pictures.h"

namespace lindenreed::samples {

namespace {

constexpr float shore = 0.690F;
constexpr float wide = float(Canvas::longSide) / Canvas::shortSide;

Colour sky(Point p)
{
    const Colour high{0.10F, 0.13F, 0.26F};
    const Colour middle{0.42F, 0.36F, 0.48F};
    const Colour low{0.98F, 0.72F, 0.46F};
    Colour colour = mix(high, middle, smooth(-0.05F, 0.42F, p.y));
    colour = mix(colour, low, smooth(0.28F, 0.70F, p.y));
    colour = colour + Colour{0.22F, 0.12F, 0.02F} * (bell(p.x - 0.86F, 0.40F) * bell(p.y - shore, 0.22F));
    const float streak = layeredNoise({p.x * 1.8F + p.y * 0.6F, p.y * 13}, 6, 31);
    const float cloud
        = smooth(0.02F, 0.42F, streak + 0.12F) * smooth(0.66F, 0.40F, p.y) * smooth(-0.05F, 0.2F, p.y);
    const Colour lit = mix(Colour{0.30F, 0.25F, 0.36F}, {0.99F, 0.70F, 0.50F}, smooth(0.12F, 0.52F, p.y));
    return mix(colour, lit, cloud * 0.62F);
}

struct Tower
{
    float left, right, top;
    float storey; ///< height of one; windows are narrower than high
    float lit; ///< share of lit windows
    Colour wall;
    std::uint32_t seed;
};

Colour windowed(const Tower &tower, Point p, Colour wall)
{
    const float windowWidth = tower.storey * 0.78F;
    const float fromLeft = p.x - tower.left;
    const int column = int(fromLeft / windowWidth);
    const int row = int((p.y - tower.top) / tower.storey);
    const int columns = int((tower.right - tower.left) / windowWidth);
    if (column < 0 || column >= columns || row < 1 || p.y > shore - tower.storey)
        return wall;
    const float acrossPane = fromLeft / windowWidth - float(column);
    const float downPane = (p.y - tower.top) / tower.storey - float(row);
    const float pane = smooth(0.16F, 0.24F, acrossPane) * smooth(0.84F, 0.76F, acrossPane)
        * smooth(0.22F, 0.30F, downPane) * smooth(0.82F, 0.74F, downPane);
    Random random(tower.seed * 977U + unsigned(row) * 131U + unsigned(column));
    random.next();
    const float floorMood = noise({float(row) * 0.7F, 2}, tower.seed) * 0.3F;
    const bool isLit = random.next() < tower.lit + floorMood;
    const Colour lamp
        = mix(Colour{1.0F, 0.70F, 0.34F}, {1.0F, 0.92F, 0.72F}, random.next()) * random.between(0.62F, 1.0F);
    return mix(wall, isLit ? lamp : wall * 0.62F + Colour{0.02F, 0.03F, 0.05F}, pane);
}

void paintTower(Canvas &canvas, const Tower &tower)
{
    canvas.paint({tower.left, tower.top}, {tower.right, shore}, [&](Point p, Colour under) {
        const float inside
            = unit(std::min({p.x - tower.left, tower.right - p.x, p.y - tower.top}) / Canvas::pixel + 0.5F);
        // The west is bright behind the towers; a little of it reaches their edges.
        const float edge = smooth(0.010F, 0.0F, tower.right - p.x) * 0.30F;
        const float haze = smooth(tower.top, shore, p.y) * 0.20F;
        const Colour wall = mix(tower.wall * (1 + edge), {0.62F, 0.44F, 0.36F}, haze);
        return mix(under, windowed(tower, p, wall), inside);
    });
}

void paintRow(Canvas &canvas, float least, float most, float narrow, float broad, float storey, float lit,
              Colour wall, std::uint32_t seed)
{
    Random random(seed);
    float x = -0.03F;
    while (x < wide) {
        const float width = random.between(narrow, broad);
        // Taller towards the middle right, where the tall tower stands.
        const float centre = bell(x + width / 2 - 0.86F, 0.42F);
        const float height = mix(least, most, std::pow(random.next(), 1.5F)) * (0.55F + 0.75F * centre);
        const Colour tint = wall * random.between(0.80F, 1.15F);
        const Tower tower{x, x + width, shore - height, storey, lit, tint, seed + unsigned(x * 1000)};
        paintTower(canvas, tower);
        if (random.next() < 0.4F)
            paintTower(canvas,
                       {x + width * 0.25F, x + width * 0.65F, shore - height - random.between(0.010F, 0.028F),
                        storey, lit * 0.5F, tint, seed + unsigned(x * 1000) + 1});
        if (random.next() < 0.30F)
            canvas.stroke({x + width * 0.5F, shore - height}, 0.0011F,
                          {x + width * 0.5F, shore - height - random.between(0.02F, 0.05F)}, 0.0006F, tint);
        x += width * random.between(0.86F, 1.12F);
    }
}

void paintTallTower(Canvas &canvas)
{
    const Colour wall{0.105F, 0.100F, 0.150F};
    constexpr float x = 0.862F;
    const auto block = [&](float half, float top, std::uint32_t seed) {
        paintTower(canvas, {x - half, x + half, top, 0.0125F, 0.46F, wall, seed});
    };
    block(0.064F, 0.44F, 801);
    block(0.050F, 0.31F, 802);
    block(0.037F, 0.215F, 803);
    block(0.023F, 0.170F, 804);
    for (int step = 0; step < 4; ++step) {
        const float half = 0.016F - 0.0035F * float(step);
        const float top = 0.155F - 0.012F * float(step);
        canvas.paint({x - half, top}, {x + half, 0.172F}, [&](Point p, Colour) {
            return mix(wall, {1.0F, 0.86F, 0.58F}, 0.55F * bell(p.x - x, half * 0.8F));
        });
    }
    canvas.stroke({x, 0.12F}, 0.0030F, {x, 0.030F}, 0.0007F, wall);
}

void paintBridge(Canvas &canvas)
{
    const Colour steel{0.085F, 0.085F, 0.125F};
    constexpr float deck = 0.648F;
    const float towers[] = {0.125F, 0.475F};
    const auto cable = [&](Point from, Point to, float sag) {
        constexpr int parts = 60;
        Point place = from;
        for (int part = 1; part <= parts; ++part) {
            const float t = float(part) / parts;
            const Point next{mix(from.x, to.x, t), mix(from.y, to.y, t) + sag * 4 * t * (1 - t)};
            canvas.stroke(place, 0.0017F, next, 0.0017F, steel);
            if (part % 3 == 0)
                canvas.stroke(next, 0.0006F, {next.x, deck}, 0.0006F, steel);
            place = next;
        }
    };
    cable({towers[0], 0.500F}, {towers[1], 0.500F}, 0.128F);
    cable({-0.10F, 0.610F}, {towers[0], 0.500F}, 0.035F);
    cable({towers[1], 0.500F}, {0.68F, 0.636F}, 0.030F);
    for (const float x : towers) {
        canvas.stroke({x - 0.009F, 0.490F}, 0.0034F, {x - 0.012F, shore}, 0.0042F, steel);
        canvas.stroke({x + 0.009F, 0.490F}, 0.0034F, {x + 0.012F, shore}, 0.0042F, steel);
        for (const float y : {0.495F, 0.535F, 0.585F})
            canvas.stroke({x - 0.009F, y}, 0.0028F, {x + 0.009F, y}, 0.0028F, steel);
        canvas.spot({x, 0.480F}, 0.0040F, {1.0F, 0.55F, 0.40F}, 1, 0.6F);
    }
    canvas.stroke({-0.1F, deck + 0.004F}, 0.0050F, {0.72F, deck + 0.004F}, 0.0050F, steel);
    for (int lamp = 0; lamp < 34; ++lamp) {
        const Point place{0.008F + float(lamp) * 0.0206F, deck - 0.006F};
        canvas.spot(place, 0.0080F, {1.0F, 0.80F, 0.50F}, 0.30F, 1);
        canvas.spot(place, 0.0022F, {1.0F, 0.94F, 0.78F}, 1, 0.5F);
    }
}

void paintRiver(Canvas &canvas)
{
    canvas.paint({0, shore}, {wide, 1}, [&](Point p, Colour) {
        const float depth = p.y - shore;
        const float away = 0.05F / (depth + 0.012F);
        const Point place{p.x * away * 12, away * 40};
        const float ripple = layeredNoise(place, 4, 71) + 0.5F * layeredNoise({p.x * 9, p.y * 130}, 3, 72);
        const float spread = 0.010F + depth * 0.28F;
        // Several looks along the slopes of the ripples: lights are drawn out into columns.
        Colour sum;
        for (int look = 0; look < 5; ++look) {
            const float tilt = ripple + (float(look) - 2) * 0.30F;
            const Point seen{p.x + ripple * 0.012F, shore - depth * 1.12F + tilt * spread};
            sum = sum + canvas.at(Point{seen.x, std::min(seen.y, shore - 0.004F)});
        }
        const float shine = 0.74F + 0.26F * ripple;
        return sum * (0.2F * shine) * Colour{0.90F, 0.92F, 1.0F} + Colour{0.008F, 0.010F, 0.020F};
    });
    canvas.stroke({-0.01F, shore}, 0.0035F, {wide + 0.01F, shore}, 0.0035F, {0.055F, 0.052F, 0.075F});
    Random random(6);
    for (int lamp = 0; lamp < 60; ++lamp) {
        const Point place{random.next() * wide, shore - 0.006F};
        canvas.spot(place, 0.0024F, {1.0F, 0.88F, 0.62F}, 0.95F, 0.6F);
    }
}

void paintMoon(Canvas &canvas)
{
    constexpr Point moon{0.335F, 0.165F};
    canvas.glow(moon, 0.035F, {0.10F, 0.10F, 0.10F});
    canvas.paint(moon - Point{0.03F, 0.03F}, moon + Point{0.03F, 0.03F}, [&](Point p, Colour under) {
        const float disc = unit((0.024F - length(p - moon)) / Canvas::pixel + 0.5F);
        const float bite
            = unit((0.0225F - length(p - moon - Point{-0.0095F, -0.0065F})) / Canvas::pixel + 0.5F);
        return mix(under, {1.0F, 0.97F, 0.88F}, disc * (1 - bite));
    });
}

} // namespace

Canvas skyline()
{
    Canvas canvas(Canvas::Format::Landscape);
    canvas.paint([](Point p, Colour) { return sky(p); });
    paintMoon(canvas);
    paintRow(canvas, 0.05F, 0.27F, 0.035F, 0.080F, 0.0080F, 0.22F, {0.40F, 0.33F, 0.40F}, 140);
    paintRow(canvas, 0.06F, 0.33F, 0.040F, 0.085F, 0.0100F, 0.34F, {0.235F, 0.205F, 0.275F}, 151);
    paintTallTower(canvas);
    paintRow(canvas, 0.030F, 0.17F, 0.045F, 0.100F, 0.0130F, 0.40F, {0.090F, 0.085F, 0.125F}, 163);
    paintBridge(canvas);
    paintRiver(canvas);
    canvas.finish(0.14F, 0.010F, 7);
    return canvas;
}

} // namespace lindenreed::samples
