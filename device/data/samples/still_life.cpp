// A vase with twigs and three pears beside a window. Bodies are given by their distance from any place in
// space; rays walk as far as that distance allows.

#include "pictures.h"

#include <array>

namespace lindenreed::samples {

namespace {

struct Vector
{
    float x = 0, y = 0, z = 0;
};

Vector operator+(Vector a, Vector b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
Vector operator-(Vector a, Vector b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Vector operator*(Vector a, float factor)
{
    return {a.x * factor, a.y * factor, a.z * factor};
}
float dot(Vector a, Vector b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
float length(Vector a)
{
    return std::sqrt(dot(a, a));
}
Vector unitLength(Vector a)
{
    return a * (1 / length(a));
}

const Vector eye{0, 1.30F, -6.0F};
const Vector target{0, 0.98F, 0};
const Vector window = unitLength({-0.74F, 0.62F, -0.42F}); ///< where the light comes from
constexpr float wallZ = 2.3F;

struct Pear
{
    Vector foot;
    float lean; ///< about the axis towards the viewer: 0 stands, 1.4 lies with its stem to the right
    float turn; ///< about its own axis, for the blush
    float size;
    Colour skin;
    Colour blush;
};

const Pear pears[] = {
    {{-0.60F, 0, 0.15F}, 0.06F, 2.1F, 1.00F, {0.80F, 0.75F, 0.34F}, {0.76F, 0.44F, 0.20F}},
    {{-1.36F, 0, -0.15F}, -0.10F, 0.9F, 0.92F, {0.86F, 0.76F, 0.34F}, {0.72F, 0.34F, 0.17F}},
    {{-0.46F, 0.305F, -0.95F}, 1.40F, 0.2F, 0.86F, {0.66F, 0.66F, 0.26F}, {0.74F, 0.44F, 0.18F}},
};
const Vector vaseFoot{0.92F, 0, 0.42F};
constexpr float vaseHeight = 1.62F;

/// Space as the pear has it: upright, its size 1, foot at the origin.
Vector inPear(const Pear &pear, Vector p)
{
    const Vector place = (p - pear.foot) * (1 / pear.size);
    const float c = std::cos(pear.lean), s = std::sin(pear.lean);
    return {place.x * c - place.y * s, place.x * s + place.y * c, place.z};
}

float smoothUnion(float a, float b, float reach)
{
    const float h = unit(0.5F + 0.5F * (b - a) / reach);
    return mix(b, a, h) - reach * h * (1 - h);
}

float capsule(Vector p, Vector a, Vector b, float radius)
{
    const Vector way = b - a;
    const float along = unit(dot(p - a, way) / dot(way, way));
    return length(p - a - way * along) - radius;
}

float stemDistance(Vector p)
{
    return std::min(capsule(p, {0.015F, 0.93F, 0}, {0.035F, 1.07F, 0}, 0.017F),
                    capsule(p, {0.035F, 1.07F, 0}, {0.085F, 1.17F, 0.01F}, 0.021F));
}

float pearDistance(const Pear &pear, Vector p)
{
    const Vector place = inPear(pear, p);
    const float bulge = 0.014F * std::sin(place.y * 7 + 2 * place.x) * std::cos(place.z * 5 + pear.turn);
    const float belly = length(place - Vector{0, 0.365F, 0}) - 0.375F;
    const float neck = length(place - Vector{0.020F, 0.84F, 0}) - 0.150F;
    const float dent
        = 0.050F * bell(length(Vector{place.x, 0, place.z}), 0.06F) * smooth(0.88F, 1.0F, place.y);
    const float body = smoothUnion(belly, neck, 0.27F) + bulge + dent;
    return std::min(body, stemDistance(place)) * pear.size * 0.92F;
}

float vaseRadius(float y)
{
    const float t = y / vaseHeight;
    const float belly = 0.50F * std::exp(-(t - 0.40F) * (t - 0.40F) / 0.085F);
    const float foot = 0.14F * std::exp(-t * t / 0.010F);
    const float lip = 0.115F * std::exp(-(t - 1.03F) * (t - 1.03F) / 0.007F);
    return 0.125F + belly + foot * 0.6F + lip;
}

float vaseDistance(Vector p)
{
    const Vector place = p - vaseFoot;
    const float away = std::sqrt(place.x * place.x + place.z * place.z);
    const float y = std::clamp(place.y, 0.0F, vaseHeight);
    const float side = std::abs(away - vaseRadius(y) + 0.018F) - 0.018F; // a thin wall: the mouth is open
    const float above = std::max(place.y - vaseHeight, -place.y);
    const float outside
        = above > 0 ? std::sqrt(above * above + std::max(side, 0.0F) * std::max(side, 0.0F)) : side;
    return outside * 0.62F; // the profile is steep: careful steps
}

constexpr int bodies = 4;

float distanceTo(int body, Vector p)
{
    return body < 3 ? pearDistance(pears[body], p) : vaseDistance(p);
}

struct Ball
{
    Vector middle;
    float radius;
};

/// Every body is inside its ball; rays that miss the ball need not walk.
const std::array<Ball, bodies> &balls()
{
    static const std::array<Ball, bodies> result = [] {
        std::array<Ball, bodies> made;
        for (int i = 0; i < 3; ++i) {
            const Pear &pear = pears[i];
            const Vector axis{std::sin(pear.lean), std::cos(pear.lean), 0};
            made[std::size_t(i)] = {pear.foot + axis * (0.59F * pear.size), 0.66F * pear.size};
        }
        made[3] = {vaseFoot + Vector{0, vaseHeight * 0.48F, 0}, 0.98F};
        return made;
    }();
    return result;
}

using Candidates = std::array<bool, bodies>;

Candidates candidatesOf(Vector from, Vector way, float wider)
{
    Candidates result;
    for (std::size_t i = 0; i < bodies; ++i) {
        const Ball &ball = balls()[i];
        const Vector offset = ball.middle - from;
        const float along = std::max(0.0F, dot(offset, way));
        const float radius = ball.radius + wider * along;
        const Vector aside = offset - way * along;
        result[i] = dot(aside, aside) < radius * radius;
    }
    return result;
}

float nearest(const Candidates &candidates, Vector p, int *which = nullptr)
{
    float least = 100;
    for (int i = 0; i < bodies; ++i) {
        if (!candidates[std::size_t(i)])
            continue;
        const float distance = distanceTo(i, p);
        if (distance < least) {
            least = distance;
            if (which)
                *which = i;
        }
    }
    return least;
}

bool any(const Candidates &candidates)
{
    return std::any_of(candidates.begin(), candidates.end(), [](bool is) { return is; });
}

/// 1: the window is in full sight, 0: hidden. A window is wide, so shadows soften with distance.
float lightAt(Vector from)
{
    constexpr float width = 0.16F;
    const Candidates candidates = candidatesOf(from, window, width);
    if (!any(candidates))
        return 1;
    float seen = 1;
    float t = 0.03F;
    for (int i = 0; i < 42 && t < 4 && seen > -1; ++i) {
        const float distance = nearest(candidates, from + window * t);
        seen = std::min(seen, distance / (width * t));
        t += std::clamp(distance, 0.025F, 0.22F);
    }
    seen = std::max(seen, -1.0F);
    return 0.25F * (1 + seen) * (1 + seen) * (2 - seen);
}

/// How much of the room's light reaches a place; corners and touching bodies get less.
float openness(Vector p, Vector normal)
{
    float hidden = 0;
    float weight = 1;
    for (int i = 1; i <= 4; ++i) {
        const float reach = 0.07F * float(i) * float(i) * 0.6F;
        const Vector place = p + normal * reach;
        const Candidates close = {true, true, true, true};
        const float distance = std::min({nearest(close, place), place.y, wallZ - place.z});
        hidden += std::max(0.0F, reach - distance) / reach * weight;
        weight *= 0.72F;
    }
    return unit(1 - 0.36F * hidden);
}

/// A sheet of light on the wall: the window's panes, softened by the distance.
float panesOnWall(float x, float y)
{
    const float shifted = x - y * 0.42F;
    const float sheet = smooth(-1.75F, -1.35F, shifted) * smooth(0.55F, 0.15F, shifted)
        * smooth(0.10F, 0.55F, y) * smooth(3.3F, 2.7F, y);
    const float bars = (1 - 0.75F * bell(shifted + 0.60F, 0.075F)) * (1 - 0.75F * bell(y - 1.62F, 0.075F));
    return sheet * bars;
}

Colour wallColour(Vector p)
{
    const float plaster
        = 1 + 0.05F * layeredNoise({p.x * 1.7F, p.y * 1.7F}, 5, 31) + 0.02F * noise({p.x * 26, p.y * 26}, 32);
    const float falloff = mix(0.74F, 0.30F, smooth(-2.4F, 2.8F, p.x + 0.2F * p.y));
    const float light = falloff * 0.66F + 0.62F * panesOnWall(p.x, p.y) * lightAt(p);
    return Colour{0.80F, 0.79F, 0.74F} * (light * plaster * openness(p, {0, 0, -1}));
}

Colour tableColour(Vector p)
{
    const float board = std::floor(p.z / 0.62F + 0.35F);
    const float withinBoard = p.z / 0.62F + 0.35F - board;
    const float gap = smooth(0.0F, 0.018F, std::min(withinBoard, 1 - withinBoard));
    const Point along{p.x * 0.9F + board * 7.7F, p.z * 7};
    const float bend = layeredNoise({along.x * 0.8F, along.y * 0.25F}, 3, 41);
    const float rings = std::sin((p.z * 11 + bend * 8) * 2.2F) * 0.5F + 0.5F;
    const float fibre = noise({p.x * 4, p.z * 85}, 42);
    const Colour wood
        = mix(Colour{0.44F, 0.29F, 0.18F}, {0.63F, 0.45F, 0.29F}, unit(rings * 0.55F + 0.22F * fibre + 0.2F));
    const float light = 0.24F + 1.30F * lightAt(p) * smooth(4.2F, -1.6F, p.x);
    return wood * (light * gap * (0.30F + 0.70F * openness(p, {0, 1, 0})) * 1.12F);
}

Vector normalAt(int body, Vector p)
{
    constexpr float d = 0.0012F;
    const auto difference
        = [&](Vector step) { return distanceTo(body, p + step) - distanceTo(body, p - step); };
    return unitLength({difference({d, 0, 0}), difference({0, d, 0}), difference({0, 0, d})});
}

Colour pearSkin(const Pear &pear, Vector p)
{
    const Vector place = inPear(pear, p);
    if (stemDistance(place) < 0.012F)
        return {0.24F, 0.16F, 0.10F};
    const float around = std::atan2(place.z, place.x) + pear.turn;
    const float patch = layeredNoise({around * 1.1F, place.y * 2.2F}, 4, 51);
    const float blushed = unit(0.5F + 0.55F * std::cos(around) + patch * 0.9F);
    Colour colour = mix(pear.skin, pear.blush, blushed * 0.80F);
    const float dots
        = noise({around * 26 * (0.3F + std::sqrt(place.x * place.x + place.z * place.z)), place.y * 40}, 52);
    colour = mix(colour, {0.42F, 0.30F, 0.15F}, smooth(0.42F, 0.62F, dots) * 0.55F);
    const float russet = smooth(0.90F, 1.02F, place.y + 0.04F * patch) + smooth(0.10F, 0.0F, place.y);
    return mix(colour, {0.45F, 0.31F, 0.16F}, unit(russet) * 0.65F);
}

Colour vaseGlaze(Vector p)
{
    const Vector place = p - vaseFoot;
    const float around = std::atan2(place.z, place.x);
    const float runs = 0.16F * layeredNoise({around * 2.2F, 1}, 3, 61) + 0.05F * noise({around * 7, 2}, 62);
    const float glazed = smooth(0.60F, 0.625F, place.y + runs);
    const float speckle = smooth(0.40F, 0.60F, noise({around * 24, place.y * 42}, 63));
    const float turned = 0.05F * std::sin(place.y * 95);
    const Colour clay = Colour{0.66F, 0.57F, 0.47F} * (1 + turned - 0.25F * speckle);
    const Colour glaze = mix(Colour{0.16F, 0.27F, 0.31F}, {0.38F, 0.50F, 0.51F},
                             unit(0.35F + layeredNoise({around * 1.5F, place.y * 3}, 4, 64)));
    const float rim = smooth(vaseHeight - 0.05F, vaseHeight, place.y);
    return mix(mix(clay, glaze, glazed), {0.55F, 0.44F, 0.33F}, rim * 0.7F);
}

Colour bodyColour(int body, Vector p, Vector way)
{
    const Vector normal = normalAt(body, p);
    const bool isVase = body == 3;
    const Colour own = isVase ? vaseGlaze(p) : pearSkin(pears[body], p);

    const float key = std::max(0.0F, dot(normal, window) * 0.92F + 0.08F);
    const float lit = key * lightAt(p + normal * 0.012F);
    const float open = openness(p, normal);
    const float room = (0.16F + 0.10F * normal.y - 0.05F * normal.x) * open;
    const Colour fromTable = Colour{0.26F, 0.17F, 0.10F} * (unit(-normal.y * 0.7F + 0.3F) * open * 0.55F);
    Colour colour = own * (lit * 1.42F + room * 1.25F) + own * fromTable;

    const Vector half = unitLength(window - way);
    const float gloss
        = std::pow(std::max(0.0F, dot(normal, half)), isVase ? 90.0F : 32.0F) * (isVase ? 0.55F : 0.20F);
    const float rim = std::pow(1 - std::max(0.0F, -dot(normal, way)), 4.0F) * 0.10F * open;
    return colour + Colour{1.0F, 0.97F, 0.90F} * (gloss * unit(lit * 2) + rim);
}

struct Camera
{
    Vector forward = unitLength(target - eye);
    Vector right = unitLength({forward.z, 0, -forward.x});
    Vector up = {forward.y * right.z - forward.z * right.y, forward.z *right.x - forward.x *right.z,
                 forward.x *right.y - forward.y *right.x};
    float focus = 1.62F;

    Vector through(Point p) const
    {
        return unitLength(forward * focus + right * (p.x - 2.0F / 3) + up * (0.5F - p.y));
    }
    Point seen(Vector p) const
    {
        const Vector offset = p - eye;
        const float depth = dot(offset, forward);
        return {dot(offset, right) / depth * focus + 2.0F / 3, 0.5F - dot(offset, up) / depth * focus};
    }
};

Colour look(Vector way)
{
    const float toWall = (wallZ - eye.z) / way.z;
    const float toTable = way.y < 0 ? -eye.y / way.y : 100.0F;
    const float farthest = std::min(toWall, toTable);
    const Candidates candidates = candidatesOf(eye, way, 0);
    if (any(candidates)) {
        float t = 4.2F;
        for (int i = 0; i < 110 && t < farthest; ++i) {
            int body = 0;
            const float distance = nearest(candidates, eye + way * t, &body);
            if (distance < 0.0007F)
                return bodyColour(body, eye + way * t, way);
            t += distance;
        }
    }
    const Vector p = eye + way * farthest;
    return toTable < toWall ? tableColour(p) : wallColour(p);
}

void paintTwig(Canvas &canvas, const Camera &camera, Vector direction, float reach, std::uint32_t seed)
{
    Random random(seed);
    Vector place = vaseFoot + Vector{direction.x * 0.05F, vaseHeight - 0.01F, 0};
    const Colour wood{0.20F, 0.15F, 0.12F};
    constexpr int parts = 26;
    for (int part = 0; part < parts; ++part) {
        direction = unitLength(direction
                               + Vector{random.between(-0.10F, 0.10F), random.between(-0.07F, 0.045F), 0});
        const Vector next = place + direction * (reach / parts);
        const float taper = 1 - 0.8F * float(part) / parts;
        canvas.stroke(camera.seen(place), 0.0034F * taper, camera.seen(next), 0.0033F * taper, wood);
        canvas.stroke(camera.seen(place) + Point{-0.0009F, -0.0006F}, 0.0010F * taper,
                      camera.seen(next) + Point{-0.0009F, -0.0006F}, 0.0010F * taper, {0.46F, 0.38F, 0.30F},
                      0.8F);
        place = next;
        if (part < 7)
            continue;
        for (const float side : {-1.0F, 1.0F}) {
            if (random.next() < 0.28F)
                continue;
            // Round leaves, lighter where they face the window.
            const Point joint = camera.seen(place);
            const float size = random.between(0.009F, 0.019F) * (0.55F + 0.45F * taper);
            const float turn = std::atan2(-direction.y, direction.x) + side * random.between(0.6F, 1.25F);
            const Point outward{std::cos(turn), std::sin(turn)};
            const float light
                = unit(0.52F - 0.42F * outward.x * 0.7F - 0.25F * outward.y + random.between(-0.16F, 0.16F));
            const Colour leaf = mix(Colour{0.15F, 0.20F, 0.17F}, {0.62F, 0.68F, 0.58F}, light);
            const Point middle = joint + outward * (size * 1.15F);
            canvas.stroke(joint, 0.0008F, middle, 0.0007F, wood);
            canvas.stroke(middle - outward * (size * 0.30F), size * 0.62F, middle + outward * (size * 0.35F),
                          size * 0.56F, leaf);
            canvas.stroke(middle - outward * (size * 0.8F), 0.0007F, middle + outward * (size * 0.8F),
                          0.0005F, leaf * 0.72F);
        }
    }
}

} // namespace

Canvas stillLife()
{
    Canvas canvas(Canvas::Format::Landscape);
    const Camera camera;
    canvas.paint([&](Point p, Colour) { return look(camera.through(p)); });
    paintTwig(canvas, camera, {-0.42F, 0.90F, 0}, 1.12F, 4);
    paintTwig(canvas, camera, {0.50F, 0.85F, 0}, 1.02F, 15);
    paintTwig(canvas, camera, {0.06F, 1.0F, 0}, 1.10F, 26);
    canvas.finish(0.24F, 0.012F, 9);
    return canvas;
}

} // namespace lindenreed::samples
