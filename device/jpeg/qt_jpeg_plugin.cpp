#include "qt_jpeg_plugin.h"

#include <QCoreApplication>
#include <QPluginLoader>

namespace lindenreed::device {

QImageIOPlugin *qtJpegPlugin()
{
    // Never unloaded, as Qt does not unload what it has loaded itself.
    static QImageIOPlugin *const plugin = []() -> QImageIOPlugin * {
        for (const QString &folder : QCoreApplication::libraryPaths()) {
            QPluginLoader loader(folder + QStringLiteral("/imageformats/qjpeg"));
            if (auto *const found = qobject_cast<QImageIOPlugin *>(loader.instance()))
                return found;
        }
        return nullptr;
    }();
    return plugin;
}

} // namespace lindenreed::device
