// A picture file that means harm, or that something has happened to.

#pragma once

#include <QByteArray>
#include <QList>

namespace hostile {

struct Picture
{
    QByteArray name; ///< of the file, with an ending that the frame lists
    QByteArray contents;
};
using Pictures = QList<Picture>;

} // namespace hostile
