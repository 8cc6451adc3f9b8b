#include "places.h"

#include <QCoreApplication>
#include <QDir>

namespace lindenreed::host {

using namespace Qt::StringLiterals;

QString ownFolder()
{
    return QCoreApplication::applicationDirPath();
}

QString programFolder()
{
    return QDir::cleanPath(ownFolder() + u"/../lib/picture_stand"_s);
}

QString dataFolder()
{
    return QDir::cleanPath(ownFolder() + u"/../share/picture_stand"_s);
}

} // namespace lindenreed::host
