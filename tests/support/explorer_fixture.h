// The explorer's screens over real folders, storages and playlists. Needs the platform plug-in and
// slate_core.

#pragma once

#include "folder_model.h"
#include "folder_tree.h"
#include "media_fixture.h"
#include "running_app.h"
#include "stored_database.h"

#include <slateview.h>

#include <QImage>
#include <QQmlExpression>
#include <QRegularExpression>
#include <QTest>

#include <functional>

/// What such a test has afresh: media that are out, and an empty folder on the internal memory.
class ExplorerFixture
{
public:
    using FolderModel = lindenreed::picture_stand::FolderModel;

    explicit ExplorerFixture(const QString &profile = QStringLiteral("grey-6"))
        : media(profile)
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".?")));
        if (!MediaFixture::settled() || !MediaFixture::look())
            qFatal("the storages are not reported");
    }

    QString path(const QString &entry) const { return tree.path(entry); }
    /// Writes a picture; its path.
    QString picture(const QString &entry, uint grey = 0x80) const
    {
        QImage image(60, 40, QImage::Format_Grayscale8);
        image.fill(grey);
        QDir().mkpath(QFileInfo(path(entry)).path());
        if (!image.save(path(entry), "PNG"))
            qFatal("%s cannot be written", qPrintable(path(entry)));
        return path(entry);
    }
    QStringList pictures(int count) const
    {
        QStringList paths;
        for (int i = 0; i < count; ++i)
            paths.append(picture(QStringLiteral("%1.png").arg(i, 3, 10, QLatin1Char('0'))));
        return paths;
    }

    MediaFixture media;
    const FolderTree tree{QStringLiteral("/mnt/ext1/album")};
};

/// The running application on one of its screens with an explorer.
struct RunningExplorer : RunningApp
{
    using FolderModel = lindenreed::picture_stand::FolderModel;

    explicit RunningExplorer(const RunningApp &running)
        : RunningApp(running)
    {
    }

    FolderModel *folders() const { return model<FolderModel>("FolderModel"); }

    /// The store has this one playlist from now on; its id.
    qlonglong onlyPlaylist(const QStringList &pictures) const
    {
        stored_database::hurry();
        while (playlists()->count() > 0)
            playlists()->deleteItem(
                playlists()->data(playlists()->index(0), PlaylistModel::IdRole).toLongLong());
        const qlonglong id = playlists()->addItem(QStringLiteral("Mine"));
        playlists()->setActiveId(id);
        playlists()->addImagesToPlaylist(pictures);
        return id;
    }

    /// The picker in a folder, "" for the storages, as if the user had come there for this.
    void openPicker(const QString &folder, PlaylistModel::PlaylistMode mode = PlaylistModel::CreateMode,
                    FolderModel::FolderModelMode selecting = FolderModel::SelectionMode) const
    {
        playlists()->setMode(mode);
        folders()->setMode(selecting);
        folders()->changeFolder(folder);
        app.changeView(QStringLiteral("select_photos"));
        waitForSize();
    }

    /// The screen of a playlist that has these pictures.
    void openPlaylist(const QStringList &pictures,
                      FolderModel::FolderModelMode selecting = FolderModel::NormalMode,
                      FolderModel::FolderModelViewMode view = FolderModel::GridViewMode) const
    {
        const qlonglong id = onlyPlaylist(pictures);
        playlists()->setMode(PlaylistModel::ViewMode);
        folders()->setMode(selecting);
        folders()->setViewMode(view);
        folders()->loadFromList(playlists()->getImagesById(id));
        app.changeView(QStringLiteral("playlist"));
        waitForSize();
    }

    /// The ExplorerGridView or ExplorerListView on show; null where there is none.
    QQuickItem *explorer() const { return list() ? list()->parentItem() : nullptr; }
    /// Its GridView.
    QQuickItem *list() const { return below(window->contentItem(), "cellHeight"); }
    QQuickItem *footer() const { return below(window->contentItem(), "textButton"); }

    /// The item of a row; null where the view has none.
    QQuickItem *cell(int row) const
    {
        QQuickItem *item = nullptr;
        QMetaObject::invokeMethod(list(), "itemAtIndex", Q_RETURN_ARG(QQuickItem *, item), Q_ARG(int, row));
        return item;
    }
    int cells() const { return list()->property("count").toInt(); }

    /// An expression as the file of `item` would write it.
    static QVariant valueOf(QQuickItem *item, const QString &expression)
    {
        return QQmlExpression(qmlContext(item), item, expression).evaluate();
    }
    double measure(const QString &expression) const { return valueOf(explorer(), expression).toDouble(); }

    /// The first item from `item` on, in the order of children, that has this property and, unless it is
    /// invalid, this value; null where there is none.
    static QQuickItem *below(QQuickItem *item, const char *property, const QVariant &value = {})
    {
        if (!item)
            return nullptr;
        if (item->metaObject()->indexOfProperty(property) >= 0
            && (!value.isValid() || item->property(property) == value))
            return item;
        for (QQuickItem *child : item->childItems()) {
            if (QQuickItem *found = below(child, property, value))
                return found;
        }
        return nullptr;
    }

    static QPoint centreOf(const QQuickItem *item)
    {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    void tap(const QPoint &point) const { QTest::mouseClick(window, Qt::LeftButton, {}, point); }
    void tap(const QQuickItem *item) const { tap(centreOf(item)); }
    void key(Qt::Key key) const { QTest::keyClick(window, key); }

private:
    /// Until the window has its size a list has no rows.
    void waitForSize() const
    {
        if (!QTest::qWaitFor(
                [this] { return screen() && screen()->height() == ScreenHeight() - PanelHeight(); }))
            qWarning("the screen does not fill the window");
    }
};

/// Runs the application and calls `body` with it.
inline void explore(const std::function<void(RunningExplorer &)> &body)
{
    lindenreed::picture_stand::App app;
    QCOMPARE(runApp(app,
                    [&body](RunningApp &running) {
                        RunningExplorer explorer(running);
                        body(explorer);
                    }),
             0);
}
