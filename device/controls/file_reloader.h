// Keeps an image in step with its file.

#pragma once

#include <QDateTime>
#include <QQuickItem>
#include <QTimer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <memory>

class QFileSystemWatcher;

namespace lindenreed::device {

/// Makes an Image read its file again after the file has changed on the disk, or has come back with its
/// folder or its storage. A file that is gone leaves the last picture; sources that are no local file are let
/// alone. Main thread.
class FileReloader : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_ADDED_IN_VERSION(1, 0)

    Q_PROPERTY(QQuickItem *image MEMBER m_image FINAL) ///< an Image, which owns this
    Q_PROPERTY(QUrl source READ source WRITE setSource FINAL) ///< what the image shows

public:
    explicit FileReloader(QObject *parent = nullptr);
    ~FileReloader() override;

    QUrl source() const { return m_source; }
    void setSource(const QUrl &source);

private:
    /// What tells one state of a file from another; of a missing file, nothing.
    struct Stamp
    {
        qint64 size = -1;
        QDateTime modified;

        bool operator==(const Stamp &) const = default;
    };

    Stamp stamp() const;
    void watchAnew();
    void watch();
    QString nearestFolder() const;
    void look();
    void reload();

    QQuickItem *m_image = nullptr;
    QUrl m_source;
    QString m_path;
    Stamp m_shown;
    bool m_reloading = false;
    QTimer m_settled;
    std::unique_ptr<QFileSystemWatcher> m_watcher; ///< none while the source is no file
};

} // namespace lindenreed::device
