// Texts that travel in PNG files.

#pragma once

class QFile;

namespace lindenreed::picture_stand {

/**
 * False for a PNG whose texts are more than 4 MiB, unpacked: the reader unpacks them all, and keeps several
 * copies, before the first pixel, and a file of 150 KiB can hold 150 MiB of them.
 *
 * True for every other file, damaged ones as well. The file is open, and afterwards stands at its beginning.
 * Any thread.
 */
bool hasBearableTexts(QFile &file);

} // namespace lindenreed::picture_stand
