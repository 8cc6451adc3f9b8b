#include "pictures_mount.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace lindenreed::host {

using namespace Qt::StringLiterals;

bool isHiddenInside(const QString &hostPath)
{
    const auto isCovered = [](const QString &path) {
        for (const QString &cover : {u"/mnt"_s, u"/devroot"_s}) {
            if (path == cover || path.startsWith(cover + u'/'))
                return true;
        }
        return false;
    };
    const QFileInfo info(hostPath);
    return isCovered(QDir::cleanPath(info.absoluteFilePath())) || isCovered(info.canonicalFilePath());
}

void PicturesMount::removeAbandoned(const QString &photoFolder, const QString &record)
{
    QFile file(record);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QString name = QFile::decodeName(file.readAll());
    // Programs inside can write to the record: it leads no further than to an empty folder among the
    // pictures.
    if (!name.isEmpty() && !name.contains(u'/') && name != u".."_s)
        QDir().rmdir(photoFolder + u'/' + name);
    file.remove();
}

namespace {

QFileInfo folderOf(const QString &pictures)
{
    return QFileInfo(QDir::cleanPath(QFileInfo(pictures).absoluteFilePath()));
}

} // namespace

bool PicturesMount::isUsable(const QString &pictures, QString *error)
{
    const QFileInfo folder = folderOf(pictures);
    if (!folder.isDir() || !folder.isReadable() || !folder.isExecutable()) {
        *error = u"%1 is no folder that can be read"_s.arg(folder.filePath());
        return false;
    }
    if (isHiddenInside(folder.filePath())) {
        *error
            = u"the pictures in %1 would be hidden by the device's own /mnt; move them or mount them elsewhere"_s
                  .arg(folder.filePath());
        return false;
    }
    if (folder.fileName().isEmpty()) {
        *error = u"%1 has no name to be shown under"_s.arg(folder.filePath());
        return false;
    }
    return true;
}

std::unique_ptr<PicturesMount> PicturesMount::prepare(const QString &pictures, const QString &photoFolder,
                                                      const QString &record, QString *error)
{
    const QFileInfo folder = folderOf(pictures);
    std::unique_ptr<PicturesMount> mount(new PicturesMount);
    mount->m_source = folder.canonicalFilePath();
    mount->m_name = folder.fileName();
    mount->m_mountPoint = photoFolder + u'/' + mount->m_name;

    const QFileInfo entry(mount->m_mountPoint);
    if (entry.exists() || entry.isSymLink()) {
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        if (entry.isSymLink() || !entry.isDir() || !entry.isReadable()
            || !QDir(mount->m_mountPoint).isEmpty(all)) {
            *error = u"the device has something of its own at %1, which is kept; show your pictures from a "
                     u"folder of "
                     "another name"_s.arg(mount->m_mountPoint);
            return nullptr;
        }
    } else {
        mount->m_record = record;
        const QByteArray name = QFile::encodeName(mount->m_name);
        QFile file(record);
        mount->m_made = file.open(QIODevice::WriteOnly) && file.write(name) == name.size() && file.flush()
            && QDir().mkdir(mount->m_mountPoint);
        if (!mount->m_made) {
            file.remove();
            *error = u"%1 cannot be made"_s.arg(mount->m_mountPoint);
            return nullptr;
        }
    }
    return mount;
}

PicturesMount::~PicturesMount()
{
    if (!m_made)
        return;
    QDir().rmdir(m_mountPoint); // only while it is empty
    QFile::remove(m_record);
}

QString PicturesMount::devicePath() const
{
    return u"/mnt/ext1/Photo/"_s + m_name;
}

} // namespace lindenreed::host
