#include "media.h"

#include "facts.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <algorithm>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

Media::Media(const QString &mounts, const QString &mountTable)
    : m_mounts(mounts)
    , m_mountTable(mountTable)
{
    look();
}

bool Media::present(Medium medium) const
{
    return medium == Medium::Card ? facts().cardPresent : facts().usbPresent;
}

void Media::look()
{
    Q_ASSERT(QThread::currentThread() == thread());
    const bool card = find(u"/ext2"_s, u"/.unplugged/sd"_s);
    const bool usb = find(u"/ext3"_s, u"/.unplugged/usb"_s);
    const bool cardChanged = facts().cardPresent.exchange(card) != card;
    const bool usbChanged = facts().usbPresent.exchange(usb) != usb;
    if (cardChanged)
        emit changed(Medium::Card);
    if (usbChanged)
        emit changed(Medium::Usb);
}

bool Media::find(const QString &folder, const QString &unplugged) const
{
    const QString path = m_mounts + folder;
    if (!QFileInfo(path).isDir())
        return false;
    if (!QFileInfo::exists(m_mounts + unplugged))
        return true;

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

} // namespace lindenreed::device
