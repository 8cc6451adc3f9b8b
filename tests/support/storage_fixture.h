// The data store on a device root without a database, and the lines that its failures write.

#pragma once

#include <datastorage.h>
#include <slateview_testing.h>
#include <stderr_capture.h>
#include <stored_database.h>

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

inline const QString logSource = u"picture_stand/src/datastorage"_s;

// Each line whole.
// clang-format off
inline const QString scheme = u"2 void DataStorage::createScheme(): "_s;
inline const QString addPlaylist = u"2 long long DataStorage::addPlaylist(const QString &): Error performing addPlaylistItem request. [%1]"_s;
inline const QString findImage = u"2 bool DataStorage::addImageToPlayList(long long, QString): Error performing getPlaylistItems request. [%1]"_s;
inline const QString addImage = u"2 bool DataStorage::addImageToPlayList(long long, QString): Error performing addImageToPlayList request. [%1]"_s;
inline const QString deleteImage = u"2 void DataStorage::deleteImageFromPlayList(long long, QString): Error performing removeImageFromPlayList request. [%1]"_s;
inline const QString updatePlaylist = u"2 void DataStorage::updatePlaylist(long long, const QString &): Error performing updatePlaylistItem request. [%1]"_s;
inline const QString deletePlaylist = u"2 void DataStorage::deletePlaylist(long long): Error performing deletePlaylistItem request. [%1]"_s;
inline const QString deleteImages = u"2 void DataStorage::deletePlaylist(long long): Error performing removeImageFromPlayList request. [%1]"_s;
inline const QString readPlaylists = u"2 std::vector<DataStorage::Playlists> DataStorage::getPlaylists(): Error performing getPlaylistItems request. [%1]"_s;
inline const QString readImages = u"2 std::vector<DataStorage::Playlists> DataStorage::getPlaylists(): Error performing getPlaylistImages request. [%1]"_s;
inline const QString getSetting = u"2 QString DataStorage::getSetting(QString, int): Error performing getPlaylistItems request. [%1]"_s;
inline const QString setSetting = u"2 void DataStorage::setSetting(QString, QString, int): Error performing setSetting request. [%1]"_s;
// clang-format on

inline QStringList withError(QStringList lines, const QString &error)
{
    for (QString &line : lines)
        line = line.arg(error);
    return lines;
}

inline QStringList failedScheme(const QString &error)
{
    const QString table = scheme + u"Error creating tables [%1]"_s;
    return withError({table, table, table, scheme + u"Error performing select settings request. [%1]"_s},
                     error);
}

inline QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

/// Makes this the database file.
inline void writeBytes(const QByteArray &bytes)
{
    QFile file(stored_database::path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

/// A device whose database file is gone, and at most one store at a time.
class StorageFixture
{
public:
    StorageFixture() { stored_database::remove(); }
    ~StorageFixture()
    {
        stop();
        QFile::setPermissions(stored_database::folder,
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    void start()
    {
        stop();
        store = std::make_unique<DataStorage>(nullptr);
        stored_database::hurry();
    }
    void stop()
    {
        store.reset();
        stored_database::forgetDefaultConnection();
    }

    lindenreed::device::DeviceForTest device;
    StderrCapture output;
    std::unique_ptr<DataStorage> store;
};
