// Texts, theme and customisation.

#include "slateview.h"

#include "call.h"

#include <texts.h>
#include <theme.h>

#include <algorithm>

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

const char *GetLangText(const char *key)
{
    const char *const text = texts::text(key);
    return answer("GetLangText", text ? text : key, key);
}

const char *GetLangTextPlural(const char *key, double count)
{
    const char *const text = texts::plural(key, count);
    return answer("GetLangTextPlural", text ? text : key, key, count);
}

void GetLangTime(char *buffer, int size, const char *format, const struct tm *time, int flags)
{
    if (!buffer || size <= 0) {
        note("GetLangTime", size, format, flags);
        return;
    }
    const QByteArray text = format && time ? texts::time(format, *time) : QByteArray();
    const qsizetype length = std::min<qsizetype>(text.size(), size - 1);
    std::copy_n(text.constData(), length, buffer);
    buffer[length] = '\0';
    journal::record("GetLangTime", {shown(size), shown(format), shown(flags)}, shown(buffer));
}

int GetThemeInt(const char *name, int fallback)
{
    return answer("GetThemeInt", name ? theme::integer(name, fallback) : fallback, name, fallback);
}

int GetSoftwareLocalizationType(void)
{
    const Device *const running = device();
    return answer("GetSoftwareLocalizationType", running ? running->localizationType : 0);
}

int GetCustomizedPartner(void)
{
    const Device *const running = device();
    return answer("GetCustomizedPartner", running ? running->customizedPartner : 0);
}
