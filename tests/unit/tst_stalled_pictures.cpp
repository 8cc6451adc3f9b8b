// A file system that keeps its readers waiting, and what the show makes of it.

#include "file_calls.h"
#include "panel_application.h"
#include "panel_remote.h"
#include "picture_show_test.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;

namespace {

/// A medium on which calls for one file wait until it lets go.
class StallingMedium
{
public:
    explicit StallingMedium(const QString &path)
        : m_calls(QFile::encodeName(path), [this](FileCall &) {
            std::unique_lock lock(m_mutex);
            ++m_waiting;
            m_changed.notify_all();
            m_changed.wait(lock, [this] { return m_goesOn; });
        })
    {
    }
    ~StallingMedium() { goOn(); }

    /// False where nobody comes for half a minute.
    bool waitForReaders(int count)
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, 30s, [&] { return m_waiting >= count; });
    }
    void goOn()
    {
        const std::lock_guard lock(m_mutex);
        m_goesOn = true;
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_waiting = 0;
    bool m_goesOn = false;
    FileCalls m_calls;
};

} // namespace

class tst_StalledPictures : public PictureShowTest
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { begin(); }
    void cleanup() { end(); }
    void theShowGoesOn();
};

void tst_StalledPictures::theShowGoesOn()
{
    QStringList paths;
    for (int i = 0; i < 4; ++i) {
        paths.append(m_folder->filePath(u"%1.png"_s.arg(i)));
        QVERIFY(twoGreys().save(paths.last()));
    }
    const auto length = qEnvironmentVariableIsSet("SLATE_LONG") ? 10s : 0s;
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        PanelRemote remote;
                        StallingMedium medium(paths.at(1));
                        running.startShow(paths);
                        emit running.slideshow()->loadToCache(paths, 0);
                        QVERIFY(medium.waitForReaders(1)); // the one that reads ahead
                        // It alone waits: the device is driven, and other pictures are shown.
                        QVERIFY(remote.ask(u"state"_s).value("ok"_L1).toBool());
                        running.slideshow()->prevImage();
                        QCOMPARE(running.slideshow()->currentImage(), paths.at(3));
                        QCOMPARE(status(running), int(Ready));
                        QVERIFY(m_device->fire("nextImageEvent"));
                        QCOMPARE(running.slideshow()->currentImage(), paths.at(0));

                        // Now the show needs the picture, and the device waits with it.
                        remote.send(u"state"_s);
                        std::thread end([&] {
                            if (medium.waitForReaders(2)) {
                                std::this_thread::sleep_for(length);
                                medium.goOn();
                            }
                        });
                        const bool fired = m_device->fire("nextImageEvent");
                        end.join();
                        QVERIFY(fired);
                        QCOMPARE(running.slideshow()->currentImage(), paths.at(1));
                        QCOMPARE(status(running), int(Ready));
                        QVERIFY(remote.nextLine().value("ok"_L1).toBool()); // what was asked meanwhile
                        for (const int next : {2, 3, 0, 1}) {
                            QVERIFY(m_device->fire("nextImageEvent"));
                            QCOMPARE(running.slideshow()->currentImage(), paths.at(next));
                            QCOMPARE(status(running), int(Ready));
                        }
                        QThreadPool::globalInstance()->waitForDone();
                    }),
             0);
}

PANEL_TEST_MAIN(tst_StalledPictures)
#include "tst_stalled_pictures.moc"
