// What may be opened as a picture.

#pragma once

#include <QFile>
#include <QImage>
#include <QString>

#include <algorithm>
#include <optional>

#include <sys/types.h>

namespace lindenreed::picture_stand {

/// True for a regular file, also behind symbolic links. Any thread.
bool isRegularFile(const QString &path);

/// Which regular file a name stands for at the moment.
struct FileIdentity
{
    dev_t device = 0;
    ino_t number = 0;

    friend bool operator==(const FileIdentity &, const FileIdentity &) = default;
};

/// Nothing where there is none, also behind symbolic links. Any thread.
std::optional<FileIdentity> regularFile(const QString &path);

/// Opens `file`, by its name, for reading a picture; false where it cannot be, or is no regular file: opening
/// a FIFO waits for a writer, and opening a device may do anything. What comes under the name between the two
/// looks at it is not waited for either. Any thread.
bool openRegularFile(QFile &file);

/// Whether a picture that could not be read may be one for which the process, or the machine, had no handle
/// left: as if it had never been tried. Any thread.
bool lacksHandles();

/// A picture for Qt's decoders. Some are found by the name, which a QFile that is opened by a descriptor
/// forgets. What cannot be read any more ends the file: told of an error in its middle, the decoder of TIFF
/// files writes where it must not.
class PictureFile : public QFile
{
public:
    explicit PictureFile(const QString &path)
        : QFile(path)
        , m_path(path)
        , m_found(regularFile(path))
    {
    }

    QString fileName() const override { return m_path; }
    /// Whether it was not there, or was pulled out while it was read, be it back by now: `picture`, which was
    /// made of it, is not all that there is. A card that was put in again has another file under the name.
    bool hasGone(const QImage &picture) const
    {
        return (m_hasFailed || picture.isNull()) && (!m_found || regularFile(m_path) != m_found);
    }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 read = QFile::readData(data, size);
        m_hasFailed |= read < 0;
        return std::max<qint64>(read, 0);
    }

private:
    QString m_path;
    std::optional<FileIdentity> m_found; ///< before it was opened
    bool m_hasFailed = false;
};

} // namespace lindenreed::picture_stand
