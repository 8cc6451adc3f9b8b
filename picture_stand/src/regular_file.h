// What may be opened as a picture.

#pragma once

#include <QFile>
#include <QString>

#include <algorithm>

namespace lindenreed::picture_stand {

/// True for a regular file, also behind symbolic links. Any thread.
bool isRegularFile(const QString &path);

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
    {
    }

    QString fileName() const override { return m_path; }
    /// Whether it was pulled out while it was read: what was made of it is not all that there is.
    bool hasGone() const { return m_hasFailed && !isRegularFile(m_path); }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 read = QFile::readData(data, size);
        m_hasFailed |= read < 0;
        return std::max<qint64>(read, 0);
    }

private:
    QString m_path;
    bool m_hasFailed = false;
};

} // namespace lindenreed::picture_stand
