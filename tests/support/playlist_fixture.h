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
#include <utility>

inline QVariant cell(const PlaylistModel &model, int row, int role)
{
    return model.data(model.index(row, 0), role);
}

/// Notes a model's signals in the order in which they come, with its count then.
class PlaylistSignals : public QObject
{
public:
    explicit PlaylistSignals(PlaylistModel *model)
    {
        connect(model, &PlaylistModel::modelAboutToBeReset, this,
                [this] { m_names.append(QStringLiteral("about")); });
        connect(model, &PlaylistModel::modelReset, this,
                [this, model] { m_names.append(QStringLiteral("reset %1").arg(model->count())); });
        connect(model, &PlaylistModel::countChanged, this,
                [this, model] { m_names.append(QStringLiteral("count %1").arg(model->count())); });
        connect(model, &PlaylistModel::activeIdChanged, this,
                [this, model] { m_names.append(QStringLiteral("active %1").arg(model->activeId())); });
        connect(model, &PlaylistModel::modeChanged, this,
                [this, model] { m_names.append(QStringLiteral("mode %1").arg(model->mode())); });
    }

    QStringList taken() { return std::exchange(m_names, {}); }

private:
    QStringList m_names;
};

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
