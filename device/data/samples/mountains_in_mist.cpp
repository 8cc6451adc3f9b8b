// Ridges behind ridges in morning mist, pines in front.

#include "pictures.h"

namespace lindenreed::samples {

namespace {

constexpr Point sun{0.655F, 0.43F};

Colour sky(Point p)
{
    const Colour high{0.36F, 0.47F, 0.58F};
    const Colour middle{0.80F, 0.77F, 0.72F};
    const Colour low{0.95F, 0.84F, 0.69F};
    Colour colour = mix(high, middle, smooth(-0.05F, 0.36F, p.y));
    colour = mix(colour, low, smooth(0.26F, 0.58F, p.y));
    const float veil = layeredNoise({p.x * 2.2F + p.y * 0.8F, p.y * 9}, 5, 40);
    return colour + Colour{0.10F, 0.09F, 0.08F} * (veil * smooth(0.55F, 0.1F, p.y));
}

struct Ridge
{
    float base; ///< where its foot is in the mist
    float rise; ///< of its highest summit
    float detail; ///< features per picture width
    Colour rock;
    Colour mist;
    std::uint32_t seed;
};

float crestOf(const Ridge &ridge, float x)
{
    const float broad = ridgedNoise({x * ridge.detail, 3.7F}, 6, ridge.seed);
    const float swell = 0.5F + 0.5F * noise({x * ridge.detail * 0.6F, 8.2F}, ridge.seed + 50);
    return ridge.base - ridge.rise * (0.25F + 0.75F * broad) * (0.45F + 0.55F * swell);
}

void paintRidge(Canvas &canvas, const Ridge &ridge)
{
    std::vector<float> crests;
    crests.reserve(std::size_t(canvas.width()));
    for (int x = 0; x < canvas.width(); ++x)
        crests.push_back(crestOf(ridge, Canvas::centre(x, 0).x));

    canvas.paint([&](Point p, Colour under) {
        const float crest = crests[std::size_t(p.x / Canvas::pixel)];
        const float depth = p.y - crest;
        if (depth < -Canvas::pixel)
            return under;
        // Gullies run down the slopes; the side towards the sun is lighter.
        const Point folded{p.x * ridge.detail * 2.4F + depth * 1.5F, p.y * ridge.detail * 1.3F};
        const float slope = ridgedNoise({folded.x + 0.02F, folded.y}, 5, ridge.seed + 9)
            - ridgedNoise({folded.x - 0.06F, folded.y}, 5, ridge.seed + 9);
        const Colour rock = ridge.rock * (1 + 0.55F * slope * smooth(0.0F, 0.03F, depth));
        const float wisps = 0.06F * layeredNoise({p.x * 3, p.y * 9}, 4, ridge.seed + 21);
        const float mist = smooth(0.02F, ridge.rise * 1.05F, depth + wisps);
        const float sunlit = bell(p.x - sun.x, 0.42F) * 0.10F * smooth(1.2F, 0.5F, p.y);
        Colour colour = mix(rock, ridge.mist, mist * 0.93F);
        colour = colour + Colour{1.0F, 0.85F, 0.62F} * sunlit;
        return mix(under, colour, unit(depth / Canvas::pixel + 0.5F));
    });
}

void paintPine(Canvas &canvas, Point foot, float height, Colour colour, Random &random)
{
    const Point top{foot.x + random.between(-0.01F, 0.01F) * height, foot.y - height};
    canvas.stroke(foot, height * 0.016F, top, height * 0.002F, colour);
    const int whorls = int(26 + height * 70);
    for (int i = 0; i < whorls; ++i) {
        const float along = float(i) / float(whorls);
        const Point from = foot + (top - foot) * (0.10F + 0.90F * along);
        const float reach = height * 0.19F * std::pow(1 - along, 0.8F) * random.between(0.62F, 1.1F);
        for (const float side : {-1.0F, 1.0F}) {
            if (random.next() < 0.07F)
                continue;
            const float droop = random.between(0.20F, 0.48F);
            const float length = reach * random.between(0.7F, 1.05F);
            const Point tip{from.x + side * length, from.y + length * droop};
            const Point bend{from.x + side * length * 0.5F, from.y + length * droop * 0.30F};
            const float thick = height * 0.0105F * (1.15F - along);
            canvas.stroke(from, thick, bend, thick * 1.15F, colour);
            canvas.stroke(bend, thick * 1.1F, tip, thick * 0.25F, colour);
            // Twigs hang from the bough.
            for (int twig = 0; twig < 3; ++twig) {
                const Point at = bend + (tip - bend) * random.between(-0.7F, 0.8F);
                const Point end{at.x + side * length * 0.10F, at.y + length * random.between(0.12F, 0.24F)};
                canvas.stroke(at, thick * 0.6F, end, thick * 0.15F, colour);
            }
        }
    }
}

void paintWood(Canvas &canvas, float base, float swell, int count, float least, float most, Colour colour,
               std::uint32_t seed)
{
    Random random(seed);
    const auto ground = [&](float x) { return base + swell * noise({x * 2.1F, 0.5F}, seed); };
    canvas.paint([&](Point p, Colour under) {
        const float rough = 0.006F * layeredNoise({p.x * 60, 1.5F}, 3, seed + 1);
        return mix(under, colour, unit((p.y - ground(p.x) - rough) / Canvas::pixel * 0.5F + 0.5F));
    });
    for (int i = 0; i < count; ++i) {
        const float x = (float(i) + random.between(-0.4F, 0.4F)) / float(count - 1) * 1.1F - 0.05F;
        const float clearing = 0.35F + 0.65F * smooth(0.10F, 0.34F, std::abs(x - 0.56F));
        const float height = mix(least, most, random.next() * random.next()) * clearing;
        paintPine(canvas, {x, ground(x) + 0.02F}, height, colour, random);
    }
}

void paintBirds(Canvas &canvas)
{
    const Colour dark{0.25F, 0.27F, 0.30F};
    const Point flock[]
        = {{0.300F, 0.300F}, {0.335F, 0.281F}, {0.372F, 0.290F}, {0.352F, 0.325F}, {0.410F, 0.268F}};
    float size = 0.013F;
    for (const Point bird : flock) {
        for (const float side : {-1.0F, 1.0F}) {
            const Point elbow{bird.x + side * size * 0.55F, bird.y - size * 0.42F};
            const Point tip{bird.x + side * size * 1.25F, bird.y - size * 0.12F};
            canvas.stroke(bird, 0.0014F, elbow, 0.0011F, dark);
            canvas.stroke(elbow, 0.0011F, tip, 0.0004F, dark);
        }
        size *= 0.93F;
    }
}

} // namespace

Canvas mountainsInMist()
{
    Canvas canvas(Canvas::Format::Portrait);
    canvas.paint([](Point p, Colour) { return sky(p); });
    canvas.glow(sun, 0.13F, {0.10F, 0.09F, 0.05F});
    canvas.spot(sun, 0.046F, {1.0F, 0.995F, 0.96F}, 1, 0.12F);

    const Ridge ridges[] = {
        {0.66F, 0.34F, 2.1F, {0.66F, 0.66F, 0.68F}, {0.95F, 0.87F, 0.77F}, 103},
        {0.74F, 0.29F, 2.6F, {0.53F, 0.56F, 0.60F}, {0.92F, 0.86F, 0.79F}, 211},
        {0.86F, 0.27F, 2.3F, {0.40F, 0.45F, 0.50F}, {0.88F, 0.84F, 0.80F}, 307},
        {0.98F, 0.25F, 2.0F, {0.28F, 0.34F, 0.39F}, {0.83F, 0.81F, 0.79F}, 419},
    };
    for (const Ridge &ridge : ridges)
        paintRidge(canvas, ridge);
    paintBirds(canvas);

    const auto mistBank = [&](float y, float thickness, float strength, std::uint32_t seed) {
        canvas.paint({0, y - 2 * thickness}, {1, 1.36F}, [&](Point p, Colour under) {
            const float billow = layeredNoise({p.x * 2.6F, p.y * 7}, 5, seed);
            const float amount = smooth(y - thickness, y + thickness * 0.4F, p.y + billow * thickness * 1.1F);
            return mix(under, {0.86F, 0.84F, 0.82F}, amount * strength);
        });
    };
    paintWood(canvas, 1.03F, 0.05F, 46, 0.05F, 0.13F, {0.36F, 0.42F, 0.45F}, 12);
    mistBank(1.04F, 0.07F, 0.80F, 61);
    paintWood(canvas, 1.13F, 0.05F, 27, 0.08F, 0.25F, {0.19F, 0.25F, 0.27F}, 23);
    mistBank(1.17F, 0.08F, 0.62F, 62);
    paintWood(canvas, 1.29F, 0.04F, 15, 0.14F, 0.60F, {0.055F, 0.085F, 0.09F}, 37);

    canvas.finish(0.16F, 0.012F, 1);
    return canvas;
}

} // namespace lindenreed::samples
