// Landscapes seen from above the ground: a height for every place, drawn column by column from near to far.

#pragma once

#include "canvas.h"

namespace lindenreed::samples {

/// Looks along +z; x to the right. The eye is `height` above 0.
struct View
{
    float height = 1;
    float horizon = 0.4F; ///< where in the picture
    float focus = 1; ///< picture lengths of something as long as it is far away
    float nearest = 1;
    float farthest = 100;
    float stepGrowth = 0.003F; ///< next step, as a part of the distance
};

struct Place
{
    float x, z, height;
};

/// heightOf(x, z) gives the ground; colourOf(Place, Colour behind) its look. What lies behind a crest is left
/// out.
template <typename Height, typename Shade>
void paintGround(Canvas &canvas, const View &view, Height heightOf, Shade colourOf)
{
    const float middle = float(canvas.width()) * Canvas::pixel / 2;
    for (int column = 0; column < canvas.width(); ++column) {
        const float aside = (Canvas::centre(column, 0).x - middle) / view.focus;
        int free = canvas.height(); // rows from here on are painted
        Place last{aside * view.nearest, view.nearest, heightOf(aside * view.nearest, view.nearest)};
        float lastY = float(canvas.height());
        for (float z = view.nearest; z < view.farthest && free > 0; z *= 1 + view.stepGrowth) {
            const Place here{aside * z, z, heightOf(aside * z, z)};
            const float y = (view.horizon + (view.height - here.height) / z * view.focus) / Canvas::pixel;
            const int top = std::max(0, int(std::ceil(y)));
            for (int row = free - 1; row >= top; --row) {
                const float t = lastY - y > 0.001F ? unit((lastY - float(row)) / (lastY - y)) : 1.0F;
                const Place between{mix(last.x, here.x, t), mix(last.z, here.z, t),
                                    mix(last.height, here.height, t)};
                canvas.at(column, row) = colourOf(between, canvas.at(column, row));
            }
            if (top < free) {
                // The crest covers only a part of the pixel above it.
                const float part = float(top) - y;
                if (top > 0)
                    canvas.at(column, top - 1) = mix(canvas.at(column, top - 1),
                                                     colourOf(here, canvas.at(column, top - 1)), unit(part));
                free = top;
            }
            last = here;
            lastY = y;
        }
    }
}

} // namespace lindenreed::samples
