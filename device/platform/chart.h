// A test chart for a panel and what drives it.

#pragma once

#include <QImage>
#include <QSize>

namespace lindenreed::device {

/// Format_Grayscale8. The upper three quarters are four rows of four patches, the 16 greys of a panel from
/// black at the top left to white at the bottom right, each with its number in the upper right corner and a
/// check of black and white pixels in the lower left one: seen from afar, that is the grey of half their
/// light. Below them a ramp from black to white, solid at both ends, dithered for this panel as pictures are.
/// A line along the outermost pixels, white on dark and black on light greys, is there whole where the driver
/// leaves no row or column out. Main thread.
QImage drawChart(QSize size);

} // namespace lindenreed::device
