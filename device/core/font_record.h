// One face of a font family, as applications get to know it.

#pragma once

#include <QByteArray>

namespace lindenreed::device {

/// A null name reaches the application as a null pointer; a null family ends the list there.
struct FontRecord
{
    QByteArray family;
    int style = 0; ///< 0 regular, 1 italic, 2 bold, 3 bold italic
    QByteArray face;
};

} // namespace lindenreed::device
