// A test chart for a panel and what drives it.

#pragma once

#include <QImage>
#include <QSize>

namespace lindenreed::device {

/// Format_Grayscale8. The upper three quarters are four rows of four patches, the 16 greys of a panel from
/// black at the top left to white at the bottom right, each with a check of black and white pixels in its
/// lower left corner: seen from afar, that is the grey of half their light. Below them a ramp from black to
/// white, dithered for this panel as pictures are.
QImage drawChart(QSize size);

} // namespace lindenreed::device
