// The storages that a walk through the playlist workflow meets: real folders and pictures, and what a test
// knows of them without looking.

#pragma once

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <array>

/// Media are out at the beginning; their pictures can be reached from outside then. Names are found once
/// each.
class WorkflowWorld
{
public:
    enum Medium { Card, Usb };

    /// What the device brings along above its folders is left as it is.
    WorkflowWorld()
    {
        m_foreign = QDir(top).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString &folder : allFolders()) {
            m_foreign.removeAll(folder.section(u'/', 3));
            if (!QDir().mkpath(place(folder)))
                qFatal("%s cannot be made", qPrintable(folder));
        }
        for (const QString &picture : allPictures())
            setThere(picture, true);
    }
    ~WorkflowWorld()
    {
        for (const QString &picture : std::as_const(m_pictures))
            QFile::remove(place(picture));
        QDir(QStringLiteral("/mnt/ext1/album")).removeRecursively();
    }
    WorkflowWorld(const WorkflowWorld &) = delete;
    WorkflowWorld &operator=(const WorkflowWorld &) = delete;

    static const QStringList &allPictures()
    {
        static const QStringList all{
            QStringLiteral("/mnt/ext1/top.png"),
            QStringLiteral("/mnt/ext1/Photo/05.jpg"),
            QStringLiteral("/mnt/ext1/Photo/09.jpg"),
            QStringLiteral("/mnt/ext1/album/01.png"),
            QStringLiteral("/mnt/ext1/album/02.JPG"),
            QStringLiteral("/mnt/ext1/album/100% #1?.png"),
            QStringLiteral("/mnt/ext1/album/it's.bmp"),
            QStringLiteral("/mnt/ext1/album/z\u00e4h \u96ea.png"),
            QStringLiteral("/mnt/ext1/album/folder.jpg/inside.png"),
            QStringLiteral("/mnt/ext1/album/lake/boat.png"),
            QStringLiteral("/mnt/ext1/album/lake/shore.JPEG"),
            QStringLiteral("/mnt/ext1/album/lake/deep/fish.png"),
            QStringLiteral("/mnt/ext2/card 1.png"),
            QStringLiteral("/mnt/ext2/card 2.jpg"),
            QStringLiteral("/mnt/ext2/trip/road.png"),
            QStringLiteral("/mnt/ext2/trip/train.png"),
            QStringLiteral("/mnt/ext3/stick.png"),
            QStringLiteral("/mnt/ext3/twig.bmp"),
        };
        return all;
    }

    bool isIn(Medium medium) const { return m_in[medium]; }
    /// Notes that a medium went in or out, which the device does.
    void setIn(Medium medium, bool in) { m_in[medium] = in; }

    bool isThere(const QString &path) const
    {
        return isReachable(path) && (m_pictures.contains(path) || allFolders().contains(path));
    }
    /// Also of a medium that is out.
    bool hasPicture(const QString &path) const { return m_pictures.contains(path); }
    void setThere(const QString &path, bool there)
    {
        QFile file(place(path));
        if (there ? !file.open(QIODevice::WriteOnly) || file.write(content(path)) < 0 : !file.remove())
            qFatal("%s cannot be had so", qPrintable(file.fileName()));
        if (there)
            m_pictures.insert(path);
        else
            m_pictures.remove(path);
    }

    static bool isOwnFolder(const QString &path) { return path == top || allFolders().contains(path); }
    bool isFolder(const QString &path) const { return isReachable(path) && isOwnFolder(path); }
    /// Names, in the order of a listing.
    QStringList foldersIn(const QString &path) const
    {
        QStringList names = path == top ? m_foreign : QStringList();
        for (const QString &folder : allFolders()) {
            if (isReachable(folder) && QFileInfo(folder).path() == path)
                names.append(QFileInfo(folder).fileName());
        }
        names.sort();
        return names;
    }
    /// A folder that has a picture's name is one of them.
    QStringList picturesIn(const QString &path) const
    {
        QStringList names = foldersIn(path).filter(QStringLiteral(".jpg"));
        for (const QString &picture : m_pictures) {
            if (isReachable(picture) && QFileInfo(picture).path() == path)
                names.append(QFileInfo(picture).fileName());
        }
        names.sort();
        return names;
    }

private:
    static const QStringList &allFolders()
    {
        static const QStringList all{
            QStringLiteral("/mnt/ext1/Photo"),
            QStringLiteral("/mnt/ext1/album"),
            QStringLiteral("/mnt/ext1/album/empty"),
            QStringLiteral("/mnt/ext1/album/lake"),
            QStringLiteral("/mnt/ext1/album/lake/deep"),
            QStringLiteral("/mnt/ext1/album/folder.jpg"),
            QStringLiteral("/mnt/ext2"),
            QStringLiteral("/mnt/ext2/trip"),
            QStringLiteral("/mnt/ext3"),
        };
        return all;
    }

    bool isReachable(const QString &path) const
    {
        return path.startsWith(top) || (path.startsWith(QLatin1String("/mnt/ext2")) && m_in[Card])
            || (path.startsWith(QLatin1String("/mnt/ext3")) && m_in[Usb]);
    }
    /// Where the file is now.
    QString place(const QString &path) const
    {
        QString at = path;
        if (!m_in[Card])
            at.replace(QLatin1String("/mnt/ext2"), QLatin1String("/mnt/.unplugged/sd"));
        if (!m_in[Usb])
            at.replace(QLatin1String("/mnt/ext3"), QLatin1String("/mnt/.unplugged/usb"));
        return at;
    }
    static QByteArray content(const QString &path)
    {
        QImage picture(60, 40, QImage::Format_Grayscale8);
        picture.fill(static_cast<uint>(qHash(path) % 200));
        QByteArray bytes;
        QBuffer buffer(&bytes);
        if (!picture.save(&buffer, QFileInfo(path).suffix().toLower().toLatin1().constData()))
            qFatal("no picture for %s", qPrintable(path));
        return bytes;
    }

    static inline const QString top = QStringLiteral("/mnt/ext1");
    QStringList m_foreign; ///< folders beside the own ones
    QSet<QString> m_pictures;
    std::array<bool, 2> m_in{};
};
