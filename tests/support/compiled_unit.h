// What the QML compiler made of a component when the program was built.

#pragma once

#include <private/qqmlmetatype_p.h>

/// Null where there is none. Qt's function asks for more in later versions.
template <typename Types = QQmlMetaType>
const QQmlPrivate::CachedQmlUnit *compiledUnit(const QUrl &url)
{
    typename Types::CachedUnitLookupError error{};
    if constexpr (requires { Types::findCachedCompilationUnit(url, &error); })
        return Types::findCachedCompilationUnit(url, &error);
    else
        return Types::findCachedCompilationUnit(url, Types::AcceptUntyped, &error);
}
