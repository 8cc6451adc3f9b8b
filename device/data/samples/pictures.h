// The sample pictures. Each is painted from fixed seeds: the same on every call.

#pragma once

#include "canvas.h"

namespace lindenreed::samples {

Canvas mountainsInMist();
Canvas moonOverWater();
Canvas dunes();
Canvas birches();
Canvas seedHead();
Canvas sea();
Canvas skyline();
Canvas balloons();
Canvas stillLife();
Canvas starryNight();

} // namespace lindenreed::samples
