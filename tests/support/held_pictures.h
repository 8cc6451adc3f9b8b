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
#include <QThread>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

#include <unistd.h>

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

/// Opens the gate once the thread that made this waits for something in the end that it has announced: for
/// the decoders, where nothing else makes it wait.
class GateAtTheEnd
{
public:
    GateAtTheEnd()
        : m_opener(QThread::create([this, id = gettid()] {
            while (!ending || !isWaiting(id))
                QThread::yieldCurrentThread();
            HeldPictures::letAllPass();
        }))
    {
        m_opener->start();
    }
    ~GateAtTheEnd() { m_opener->wait(); }
    GateAtTheEnd(const GateAtTheEnd &) = delete;
    GateAtTheEnd &operator=(const GateAtTheEnd &) = delete;

    std::atomic<bool> ending = false;

private:
    static bool isWaiting(pid_t thread)
    {
        QFile file(QStringLiteral("/proc/self/task/%1/stat").arg(thread));
        if (!file.open(QIODevice::ReadOnly))
            return false;
        const QByteArray text = file.readAll();
        return text.mid(text.lastIndexOf(')')).startsWith(") S");
    }

    std::unique_ptr<QThread> m_opener;
};
