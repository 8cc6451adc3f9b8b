// The playlist workflow in the running application: a store with chosen playlists, and the steps that the
// models tell of, in their order. Needs the application's screens and slate_core.

#pragma once

#include "accessible_items.h"
#include "device_text.h"
#include "running_app.h"
#include "stored_database.h"

#include <slateview.h>
#include <slateview_testing.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <memory>
#include <utility>

/// Notes what the models tell: what has happened, and in which order.
class WorkflowSteps : public QObject
{
public:
    explicit WorkflowSteps(RunningApp &running)
    {
        using namespace lindenreed::picture_stand;
        auto *playlists = running.playlists();
        auto *folders = running.model<FolderModel>("FolderModel");
        const auto note = [this](const QString &line) { m_lines.append(line); };
        connect(playlists, &PlaylistModel::activeIdChanged, this, [=] {
            const int row = playlists->getIndexById(playlists->activeId());
            note(QStringLiteral("active ")
                 + (row < 0 ? QString::number(playlists->activeId())
                            : playlists->data(playlists->index(row)).toString()));
        });
        connect(playlists, &PlaylistModel::modeChanged, this,
                [=] { note(QVariant::fromValue(playlists->mode()).toString()); });
        connect(folders, &FolderModel::modeChanged, this,
                [=] { note(QVariant::fromValue(folders->mode()).toString()); });
        connect(folders, &FolderModel::viewModeChanged, this,
                [=] { note(QVariant::fromValue(folders->viewMode()).toString()); });
        connect(folders, &FolderModel::changedFolder, this,
                [=](const QString &path) { note(QStringLiteral("folder ") + path); });
        connect(folders, &FolderModel::countFilesChanged, this, [=] {
            note(QStringLiteral("%1 of %2 rows").arg(folders->countFiles()).arg(folders->rowCount()));
        });
        connect(folders, &FolderModel::countSelectedChanged, this,
                [=] { note(QStringLiteral("selected %1").arg(folders->countSelected())); });
        connect(&DataStorage::instance(), &DataStorage::changed, this, [=] {
            QStringList all;
            for (int row = 0; row < playlists->rowCount(); ++row)
                all.append(QStringLiteral("%1 %2").arg(
                    playlists->data(playlists->index(row)).toString(),
                    playlists->data(playlists->index(row), PlaylistModel::CountRole).toString()));
            note(QStringLiteral("stored ") + all.join(QStringLiteral(", ")));
        });
        connect(&running.app, &App::showInfoMessage, this, [=](const QString &message, const QString &icon) {
            note(QStringLiteral("message %1 %2").arg(message, icon));
        });
        connect(&running.app, &App::backViewChanged, this,
                [=, &running] { note(QStringLiteral("back to ") + running.app.backView()); });
        connect(&running.app, &App::changedView, this,
                [=](const QString &view) { note(QStringLiteral("view ") + view); });
        connect(running.slideshow(), &SlideshowModel::loadToCache, this,
                [=](const QStringList &paths) { note(QStringLiteral("show of %1").arg(paths.size())); });
        connect(running.settings(), &SettingsModel::isFirstRunChanged, this,
                [=] { note(QStringLiteral("no first run")); });
        connect(running.settings(), &SettingsModel::change_picture_time_indexChanged, this, [=, &running] {
            note(QStringLiteral("unit %1").arg(
                running.settings()->property("change_picture_time_index").toInt()));
        });
        connect(running.settings(), &SettingsModel::change_picture_timeChanged, this, [=, &running] {
            note(QStringLiteral("interval %1").arg(running.settings()->changePictureTime()));
        });
    }

    QStringList taken() { return std::exchange(m_lines, {}); }

private:
    QStringList m_lines;
};

/// A store without playlists that asks for no first run, and a folder of four pictures on the internal
/// memory, which the picker shows.
class WorkflowFixture
{
public:
    explicit WorkflowFixture(const QString &expectedWarnings = {})
    {
        QTest::failOnWarning(QRegularExpression(expectedWarnings.isEmpty()
                                                    ? QStringLiteral(".?")
                                                    : QStringLiteral("^(?!%1)").arg(expectedWarnings)));
        for (const char *name : {"a.png", "b.png", "c.png", "d.png"}) {
            QImage picture(60, 40, QImage::Format_Grayscale8);
            picture.fill(quint8(50 * name[0]));
            paths.append(folder.filePath(QString::fromLatin1(name)));
            if (!picture.save(paths.last()))
                qFatal("%s cannot be written", qPrintable(paths.last()));
        }
    }
    ~WorkflowFixture() { QThreadPool::globalInstance()->waitForDone(); }

    /// Calls `body` while the application runs on its overview.
    void run(const std::function<void(RunningApp &)> &body)
    {
        lindenreed::picture_stand::App app;
        QCOMPARE(runApp(app,
                        [&](RunningApp &running) {
                            QVERIFY(stored_database::execute(
                                {QStringLiteral("DELETE FROM settings WHERE playlist <> -1")}));
                            PlaylistModel *const playlists = running.playlists();
                            while (playlists->count() > 0)
                                playlists->deleteItem(
                                    playlists->data(playlists->index(0), PlaylistModel::IdRole).toLongLong());
                            running.settings()->setProperty("isFirstRun", false);
                            running.settings()->saveConfig(QStringLiteral("is_first_run"));
                            QTRY_COMPARE(running.screen()->height(), ScreenHeight() - PanelHeight());
                            folders(running)->changeFolder(folder.path());
                            body(running);
                        }),
                 0);
    }

    static qlonglong add(const RunningApp &running, const QString &title, const QStringList &pictures)
    {
        PlaylistModel *const playlists = running.playlists();
        const qlonglong id = playlists->addItem(title);
        playlists->setActiveId(id);
        playlists->addImagesToPlaylist(pictures);
        playlists->setActiveId(-1);
        return id;
    }

    static lindenreed::picture_stand::FolderModel *folders(const RunningApp &running)
    {
        return running.model<lindenreed::picture_stand::FolderModel>("FolderModel");
    }

    /// What shows the name and can be pressed; null where nothing does.
    static QQuickItem *button(const RunningApp &running, const QString &name)
    {
        return findAccessible(running.window->contentItem(), QAccessible::Button, name);
    }
    static bool press(const RunningApp &running, const QString &name)
    {
        QQuickItem *const found = button(running, name);
        return found && pressByAccessibility(found);
    }
    /// As soon as there is such a button.
    static bool pressSoon(const RunningApp &running, const QString &name)
    {
        return QTest::qWaitFor([&] { return button(running, name); }) && press(running, name);
    }
    static QQuickItem *titleField(const RunningApp &running)
    {
        return findAccessible(running.window->contentItem(), QAccessible::EditableText);
    }
    /// Until the dialog for a title can be typed into: it has its text, selected, and the focus.
    static bool titleDialogIsReady(const RunningApp &running)
    {
        return QTest::qWaitFor([&] {
            const QQuickItem *const field = titleField(running);
            return field && field->hasActiveFocus() && !field->property("selectedText").toString().isEmpty();
        });
    }
    /// To the picker, for a new playlist with the proposed title.
    static bool create(const RunningApp &running)
    {
        return press(running, textOf("@New_playlist")) && titleDialogIsReady(running)
            && press(running, textOf("@Continue"));
    }
    static bool shows(const RunningApp &running, const QString &text)
    {
        return findAccessible(running.window->contentItem(), QAccessible::StaticText, text)
            || findAccessible(running.window->contentItem(), QAccessible::Heading, text);
    }
    /// Opens the menu of a row or picture by a long press, and chooses an entry.
    static bool choose(const RunningApp &running, const QString &row, const QString &entry)
    {
        QQuickItem *found = nullptr;
        return hold(running, row) && QTest::qWaitFor([&] {
                   found = findAccessible(running.window->contentItem(), QAccessible::MenuItem, entry);
                   return found != nullptr;
               })
            && pressByAccessibility(found);
    }
    /// Until the menu is there.
    static bool hold(const RunningApp &running, const QString &row)
    {
        QQuickItem *found = nullptr;
        if (!QTest::qWaitFor([&] { return (found = button(running, row)) != nullptr; }))
            return false;
        const QPoint middle = sceneRectangle(found).center();
        QTest::mousePress(running.window, Qt::LeftButton, {}, middle);
        const bool opened = QTest::qWaitFor(
            [&] { return findAccessible(running.window->contentItem(), QAccessible::PopupMenu) != nullptr; });
        QTest::mouseRelease(running.window, Qt::LeftButton, {}, middle);
        return opened;
    }

    lindenreed::device::DeviceForTest device;
    QTemporaryDir folder{QStringLiteral("/mnt/ext1/pictures-XXXXXX")};
    QStringList paths;
};
