// Playlists as a test sees them: a model over an emptied store, and a folder of pictures.

#pragma once

#include <datastorage.h>
#include <playlist_model.h>
#include <slateview_testing.h>
#include <stderr_capture.h>
#include <stored_database.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

inline QVariant cell(const PlaylistModel &model, int row, int role)
{
    return model.data(model.index(row, 0), role);
}

/// No playlists, and a folder of its own on the internal memory.
class PlaylistFixture
{
public:
    PlaylistFixture()
    {
        DataStorage::instance();
        stored_database::hurry();
        [] {
            QVERIFY(stored_database::execute(
                {QStringLiteral("DELETE FROM playlists"), QStringLiteral("DELETE FROM playlist_images")}));
        }();
        output = std::make_unique<StderrCapture>();
        model = std::make_unique<PlaylistModel>();
    }
    ~PlaylistFixture()
    {
        model.reset();
        output.reset();
    }

    /// A path in the test's folder, with a file or without.
    QString picture(const QString &name, bool there = true) const
    {
        const QString path = folder.filePath(name);
        if (there) {
            QFile file(path);
            [&file] { QVERIFY(file.open(QIODevice::WriteOnly)); }();
        }
        return path;
    }

    lindenreed::device::DeviceForTest device;
    QTemporaryDir folder{QStringLiteral("/mnt/ext1/pictures-XXXXXX")};
    std::unique_ptr<StderrCapture> output;
    std::unique_ptr<PlaylistModel> model;
};
