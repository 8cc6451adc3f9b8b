// Waves under a breaking sky, a lighthouse on its rock.

#include "ground.h"
#include "pictures.h"

namespace lindenreed::samples {

namespace {

constexpr float horizon = 0.50F;
constexpr Point sun{0.40F, 0.36F};

Colour sky(Point p)
{
    const Colour high{0.22F, 0.27F, 0.33F};
    const Colour low{0.88F, 0.83F, 0.72F};
    Colour colour = mix(high, low, smooth(-0.10F, horizon, p.y));
    // Clouds flatten towards the horizon.
    const float flat = 1 / (horizon + 0.10F - std::min(p.y, horizon));
    const Point place{(p.x - 0.6F) * flat * 0.62F, flat * 1.5F};
    const float body = layeredNoise(place, 6, 41) + 0.10F;
    const float cover = smooth(-0.06F, 0.30F, body);
    const float nearSun = bell(length(p - sun), 0.34F);
    const float rim = smooth(-0.04F, 0.10F, body) * smooth(0.30F, 0.10F, body);
    const Colour dark = mix(Colour{0.17F, 0.20F, 0.24F}, {0.60F, 0.57F, 0.52F}, smooth(0.0F, horizon, p.y));
    colour = colour + Colour{0.50F, 0.44F, 0.32F} * (nearSun * 0.30F);
    colour = mix(colour, dark, cover * 0.88F);
    return colour + Colour{0.62F, 0.56F, 0.44F} * (rim * nearSun * 0.40F);
}

/// Waves with sharp crests: rounded valleys between the folds of noise.
float crested(Point p, std::uint32_t seed)
{
    const float fold = 1 - std::abs(noise(p, seed)) * 1.35F;
    return std::max(0.0F, fold) * std::max(0.0F, fold);
}

float seaHeight(float x, float z)
{
    float height = 1.55F * crested({x * 0.045F + z * 0.016F, z * 0.072F - x * 0.010F}, 51);
    height += 0.62F * crested({x * 0.11F - z * 0.05F, z * 0.17F + x * 0.03F}, 52);
    if (z < 260)
        height += 0.26F * crested({x * 0.30F + z * 0.11F, z * 0.42F}, 53);
    if (z < 110)
        height += 0.095F * crested({x * 0.75F - z * 0.3F, z * 0.95F}, 54);
    return height;
}

Colour water(const Place &place)
{
    const float reach = 0.03F + place.z * 0.0010F;
    float slopeX = (seaHeight(place.x + reach, place.z) - seaHeight(place.x - reach, place.z)) / (2 * reach);
    float slopeZ = (seaHeight(place.x, place.z + reach) - seaHeight(place.x, place.z - reach)) / (2 * reach);
    const float fine = smooth(75, 5, place.z);
    slopeX += 0.20F * fine * layeredNoise({place.x * 2.6F, place.z * 2.6F}, 3, 55);
    slopeZ += 0.26F * fine * layeredNoise({place.x * 2.4F, place.z * 3.0F}, 3, 56);

    // Slopes towards the eye show the depth, those away from it the sky.
    const float facing = unit(0.10F + 0.95F * slopeZ + 1.6F / (place.z * 0.22F + 2));
    const float shine = std::pow(1 - facing, 3.0F);
    const Colour deep{0.045F, 0.105F, 0.115F};
    const Colour clear{0.20F, 0.36F, 0.33F};
    const float crest = smooth(1.1F, 2.35F, place.height);
    const float mirrorY = std::clamp(horizon - 0.06F - 0.30F * unit(0.5F - slopeZ), 0.0F, horizon);
    const Colour mirrored = sky({0.66F + place.x / place.z + slopeX * 0.25F, mirrorY});
    Colour colour = mix(mix(deep, clear, crest * 0.75F), mirrored * 0.86F, 0.12F + 0.82F * shine);

    // The sun's road.
    const float aside = place.x / place.z - (sun.x - 2.0F / 3) / 1.1F + slopeX * 0.22F;
    const float glint = bell(aside, 0.11F) * smooth(0.05F, -0.30F, slopeZ) * smooth(6, 60, place.z);
    colour = colour + Colour{0.85F, 0.78F, 0.62F} * glint * 0.85F;

    // Foam on the crests, torn into threads, and streaks left behind.
    const float threads = ridgedNoise({place.x * 0.85F, place.z * 0.62F}, 5, 57);
    const float spray = layeredNoise({place.x * 5, place.z * 5}, 3, 58) * 0.25F;
    const float foam = smooth(2.05F, 2.75F, place.height + (threads - 0.45F) * 1.15F + spray);
    const float trail = smooth(0.78F, 0.92F, threads) * smooth(1.0F, 1.7F, place.height) * 0.38F;
    const float far = 1 - 0.70F * smooth(40, 260, place.z);
    colour = mix(colour, {0.93F, 0.94F, 0.92F}, unit(foam + trail) * far);
    return mix(colour, {0.60F, 0.60F, 0.56F}, 0.75F * (1 - std::exp(-place.z / 420)));
}

float rockTop(float x)
{
    const float shape = smooth(0.84F, 0.99F, x) * smooth(1.285F, 1.17F, x);
    return horizon + 0.018F - 0.105F * shape * (0.85F + 0.35F * layeredNoise({x * 9, 2}, 6, 62));
}

void paintRock(Canvas &canvas)
{
    canvas.paint({0.78F, 0.3F}, {1.32F, horizon + 0.05F}, [](Point p, Colour under) {
        const float depth = p.y - rockTop(p.x);
        const float strata = layeredNoise({p.x * 16 + p.y * 8, p.y * 30}, 5, 63);
        const float light = 0.75F + 0.9F * strata + 0.5F * smooth(1.15F, 0.9F, p.x);
        const Colour stone = Colour{0.135F, 0.135F, 0.135F} * std::max(0.25F, light);
        const float splash = 0.016F + 0.022F * layeredNoise({p.x * 22, 5}, 5, 64);
        const float foot = smooth(horizon + 0.016F - splash * 1.6F, horizon + 0.020F, p.y);
        return mix(under, mix(stone, {0.86F, 0.87F, 0.85F}, foot),
                   unit(depth / Canvas::pixel + 0.5F) * smooth(horizon + 0.030F, horizon + 0.014F, p.y));
    });
}

void paintLighthouse(Canvas &canvas)
{
    constexpr float x = 1.045F;
    const float foot = rockTop(x) + 0.006F;
    constexpr float height = 0.235F;
    const float gallery = foot - height;
    const auto widthAt
        = [&](float y) { return mix(0.0155F, 0.0245F, std::pow((y - gallery) / height, 1.3F)); };
    canvas.paint({x - 0.03F, gallery}, {x + 0.03F, foot}, [&](Point p, Colour under) {
        const float width = widthAt(p.y);
        const float across = (p.x - x) / width;
        const float round = 0.30F
            + 0.72F * std::pow(unit(std::cos(std::asin(std::clamp(across, -1.0F, 1.0F)) + 0.7F)), 0.8F);
        const float part = (p.y - gallery) / height;
        const bool banded = (part > 0.20F && part < 0.42F) || (part > 0.64F && part < 0.84F);
        const Colour paint = banded ? Colour{0.50F, 0.15F, 0.13F} : Colour{0.95F, 0.94F, 0.90F};
        const bool window = std::abs(p.x - x - 0.003F) < 0.0028F
            && (std::abs(part - 0.14F) < 0.022F || std::abs(part - 0.53F) < 0.022F
                || std::abs(part - 0.91F) < 0.03F);
        const Colour colour = window ? Colour{0.07F, 0.07F, 0.08F} : paint * round;
        return mix(under, colour, unit((1 - std::abs(across)) * width / Canvas::pixel + 0.5F));
    });
    const Colour iron{0.09F, 0.09F, 0.10F};
    canvas.stroke({x - 0.024F, gallery}, 0.0032F, {x + 0.024F, gallery}, 0.0032F, iron);
    for (int post = 0; post <= 6; ++post) {
        const float place = x - 0.024F + 0.008F * float(post);
        canvas.stroke({place, gallery}, 0.0007F, {place, gallery - 0.014F}, 0.0007F, iron);
    }
    canvas.stroke({x - 0.024F, gallery - 0.014F}, 0.0009F, {x + 0.024F, gallery - 0.014F}, 0.0009F, iron);
    canvas.glow({x, gallery - 0.018F}, 0.022F, {0.55F, 0.48F, 0.30F});
    canvas.stroke({x, gallery - 0.006F}, 0.0105F, {x, gallery - 0.026F}, 0.0105F, {1.0F, 0.96F, 0.80F});
    for (const float bar : {-0.0105F, -0.0035F, 0.0035F, 0.0105F})
        canvas.stroke({x + bar, gallery - 0.002F}, 0.0007F, {x + bar, gallery - 0.032F}, 0.0007F, iron);
    canvas.stroke({x, gallery - 0.036F}, 0.0130F, {x, gallery - 0.048F}, 0.0030F, iron);
    canvas.stroke({x, gallery - 0.048F}, 0.0015F, {x, gallery - 0.068F}, 0.0008F, iron);

    const Point house{x + 0.060F, rockTop(x + 0.060F) + 0.006F};
    canvas.paint(house - Point{0.035F, 0.06F}, house + Point{0.035F, 0.01F}, [&](Point p, Colour under) {
        const Point place = p - house;
        const bool wall = std::abs(place.x) < 0.026F && place.y > -0.026F && place.y < 0.008F;
        const bool roof = place.y <= -0.026F && place.y > -0.047F
            && std::abs(place.x) < 0.031F + (place.y + 0.026F) * 0.75F;
        const bool window
            = std::abs(std::abs(place.x) - 0.012F) < 0.0035F && std::abs(place.y + 0.013F) < 0.005F;
        if (roof)
            return Colour{0.19F, 0.17F, 0.17F};
        if (wall)
            return window ? Colour{0.10F, 0.10F, 0.11F} : Colour{0.74F, 0.73F, 0.70F};
        return under;
    });
}

void paintGulls(Canvas &canvas)
{
    const struct
    {
        Point place;
        float size, tilt;
    } gulls[] = {{{0.765F, 0.215F}, 0.023F, 0.15F},
                 {{0.835F, 0.150F}, 0.017F, -0.10F},
                 {{0.700F, 0.290F}, 0.013F, 0.05F}};
    const Colour white{0.95F, 0.95F, 0.93F};
    for (const auto &gull : gulls) {
        for (const float side : {-1.0F, 1.0F}) {
            const Point elbow = gull.place + Point{side * 0.55F, -0.34F + side * gull.tilt} * gull.size;
            const Point tip = gull.place + Point{side * 1.30F, -0.10F + side * gull.tilt * 1.6F} * gull.size;
            canvas.stroke(gull.place, gull.size * 0.10F, elbow, gull.size * 0.085F, white);
            canvas.stroke(elbow, gull.size * 0.085F, tip, gull.size * 0.02F,
                          mix(white, {0.2F, 0.2F, 0.2F}, 0.35F));
        }
        canvas.stroke(gull.place + Point{-0.10F, 0.05F} * gull.size, gull.size * 0.11F,
                      gull.place + Point{0.30F, 0.00F} * gull.size, gull.size * 0.07F, white);
    }
}

} // namespace

Canvas sea()
{
    Canvas canvas(Canvas::Format::Landscape);
    canvas.paint([](Point p, Colour) { return sky(p); });
    canvas.glow(sun, 0.055F, {0.22F, 0.20F, 0.15F});
    paintRock(canvas);
    paintLighthouse(canvas);
    const View view{5.2F, horizon - 0.004F, 1.1F, 7.0F, 900, 0.0028F};
    paintGround(canvas, view, seaHeight, [](const Place &place, Colour) { return water(place); });
    paintGulls(canvas);
    canvas.finish(0.18F, 0.010F, 6);
    return canvas;
}

} // namespace lindenreed::samples
