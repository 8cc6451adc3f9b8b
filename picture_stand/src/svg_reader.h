// SVG files, which are programs for a drawing rather than pictures.

#pragma once

#include <QImage>
#include <QSize>

class QFile;
class QImageReader;

namespace lindenreed::picture_stand {

/// Whether the content of what is about to be read, or failing that its name, is that of an SVG; its device
/// stays where it is.
bool isSvg(const QImageReader &reader);

enum class SvgFit {
    Within, ///< drawn at the box's size where it is larger, else at its own
    Cover ///< drawn at its own size and scaled to touch the box
};

/// What drawing one may take of a machine of so many bytes: a third, at most 192 MiB, as the largest picture
/// that Qt decodes has 128; 0: not known how many.
qint64 svgMemory(qint64 machine);

/**
 * Draws an SVG in a process of its own, which has svgMemory() and ten seconds: a few lines of text can ask
 * for more than any device has, name files that never end, or include themselves. Null where that is not
 * enough, and for files of more than a sixth of that memory.
 *
 * `file` is open, and is read here: what comes under its name meanwhile is not drawn, and who waits for it
 * keeps nobody else waiting. Any thread; those of pools wait for one another, so that no more than two are
 * drawn at once.
 */
QImage readSvg(QFile &file, SvgFit fit, QSize box);

} // namespace lindenreed::picture_stand
