// Picture files whose decoding stops until the test lets it go on.
//
// For test programs that CMake knows by slate_held_pictures(); one source of them imports the plug-in:
// Q_IMPORT_PLUGIN(HeldPicturePlugin).

#pragma once

#include <QFile>
#include <QImage>
#include <QImageIOHandler>
#include <QImageIOPlugin>
#include <QStringList>
#include <QThreadPool>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>

#include <dlfcn.h>

/// What goes on in the decoders of files named "*.held". Any thread.
class HeldPictures
{
public:
    /// A decoder, from its first statement to its last.
    static void pass(const QString &name)
    {
        std::unique_lock lock(mutex());
        State &now = state();
        now.begun.append(name);
        now.most = std::max(now.most, ++now.inside);
        changed().notify_all();
        changed().wait(lock, [&now] { return now.open || now.permits > 0; });
        if (!now.open)
            --now.permits;
        --now.inside;
        changed().notify_all();
    }

    /// Forgets what was and closes the gate.
    static void reset()
    {
        const std::lock_guard lock(mutex());
        state() = {};
    }
    static void letPass(int count)
    {
        const std::lock_guard lock(mutex());
        state().permits += count;
        changed().notify_all();
    }
    static void letAllPass()
    {
        const std::lock_guard lock(mutex());
        state().open = true;
        changed().notify_all();
    }
    /// False where it takes longer than half a minute.
    static bool waitUntilBegun(qsizetype count)
    {
        std::unique_lock lock(mutex());
        return changed().wait_for(lock, std::chrono::seconds(30),
                                  [count] { return state().begun.size() >= count; });
    }
    /// The first lines of the files, in the order in which their decoding began.
    static QStringList begun()
    {
        const std::lock_guard lock(mutex());
        return state().begun;
    }
    /// The largest number of decoders that were inside at once.
    static int most()
    {
        const std::lock_guard lock(mutex());
        return state().most;
    }

private:
    struct State
    {
        QStringList begun;
        int inside = 0;
        int most = 0;
        int permits = 0;
        bool open = false;
    };
    static State &state()
    {
        static State state;
        return state;
    }
    static std::mutex &mutex()
    {
        static std::mutex mutex;
        return mutex;
    }
    static std::condition_variable &changed()
    {
        static std::condition_variable changed;
        return changed;
    }
};

class HeldPictureHandler : public QImageIOHandler
{
public:
    bool canRead() const override { return true; }
    bool read(QImage *picture) override
    {
        HeldPictures::pass(QString::fromUtf8(device()->readLine().trimmed()));
        *picture = QImage(30, 20, QImage::Format_Grayscale8);
        picture->fill(0x80);
        return true;
    }
};

class HeldPicturePlugin : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "held_pictures.json")

public:
    Capabilities capabilities(QIODevice *, const QByteArray &format) const override
    {
        return format == "held" ? CanRead : Capabilities();
    }
    QImageIOHandler *create(QIODevice *device, const QByteArray &) const override
    {
        auto *handler = new HeldPictureHandler;
        handler->setDevice(device);
        return handler;
    }
};

/// Writes such a file; its path, empty where it cannot be written.
inline QString writeHeldPicture(const QString &folder, const QString &name)
{
    QFile file(folder + QStringLiteral("/%1.held").arg(name));
    return file.open(QIODevice::WriteOnly) && file.write(name.toUtf8()) > 0 ? file.fileName() : QString();
}

/// This one stands before Qt's own. Whoever waits for a pool gets what the pool runs from now on, to the last
/// job: the gate opens when, and not before, a job that should not run can no longer be taken out of the
/// queue.
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
[[gnu::used]] inline bool QThreadPool::waitForDone(QDeadlineTimer limit)
{
    using Function = bool (*)(QThreadPool *, QDeadlineTimer);
    constexpr char name[] = "_ZN11QThreadPool11waitForDoneE14QDeadlineTimer";
#else
[[gnu::used]] inline bool QThreadPool::waitForDone(int limit)
{
    using Function = bool (*)(QThreadPool *, int);
    constexpr char name[] = "_ZN11QThreadPool11waitForDoneEi";
#endif
    static const auto pools = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
    HeldPictures::letAllPass();
    return pools(this, limit);
}
