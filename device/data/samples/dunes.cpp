// Dunes in low light, a walker on the crest.

#include "ground.h"
#include "pictures.h"

namespace lindenreed::samples {

namespace {

/// A dune from foot to foot for 0 to 1: a long slope up, a sharp crest, a short one down.
float profile(float t)
{
    constexpr float crest = 0.64F;
    if (t < crest) {
        const float rise = t / crest;
        return rise * rise * (1.7F - 0.7F * rise);
    }
    const float fall = (t - crest) / (1 - crest);
    return (1 - fall) * (1 - fall * 0.45F);
}

float duneHeight(float x, float z)
{
    const float winding = 0.62F * noise({z * 0.030F, 0.5F}, 11) + 0.30F * noise({x * 0.018F, z * 0.012F}, 12)
        + 0.05F * noise({x * 0.05F, z * 0.09F}, 13);
    const float along = x * 0.0190F + z * 0.0052F + 0.30F + winding;
    const float index = std::floor(along);
    const float strength = 0.75F + 0.45F * noise({index * 3.7F, z * 0.010F}, 14);
    const float small = x * 0.085F - z * 0.020F + 1.2F * noise({x * 0.02F, z * 0.025F}, 15);
    return 12.0F * strength * profile(along - index) + 0.38F * profile(small - std::floor(small))
        + 9 * layeredNoise({x * 0.006F, z * 0.006F}, 2, 16);
}

Colour sky(Point p)
{
    const Colour high{0.38F, 0.50F, 0.62F};
    const Colour low{0.96F, 0.88F, 0.76F};
    const float streak = smooth(0.0F, 0.5F, layeredNoise({p.x * 1.4F + p.y, p.y * 9}, 5, 21));
    return mix(mix(high, low, smooth(-0.05F, 0.42F, p.y)), {0.98F, 0.95F, 0.90F}, streak * 0.40F);
}

Colour sand(const Place &place)
{
    const float reach = 0.02F + place.z * 0.0012F;
    const float slopeX
        = (duneHeight(place.x + reach, place.z) - duneHeight(place.x - reach, place.z)) / (2 * reach);
    const float slopeZ
        = (duneHeight(place.x, place.z + reach) - duneHeight(place.x, place.z - reach)) / (2 * reach);

    // The wind's ripples, too fine to see far away.
    const float near = smooth(95, 8, place.z);
    const float bend = 1.6F * noise({place.x * 0.35F, place.z * 0.22F}, 22);
    const float wave = (place.x * 0.65F + place.z * 1.25F) * 4.2F + bend * 3.2F;
    const float ripple
        = std::cos(wave) * 0.20F * near * (0.6F + 0.6F * noise({place.x * 0.2F, place.z * 0.2F}, 23));
    const float grain = 0.04F * noise({place.x * 30, place.z * 30}, 24) * smooth(40, 4, place.z);

    // Low light from the left.
    const float nx = -slopeX - ripple * 0.55F;
    const float nz = -slopeZ - ripple * 0.85F;
    const float light = (-0.80F * nx + 0.36F + 0.28F * -nz) / std::sqrt(nx * nx + 1 + nz * nz);
    const Colour lit{0.985F, 0.84F, 0.62F};
    const Colour shade{0.185F, 0.125F, 0.115F};
    Colour colour = mix(shade, lit, smooth(-0.02F, 0.86F, light + grain));
    colour = colour + Colour{0.025F, 0.03F, 0.045F} * smooth(0.1F, -0.5F, light);
    const float haze = 1 - std::exp(-place.z / 420);
    return mix(colour, {0.93F, 0.84F, 0.72F}, haze);
}

void paintWalker(Canvas &canvas, Point foot, float height)
{
    const Colour dark{0.10F, 0.075F, 0.070F};
    const auto part = [&](Point a, float ra, Point b, float rb) {
        canvas.stroke(foot + a * height, ra * height, foot + b * height, rb * height, dark);
    };
    part({-0.10F, 0.01F}, 0.035F, {0.00F, -0.45F}, 0.065F);
    part({0.13F, 0.00F}, 0.035F, {0.01F, -0.45F}, 0.065F);
    part({0.00F, -0.42F}, 0.120F, {0.02F, -0.74F}, 0.085F);
    part({0.02F, -0.72F}, 0.045F, {0.16F, -0.46F}, 0.032F);
    part({0.02F, -0.88F}, 0.075F, {0.025F, -0.90F}, 0.075F);
    part({-0.055F, -0.93F}, 0.030F, {0.11F, -0.93F}, 0.026F);
    part({0.20F, 0.02F}, 0.012F, {0.16F, -0.62F}, 0.012F);
}

} // namespace

Canvas dunes()
{
    Canvas canvas(Canvas::Format::Landscape);
    canvas.paint([](Point p, Colour) { return sky(p); });
    const View view{24, 0.30F, 1.15F, 9, 1600, 0.0018F};
    paintGround(canvas, view, duneHeight, [](const Place &place, Colour) { return sand(place); });

    paintWalker(canvas, {0.838F, 0.574F}, 0.066F); // on the crest of the great dune
    canvas.finish(0.16F, 0.014F, 3);
    return canvas;
}

} // namespace lindenreed::samples
