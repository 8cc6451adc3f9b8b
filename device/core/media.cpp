#include "media.h"

#include "facts.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

std::atomic<bool> &flag(Medium medium)
{
    return medium == Medium::Card ? facts().cardPresent : facts().usbPresent;
}

} // namespace

Media::Media(const QString &mounts, const QString &mountTable)
    : m_mounts(mounts)
    , m_mountTable(mountTable)
{
    look();
    // A device without an event loop, as some tests have, is told nothing anyway.
    if (QAbstractEventDispatcher::instance())
        watch();
}

bool Media::present(Medium medium) const
{
    return flag(medium);
}

void Media::watch()
{
    m_folderWatcher = std::make_unique<QFileSystemWatcher>();
    connect(m_folderWatcher.get(), &QFileSystemWatcher::directoryChanged, this, &Media::look);
    watchFolders();

    // Mounting changes no folder. The kernel tells a reader of the table that it is another one now.
    m_watchedTable.setFileName(m_mountTable);
    if (!m_watchedTable.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return;
    m_tableNotifier = std::make_unique<QSocketNotifier>(m_watchedTable.handle(), QSocketNotifier::Exception);
    connect(m_tableNotifier.get(), &QSocketNotifier::activated, this, &Media::look);
}

void Media::watchFolders()
{
    if (!m_folderWatcher)
        return;
    // One that was removed and made again is watched again.
    const QStringList watched = m_folderWatcher->directories();
    for (const QString &path : {m_mounts, m_mounts + u"/.unplugged"_s}) {
        if (!watched.contains(path) && QFileInfo(path).isDir())
            m_folderWatcher->addPath(path);
    }
}

void Media::look()
{
    Q_ASSERT(QThread::currentThread() == thread());
    watchFolders();
    for (const Medium medium : {Medium::Card, Medium::Usb}) {
        const bool in = isIn(medium);
        if (flag(medium).exchange(in) != in)
            emit changed(medium);
    }
}

PlugResult Media::plug(Medium medium, bool in, QString *error)
{
    look();
    if (present(medium) == in)
        return PlugResult::AlreadySo;
    if (in && !QFileInfo(unplugged(medium)).isDir())
        return PlugResult::NoMedium;
    if (!in && isMountPoint(folder(medium)))
        return PlugResult::RealMedium;

    if (!in)
        QDir().mkpath(QFileInfo(unplugged(medium)).path());
    const QByteArray from = QFile::encodeName(in ? unplugged(medium) : folder(medium));
    const QByteArray to = QFile::encodeName(in ? folder(medium) : unplugged(medium));
    if (std::rename(from.constData(), to.constData()) != 0) {
        if (error)
            *error = qt_error_string(errno);
        return PlugResult::Failed;
    }
    look();
    return PlugResult::Done;
}

bool Media::isIn(Medium medium) const
{
    // The table first: asking a mounted file system that hangs would hang with it.
    if (isMountPoint(folder(medium)))
        return true;
    return QFileInfo(folder(medium)).isDir() && !QFileInfo::exists(unplugged(medium));
}

bool Media::isMountPoint(const QString &path) const
{
    QFile table(m_mountTable);
    if (!table.open(QIODevice::ReadOnly))
        return false;
    // The fifth field is the mount point. A folder's device number would not do: a bind mount keeps it.
    const QByteArray wanted = QFile::encodeName(path);
    const QList<QByteArray> lines = table.readAll().split('\n');
    return std::any_of(lines.cbegin(), lines.cend(), [&wanted](const QByteArray &line) {
        const QList<QByteArray> fields = line.split(' ');
        return fields.size() > 4 && fields.at(4) == wanted;
    });
}

QString Media::folder(Medium medium) const
{
    return m_mounts + (medium == Medium::Card ? u"/ext2"_s : u"/ext3"_s);
}

QString Media::unplugged(Medium medium) const
{
    return m_mounts + (medium == Medium::Card ? u"/.unplugged/sd"_s : u"/.unplugged/usb"_s);
}

} // namespace lindenreed::device
