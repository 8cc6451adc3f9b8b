#include "file_reloader.h"

#include <device.h>

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>

namespace lindenreed::device {

namespace {

constexpr int settleTime = 200; // milliseconds without a change, after which a file is taken for written

} // namespace

FileReloader::FileReloader(QObject *parent)
    : QObject(parent)
{
    m_settled.setSingleShot(true);
    m_settled.setInterval(settleTime);
    connect(&m_settled, &QTimer::timeout, this, &FileReloader::look);
    // A storage that goes takes the watched folders with it, and a mount raises no event in them.
    if (Device *device = Device::instance()) {
        connect(&device->media, &Media::changed, this, [this] {
            if (!m_watcher)
                return;
            watchAnew();
            m_settled.start();
        });
    }
}

FileReloader::~FileReloader() = default;

void FileReloader::setSource(const QUrl &source)
{
    if (m_reloading || source == m_source)
        return;
    m_source = source;
    m_path = source.toLocalFile();
    m_settled.stop();
    m_watcher.reset();
    if (m_path.isEmpty())
        return;
    m_shown = stamp();
    watchAnew();
}

FileReloader::Stamp FileReloader::stamp() const
{
    const QFileInfo file(m_path);
    return file.isFile() ? Stamp{file.size(), file.lastModified()} : Stamp();
}

void FileReloader::watchAnew()
{
    m_watcher = std::make_unique<QFileSystemWatcher>();
    const auto changed = [this] {
        watch();
        m_settled.start();
    };
    connect(m_watcher.get(), &QFileSystemWatcher::fileChanged, this, changed);
    connect(m_watcher.get(), &QFileSystemWatcher::directoryChanged, this, changed);
    watch();
}

void FileReloader::watch()
{
    // The folder tells of a file that comes or is replaced, the file of one that is written in place. While
    // the folder is gone, the nearest one above tells when it comes; it may have come before that one is
    // watched.
    for (QString folder = nearestFolder(); !m_watcher->directories().contains(folder);
         folder = nearestFolder()) {
        if (!m_watcher->directories().isEmpty())
            m_watcher->removePaths(m_watcher->directories());
        if (!m_watcher->addPath(folder))
            break;
    }
    if (m_watcher->files().isEmpty() && QFileInfo::exists(m_path))
        m_watcher->addPath(m_path);
}

QString FileReloader::nearestFolder() const
{
    QString folder = QFileInfo(m_path).path();
    while (!QFileInfo::exists(folder) && !QDir(folder).isRoot())
        folder = QFileInfo(folder).path();
    return folder;
}

void FileReloader::look()
{
    const Stamp now = stamp();
    if (now == m_shown)
        return;
    m_shown = now; // a file that comes back is another one, even where it looks the same
    if (now != Stamp())
        reload();
}

void FileReloader::reload()
{
    if (!m_image)
        return;
    // Written as properties, not by QML: bindings of the screen stay in force. The cache knows pictures by
    // their name alone, so a file that changes is read past it from now on.
    m_reloading = true;
    m_image->setProperty("source", QUrl());
    m_image->setProperty("cache", false);
    m_image->setProperty("source", m_source);
    m_reloading = false;
}

} // namespace lindenreed::device
