// The dialog for an interval of the user's own, on the screen that sets a show.

#pragma once

#include "settings_screens.h"

namespace interval_dialog {

inline QQuickItem *item(const RunningApp &running, const char *id)
{
    return SettingsScreens::item(running, id);
}

inline QString field(const RunningApp &running)
{
    return item(running, "input")->property("text").toString();
}

inline int unit(const RunningApp &running)
{
    return item(running, "time")->property("selectedUid").toInt();
}

inline bool isOpen(const RunningApp &running)
{
    return item(running, "loader_custom_interval")->isVisible();
}

inline bool open(const RunningApp &running)
{
    return pressByAccessibility(item(running, "menu_change_picter"))
        && SettingsScreens::choose(
               running,
               SettingsScreens::value(running, "change_picture_time_model", u"get(7).text_"_s).toString())
        && QTest::qWaitFor([&] { return item(running, "input")->hasActiveFocus(); });
}

inline void type(const RunningApp &running, const QString &text)
{
    for (const QChar character : text)
        QTest::keyClick(running.window, character.toLatin1());
}

inline bool chooseUnit(const RunningApp &running, int uid)
{
    if (unit(running) == uid)
        return true;
    return pressByAccessibility(item(running, "time"))
        && SettingsScreens::choose(running, QStringList{u"seconds"_s, u"minutes"_s, u"hours"_s}.at(uid))
        && QTest::qWaitFor([&] { return !item(running, "time")->property("isOpened").toBool(); });
}

/// Opens the dialog and types into its empty field.
inline bool openAndType(const RunningApp &running, int unit, const QString &keys)
{
    if (!open(running) || !chooseUnit(running, unit))
        return false;
    item(running, "input")->forceActiveFocus();
    type(running, keys);
    return true;
}

inline QString stored()
{
    const QStringList rows
        = stored_database::rows(u"SELECT value FROM settings WHERE playlist = -1 AND name IN "
                                "('change_picture_time', 'change_picture_time_index') ORDER BY name"_s);
    return rows.join(u'|');
}

} // namespace interval_dialog
