#include "theme.h"

#include "configuration.h"
#include "paths.h"

#include <QFile>

#include <atomic>

namespace lindenreed::device::theme {

namespace {

constinit std::atomic<const Configuration *> current = nullptr;

} // namespace

void load()
{
    if (current)
        return;
    const QString path = dataFolder() + QStringLiteral("/theme/theme.cfg");
    // Never freed: other threads read it, also after the device has stopped.
    current = new Configuration(Configuration::read(QFile::encodeName(path)));
}

int integer(const QByteArray &name, int fallback)
{
    const Configuration *const table = current;
    return table ? table->integer(name).value_or(fallback) : fallback;
}

} // namespace lindenreed::device::theme
