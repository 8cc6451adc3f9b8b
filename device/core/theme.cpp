#include "theme.h"

#include "configuration.h"
#include "paths.h"
#include "visible_text.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <atomic>

namespace lindenreed::device::theme {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<const char *, 2> names{"e3.galery_cover.width", "e3.galery_cover.height"};
constexpr int most = 10'000; // as many pixels as a panel may have

constinit std::atomic<const Configuration *> current = nullptr;

} // namespace

QString complaint(const Configuration &table)
{
    for (const char *name : names) {
        const std::optional<int> value = table.integer(name);
        if (!value || *value < 1 || *value > most)
            return u"\"%1\" must be a whole number from 1 to %2"_s.arg(QLatin1StringView(name)).arg(most);
    }
    QByteArrayList keys = table.keys();
    std::sort(keys.begin(), keys.end());
    for (const QByteArray &key : std::as_const(keys)) {
        if (std::find(names.begin(), names.end(), key) == names.end())
            return u"\"%1\" is not known"_s.arg(QString::fromUtf8(key));
    }
    return {};
}

bool load(QString *error, const QString &path)
{
    if (current)
        return true;
    const QString file = path.isEmpty() ? dataFolder() + u"/theme/theme.cfg"_s : path;
    const Configuration table = Configuration::read(QFile::encodeName(file));
    const QString wrong = complaint(table);
    if (!wrong.isEmpty()) {
        if (error)
            *error = visibleText(u"The theme %1 is not usable: %2."_s.arg(file, wrong));
        return false;
    }
    // Never freed: other threads read it, also after the device has stopped.
    current = new Configuration(table);
    return true;
}

int integer(const QByteArray &name, int fallback)
{
    const Configuration *const table = current;
    return table ? table->integer(name).value_or(fallback) : fallback;
}

} // namespace lindenreed::device::theme
