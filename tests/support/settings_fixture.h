// The settings as a test sees them: every key with two values, the stored rows, a model on a first database.

#pragma once

#include "call_lines.h"

#include <datastorage.h>
#include <settings_model.h>
#include <stderr_capture.h>
#include <stored_database.h>

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

/// A setting: its key, its property, the value that a new database has, another one, and that as text.
struct Sample
{
    QString key;
    QByteArray property;
    QVariant first;
    QVariant other;
    QString otherText;
};

// In the order in which they are loaded and saved.
inline const QList<Sample> samples{
    {u"change_picture_time"_s, "change_picture_time", 30, 3600, u"3600"_s},
    {u"change_picture_time_index"_s, "change_picture_time_index", 0, 2, u"2"_s},
    {u"shuffle"_s, "shuffle", false, true, u"1"_s},
    {u"display_mode"_s, "display_mode", 1, 0, u"0"_s},
    {u"created_date_show"_s, "created_date_show", true, false, u"0"_s},
    {u"created_date_position"_s, "created_date_position", 2, -7, u"-7"_s},
    {u"created_date_font"_s, "created_date_font", u"default"_s, u"O'Neill Sans"_s, u"O'Neill Sans"_s},
    {u"created_date_font_is_bold"_s, "created_date_font_is_bold", false, true, u"1"_s},
    {u"created_date_font_is_italic"_s, "created_date_font_is_italic", false, true, u"1"_s},
    {u"current_date_show"_s, "current_date_show", false, true, u"1"_s},
    {u"current_date_position"_s, "current_date_position", 0, 3, u"3"_s},
    {u"current_date_font"_s, "current_date_font", u"default"_s, u"Serif \U0001F58B"_s, u"Serif \U0001F58B"_s},
    {u"current_date_font_is_bold"_s, "current_date_font_is_bold", false, true, u"1"_s},
    {u"current_date_font_is_italic"_s, "current_date_font_is_italic", false, true, u"1"_s},
    {u"is_first_run"_s, "isFirstRun", true, false, u"0"_s},
};

inline const QStringList lightKeys{u"frontlight_brightness"_s, u"frontlight_brightness_auto"_s,
                                   u"frontlight_smartlight"_s, u"frontlight_smartlight_auto"_s,
                                   u"frontlight_enabled"_s};

inline QStringList globalRows()
{
    return stored_database::rows(u"SELECT name, value FROM settings WHERE playlist = -1 ORDER BY id"_s);
}

inline QStringList playlistRows()
{
    return stored_database::rows(
        u"SELECT name, value, playlist FROM settings WHERE playlist <> -1 ORDER BY id"_s);
}

/// Data of a test that runs once for each setting: its place in `samples`.
inline void rowForEachSetting()
{
    QTest::addColumn<int>("setting");
    for (int i = 0; i < samples.size(); ++i)
        QTest::newRow(samples.at(i).property) << i;
}

/// A device, a database with the first rows, and a model that has loaded nothing yet.
class SettingsFixture
{
public:
    /// The rows that a new database has; made on first use, in a process that has no store yet.
    static const QStringList &firstRows()
    {
        static const QStringList rows = [] {
            const lindenreed::device::DeviceForTest device;
            DataStorage::instance();
            stored_database::hurry();
            return globalRows();
        }();
        return rows;
    }

    SettingsFixture()
    {
        device = std::make_unique<lindenreed::device::DeviceForTest>();
        [this] {
            QCOMPARE(firstRows().size(), 20);
            QVERIFY(stored_database::execute({u"DELETE FROM settings WHERE id > 20"_s}));
            for (const QString &row : firstRows())
                DataStorage::instance().setSetting(row.section(u'|', 0, 0), row.section(u'|', 1), -1);
            QCOMPARE(globalRows(), firstRows());
        }();
        output = std::make_unique<StderrCapture>();
        model = std::make_unique<lindenreed::picture_stand::SettingsModel>();
        device->forgetCalls();
    }
    ~SettingsFixture()
    {
        model.reset();
        output.reset();
        device.reset();
    }

    QByteArrayList lightCalls() const
    {
        const QByteArrayList lines = callLines(device->calls());
        device->forgetCalls();
        return lines;
    }

    std::unique_ptr<lindenreed::device::DeviceForTest> device;
    std::unique_ptr<StderrCapture> output;
    std::unique_ptr<lindenreed::picture_stand::SettingsModel> model;
};
