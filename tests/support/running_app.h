// The application with its interface on the panel, for tests on the platform plug-in.

#pragma once

#include "app.h"

#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

#include <functional>

/// What a test sees of an application while it runs.
struct RunningApp
{
    lindenreed::picture_stand::App &app;
    QQuickWindow *window;
    QQmlContext *context;

    template <typename T>
    T *model(const char *name) const
    {
        return qobject_cast<T *>(context->contextProperty(QString::fromLatin1(name)).value<QObject *>());
    }
    lindenreed::picture_stand::SlideshowModel *slideshow() const
    {
        return model<lindenreed::picture_stand::SlideshowModel>("SlideshowModel");
    }
    lindenreed::picture_stand::SettingsModel *settings() const
    {
        return model<lindenreed::picture_stand::SettingsModel>("SettingsModel");
    }
    PlaylistModel *playlists() const { return model<PlaylistModel>("PlaylistModel"); }

    /// The view of the show, with these pictures, 30 s each.
    void startShow(const QStringList &paths) const
    {
        slideshow()->initFromList(paths, 30);
        app.changeView(QStringLiteral("slideshow"));
    }

    /// The screen that the loader holds.
    QQuickItem *screen() const
    {
        const QList<QQuickItem *> loaders = window->contentItem()->childItems();
        return loaders.isEmpty() ? nullptr : loaders.first()->property("item").value<QQuickItem *>();
    }
    /// The first item of the interface with such a property.
    QQuickItem *itemWith(const char *property) const { return itemWith(window->contentItem(), property); }

private:
    static QQuickItem *itemWith(QQuickItem *item, const char *property)
    {
        if (item->metaObject()->indexOfProperty(property) >= 0)
            return item;
        for (QQuickItem *child : item->childItems()) {
            if (QQuickItem *found = itemWith(child, property))
                return found;
        }
        return nullptr;
    }
};

/// Runs `app`, calls `body` from its event loop, and quits it. Nothing clears the minute timer, which holds
/// `app`: let the device forget its timers before the event loop runs again without it. The exit code; -2
/// where no window came up.
inline int runApp(lindenreed::picture_stand::App &app, const std::function<void(RunningApp &)> &body)
{
    bool called = false;
    QTimer::singleShot(0, &app, [&] {
        QQuickWindow *window = nullptr;
        const QWindowList windows = QGuiApplication::topLevelWindows();
        for (QWindow *candidate : windows) // the keyboard has one, too
            window = window ? window : qobject_cast<QQuickWindow *>(candidate);
        if (window) {
            called = true;
            RunningApp running{app, window, qmlEngine(window)->rootContext()};
            body(running);
        }
        app.quit();
    });
    const int status = app.run(qGuiApp);
    return status != 0 || called ? status : -2;
}
