// The running show: which picture is current, and when the next one comes.

#pragma once

#include <QDateTime>
#include <QObject>
#include <QStringList>

namespace lindenreed::picture_stand {

/**
 * Walks a list of pictures on a hard timer of the device and wraps at both ends.
 *
 * While a show runs the device neither powers off nor locks its keys by itself, and exactly one timer is
 * pending. Paths are absolute. An empty list is a valid state; current_image is then the empty string. Main
 * thread.
 */
class SlideshowModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString current_image READ currentImage NOTIFY current_imageChanged)
    Q_PROPERTY(QDateTime created_datetime READ createdDateTime NOTIFY current_imageChanged)

public:
    explicit SlideshowModel(QObject *parent = nullptr);
    ~SlideshowModel() override;

    QString currentImage() const;
    /// When the current picture was taken, read anew at each call; invalid without a picture.
    QDateTime createdDateTime() const;

    /// Appends the pictures of a folder and its subfolders, those of the system left out. `interval` in
    /// seconds.
    void initFromFolder(const QString &path, int interval);
    /// Makes this picture current if the show holds it.
    void setCurrentFile(const QString &path);
    /// Arms the timer if the show runs.
    void resumeTimer();

signals:
    void current_imageChanged();
    /// The pictures in playing order and the position of the current one: load around it.
    void loadToCache(QStringList, int);
    /// Emitted from outside, by the device's menu key.
    void openCloseMenu();

public slots:
    void nextImage();
    void prevImage();
    void intervalChange(int seconds);
    /// Orders the list anew, at random or by path. The position stays, the picture there may be another.
    void shuffleChange(bool shuffle);
    void stop();
    /// Does nothing without pictures; during a show the wait begins anew.
    void start();
    void onForeground();
    void onBackground();
    /// Better or faster updates; a grey panel knows no difference.
    void switchHQUpdates(bool value);
    /// From which squared distance in pixels on a touch is a swipe.
    double getTouchDragZone();
    /// A strftime-like format in the device's language.
    QString getTimeString(QString format, QDateTime dateTime);
    /// Takes those of the pictures that exist. `interval` in seconds.
    void initFromList(QStringList images, int interval);

private:
    static void tick(void *context);
    void step();
    void refreshCurrent();
    void requestPrefetch();
    void armTimer();
    bool hasCurrent() const { return m_index >= 0 && m_index < m_images.size(); }

    QString m_folder;
    QStringList m_images;
    int m_index = 0; ///< -1 after a step back on an empty list
    int m_interval = 0;
    bool m_running = false;
    bool m_wasRunning = false; ///< when the device last went to the background
};

} // namespace lindenreed::picture_stand
