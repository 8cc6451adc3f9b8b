// The real program, driven by what its screen calls things.

#pragma once

#include "show_device.h"

#include <QSet>

#include <algorithm>

class NamedScreen : public ShowDevice
{
public:
    QSet<QString> names()
    {
        QSet<QString> found;
        const QList<QJsonObject> all = items();
        for (const QJsonObject &item : all)
            found.insert(nameOf(item));
        return found;
    }

    /// Empty where nothing has this name.
    QRect place(const QString &name)
    {
        QRect found;
        const QList<QJsonObject> all = items();
        for (const QJsonObject &item : all) {
            if (nameOf(item) != name)
                continue;
            if (canBeReached(item))
                return rectangleOf(item);
            found = rectangleOf(item); // behind a dialog, as long as nothing better comes
        }
        return found;
    }

    bool isEnabled(const QString &name)
    {
        const QList<QJsonObject> all = items();
        return std::ranges::any_of(
            all, [&](const QJsonObject &item) { return nameOf(item) == name && canBeReached(item); });
    }

    /// "press NAME", "touch NAME" and "hold NAME" do it to an item, "key NAME" and "type TEXT" are the
    /// device's, "outside" taps where no dialog or menu is.
    bool act(const QString &step)
    {
        const QString verb = step.section(u' ', 0, 0);
        const QString name = step.section(u' ', 1);
        if (verb == QLatin1String("press"))
            return press(name);
        if (verb == QLatin1String("key"))
            return does(verb, {{QStringLiteral("name"), name}}) && idle();
        if (verb == QLatin1String("type"))
            return does(verb, {{QStringLiteral("text"), name}}) && idle();
        if (verb == QLatin1String("outside"))
            return tap(379, 50);
        const QRect at = place(name);
        return !at.isEmpty()
            && does(verb == QLatin1String("hold") ? verb : QStringLiteral("tap"),
                    {{QStringLiteral("x"), at.center().x()}, {QStringLiteral("y"), at.center().y()}})
            && idle();
    }

    /// Up to the first step that cannot be done, which it names.
    bool walk(const QStringList &steps)
    {
        return std::ranges::all_of(steps, [this](const QString &step) {
            const bool done = act(step);
            if (!done)
                qWarning("%s", qUtf8Printable(step));
            return done;
        });
    }

private:
    static QString nameOf(const QJsonObject &item) { return item.value(QLatin1String("name")).toString(); }
    static bool canBeReached(const QJsonObject &item)
    {
        return item.value(QLatin1String("enabled")).toBool(true);
    }
};
