// Pictures for a picture cache that read no file, and the steps that the cache tells of.

#pragma once

#include "prefetch_jobs.h"

#include <QByteArray>
#include <QImage>
#include <QStringList>

inline constexpr int pictureSize = 64; ///< bytes of an 8 x 8 grey picture

inline QImage smallPicture(const QString &)
{
    QImage picture(8, 8, QImage::Format_Grayscale8);
    picture.fill(0x80);
    return picture;
}

/// "0", "1", ... stand for paths.
inline QStringList names(int count)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list.append(QString::number(i));
    return list;
}

/// What a job says it does, as "+name" and "-name".
inline QByteArray steps(const QByteArray &log)
{
    QByteArrayList found;
    for (const QByteArray &line : log.split('\n')) {
        const QByteArrayList words = line.split(' ');
        if (words.size() > 2)
            found.append((words.at(0) == "add" ? '+' : '-') + words.at(2));
    }
    return found.join(' ');
}

/// A job from its beginning to its end.
inline void prefetch(lindenreed::picture_stand::PictureCache &cache, const QStringList &images, int index)
{
    for (lindenreed::picture_stand::PrefetchJob job(images, index); job.goOn(cache);) { }
}
