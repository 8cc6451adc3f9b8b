// A file system that keeps its readers waiting, and what the show makes of it.

#include "file_calls.h"
#include "panel_application.h"
#include "panel_remote.h"
#include "picture_show_test.h"

#include "picture_reader.h"
#include "png_texts.h"
#include "regular_file.h"
#include "svg_reader.h"

#include <QImageReader>

#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

using namespace std::chrono_literals;
using namespace lindenreed::picture_stand;

namespace {

/// A medium on which calls for one file wait until it lets go, from the first or from a later read on.
class StallingMedium
{
public:
    explicit StallingMedium(const QString &path, int readsBefore = 0)
        : m_calls(QFile::encodeName(path), [this, readsBefore](FileCall &call) {
            std::unique_lock lock(m_mutex);
            m_reads += call.kind == FileCall::Read ? 1 : 0;
            if (readsBefore > 0 && m_reads <= readsBefore)
                return;
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
    int m_reads = 0;
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
    void otherDrawingsGoOn();
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

/// An SVG that stalls behind its beginning, by which it was known for one.
void tst_StalledPictures::otherDrawingsGoOn()
{
    const QByteArray text
        = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"><rect width=\"5\"/></svg>";
    const QString small = m_folder->filePath(u"small.svg"_s);
    const QString large = m_folder->filePath(u"large.svg"_s);
    QVERIFY(write(QFile::encodeName(small), text));
    QVERIFY(write(QFile::encodeName(large), text + QByteArray(1'000'000, ' ')));
    const auto sizeOf = [](const QString &path) {
        return std::async(std::launch::async, [path] { return readImage(path)->size(); });
    };
    int reads = 0;
    int firstReads = 0;
    {
        const FileCalls calls(QFile::encodeName(large),
                              [&](FileCall &call) { reads += call.kind == FileCall::Read ? 1 : 0; });
        PictureFile file(large);
        QVERIFY(openRegularFile(file) && hasBearableTexts(file) && isSvg(QImageReader(&file)));
        firstReads = std::exchange(reads, 0);
        QCOMPARE(sizeOf(large).get(), QSize(9, 9));
    }
    QVERIFY(reads > firstReads); // not the process that draws reads the rest

    StallingMedium medium(large, reads - 1);
    std::future<QSize> stalled = sizeOf(large);
    QVERIFY(medium.waitForReaders(1));
    std::future<QSize> other = sizeOf(small);
    const bool goesOn = other.wait_for(30s) == std::future_status::ready;
    medium.goOn();
    QVERIFY(goesOn);
    QCOMPARE(other.get(), QSize(9, 9));
    QCOMPARE(stalled.get(), QSize(9, 9));
}

PANEL_TEST_MAIN(tst_StalledPictures)
#include "tst_stalled_pictures.moc"
