// The two screens that try out how a date of the show looks.

#pragma once

#include "settings_screens.h"

namespace customize_screen {

/// A font with every style, and one that has no italic.
inline const QList<lindenreed::device::FontRecord> fonts{{"Serif", 0, "Serif R"}, {"Serif", 1, "Serif I"},
                                                         {"Serif", 2, "Serif B"}, {"Serif", 3, "Serif BI"},
                                                         {"Sans", 0, "Sans R"},   {"Sans", 2, "Sans B"}};

/// One of the two dates: its screen, the beginning of its settings' names, its preview.
struct Date
{
    QString view;
    QString listView;
    QByteArray prefix;
    const char *preview;
};

inline const QList<Date> dates{
    {QStringLiteral("settings_customize_created_date"), QStringLiteral("settings_created_datetime"),
     "created_date_", "RectangleCreatedDate"},
    {QStringLiteral("settings_customize_current_date"), QStringLiteral("settings_current_datetime"),
     "current_date_", "RectangleCurrentDate"}};

/// Data of a test that runs for both: the place in `dates`.
inline void rowForEachDate()
{
    QTest::addColumn<int>("date");
    QTest::newRow("photo date") << 0;
    QTest::newRow("current date") << 1;
}

inline QQuickItem *item(const RunningApp &running, const char *id)
{
    return SettingsScreens::item(running, id);
}

inline QVariant setting(const RunningApp &running, const Date &date, const char *name)
{
    return running.settings()->property(date.prefix + name);
}

/// "POSITION FONT BOLD ITALIC".
inline QString look(const RunningApp &running, const Date &date)
{
    return QStringLiteral("%1 %2 %3 %4")
        .arg(setting(running, date, "position").toInt())
        .arg(setting(running, date, "font").toString())
        .arg(setting(running, date, "font_is_bold").toInt())
        .arg(setting(running, date, "font_is_italic").toInt());
}

inline QString previewLook(const RunningApp &running)
{
    const QQuickItem *const preview = item(running, "preview");
    return QStringLiteral("%1 %2 %3 %4")
        .arg(preview->property("position_uid").toInt())
        .arg(preview->property("font_family").toString())
        .arg(preview->property("bold").toInt())
        .arg(preview->property("italic").toInt());
}

/// Opens a combo box of the bar and chooses a row of its menu.
inline bool choose(const RunningApp &running, const char *comboBox, const QString &row)
{
    return pressByAccessibility(item(running, comboBox)) && SettingsScreens::choose(running, row);
}

/// Opens the corner picker and chooses one.
inline bool chooseCorner(const RunningApp &running, const QString &name)
{
    return pressByAccessibility(item(running, "position"))
        && QTest::qWaitFor([&] { return SettingsScreens::shows(running, QAccessible::ListItem, name); })
        && SettingsScreens::press(running, QAccessible::ListItem, name);
}

/// The texts of the style list, each with its uid.
inline QStringList styles(const RunningApp &running)
{
    QStringList rows;
    const int count = SettingsScreens::number(running, "font_style_model", QStringLiteral("count"));
    for (int row = 0; row < count; ++row) {
        rows.append(SettingsScreens::value(running, "font_style_model",
                                           QStringLiteral("[get(%1).uid_, get(%1).text_, get(%1).bold_, "
                                                          "get(%1).italic_].join(' ')")
                                               .arg(row))
                        .toString());
    }
    return rows;
}

inline int selected(const RunningApp &running, const char *comboBox)
{
    return item(running, comboBox)->property("selectedUid").toInt();
}

} // namespace customize_screen
