// What a key of the device's language table says.

#pragma once

#include <slateview.h>

#include <QString>

inline QString textOf(const char *key)
{
    return QString::fromUtf8(GetLangText(key));
}
