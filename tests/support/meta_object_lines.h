// What a class itself offers to QML, one line each, in the order of its declaration.

#pragma once

#include <QByteArrayList>
#include <QMetaEnum>
#include <QMetaMethod>
#include <QMetaProperty>

/// As "signal void changed(int) value" and "slot int count() "; what is not public says so first.
inline QByteArrayList methodLines(const QMetaObject &meta)
{
    QByteArrayList lines;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        lines.append(QByteArray(method.access() == QMetaMethod::Public ? "" : "not public ")
                     + (method.methodType() == QMetaMethod::Signal ? "signal " : "slot ") + method.typeName()
                     + ' ' + method.methodSignature() + ' ' + method.parameterNames().join(','));
    }
    return lines;
}

/// As "name type rw notifier" and, where it cannot be written, "name type r notifier".
inline QByteArrayList propertyLines(const QMetaObject &meta)
{
    QByteArrayList lines;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        const QByteArray type = property.isEnumType() ? property.enumerator().name() : property.typeName();
        lines.append(QByteArray(property.name()) + ' ' + type + (property.isWritable() ? " rw " : " r ")
                     + property.notifySignal().name());
    }
    return lines;
}

/// As "Enumeration Key 1".
inline QByteArrayList enumeratorLines(const QMetaObject &meta)
{
    QByteArrayList lines;
    for (int i = meta.enumeratorOffset(); i < meta.enumeratorCount(); ++i) {
        const QMetaEnum enumerator = meta.enumerator(i);
        for (int key = 0; key < enumerator.keyCount(); ++key)
            lines.append(QByteArray(enumerator.name()) + ' ' + enumerator.key(key) + ' '
                         + QByteArray::number(enumerator.value(key)));
    }
    return lines;
}
