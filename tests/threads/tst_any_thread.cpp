// What the headers call "any thread", called from four threads while the main thread turns and changes the
// device.

#include <boardconf.h>
#include <shared_tools/filesystem.h>
#include <shared_tools/human_string_utility.h>
#include <slateview.h>
#include <slateview_testing.h>

#include <device.h>
#include <facts.h>
#include <log.h>
#include <texts.h>
#include <theme.h>

#include <QCoreApplication>
#include <QTest>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

/// Rounds that all workers together go at least, so that each operation meets each change.
constexpr int rounds = 400;

bool cardIsIn; ///< on this machine, set before any worker runs
bool usbIsIn;

bool oneRound(std::vector<unsigned char> &picture)
{
    const int width = ScreenWidth();
    const int height = ScreenHeight();
    const int mask = device_display_colormask();
    const bool sizesAreRight = (width == 758 || width == 1024) && (height == 758 || height == 1024);
    const bool boardIsRight
        = (mask == 0 || mask == 1) && device_display_dpi() == 212 && device_platform() == 0;
    const int inverted = SvGetScreenModeInversion();

    const bool textsAreRight = std::strcmp(GetLangText("@PlayItem"), "Play") == 0
        && std::strcmp(GetLangTextPlural("@PhotosWereAddedToPlaylist", 2), "%s pictures were added to %s")
            == 0
        && !texts::text("@NoSuchKey") && QCoreApplication::translate("A", "@DefaultPlaylist") == u"Photos"_s;
    std::tm moment{};
    moment.tm_mon = 5;
    char time[16];
    GetLangTime(time, sizeof time, "%l", &moment, 0);

    const bool themeIsRight
        = GetThemeInt("e3.galery_cover.width", 0) == 220 && theme::integer("none", 3) == 3;

    // Ten pixels of three bytes, so that the buffer is large enough whatever the panel is just now.
    adjustAreaDefault(picture.data(), 32, 10, 4);
    adjustAreaWithBrightnessContrastGamma(picture.data(), 32, 10, 4, 1.1, 0.9, 1.0);
    QuickFloyd16Dither(picture.data(), 32, 0, 0, 30, 4);

    lr_print_log2(4, "file", 1, "function", "%d", width);
    log::line(4, "file", 1, "function", "line");

    const bool journalIsRight = !journal::entries().isEmpty();
    const bool mediaAreRight = facts().cardPresent == cardIsIn && facts().usbPresent == usbIsIn
        && lindenreed::system::filesystem::IsSDCardMounted("/mnt/ext2") == cardIsIn
        && (isUsbStorMounted() != 0) == usbIsIn;

    using lindenreed::utilities::HumanStringUtility;
    char size[64];
    const bool sizeIsRight = HumanStringUtility::HumanSizeWithPrecision(size, sizeof size, 3, 512, false) == 6
        && std::strcmp(size, "1.5 KB") == 0;
    return sizesAreRight && boardIsRight && (inverted == 0 || inverted == 1) && textsAreRight
        && std::strcmp(time, "June") == 0 && themeIsRight && journalIsRight && mediaAreRight && sizeIsRight;
}

/// Thousands of log lines are of no use to anybody: standard error leads nowhere as long as this lives.
class QuietError
{
public:
    QuietError()
        : m_former(dup(STDERR_FILENO))
    {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    ~QuietError()
    {
        dup2(m_former, STDERR_FILENO); // for what the checkers have to say at the end
        close(m_former);
    }

private:
    int m_former;
};

} // namespace

class tst_AnyThread : public QObject
{
    Q_OBJECT

private slots:
    void whileTheDeviceChanges();
    void whileTheDeviceStops();
};

void tst_AnyThread::whileTheDeviceChanges()
{
    const QuietError quiet;
    DeviceForTest device;
    Screen &screen = Device::instance()->screen;
    cardIsIn = facts().cardPresent;
    usbIsIn = facts().usbPresent;
    std::atomic<int> done = 0;
    std::atomic<int> wrong = 0;
    std::vector<std::thread> workers;
    for (int worker = 0; worker < 4; ++worker) {
        workers.emplace_back([&done, &wrong] {
            std::vector<unsigned char> picture(32 * 4, 90);
            while (done < rounds) {
                if (!oneRound(picture))
                    ++wrong;
                ++done;
            }
        });
    }
    for (int turn = 0; done < rounds; ++turn) {
        SetOrientation(turn % 4);
        screen.setInverted(turn % 2 == 0);
        device.setColourMask(turn % 3 == 0 ? 1 : 0);
        Device::instance()->media.look();
        SetFrontlightState(turn % 100);
        QCoreApplication::processEvents();
    }
    for (std::thread &worker : workers)
        worker.join();
    QCOMPARE(wrong.load(), 0);
}

void tst_AnyThread::whileTheDeviceStops()
{
    const QuietError quiet;
    Device::start(Profile());
    cardIsIn = facts().cardPresent;
    usbIsIn = facts().usbPresent;
    std::atomic<bool> stopped = false;
    std::atomic<int> begun = 0;
    std::atomic<int> after = 0;
    std::atomic<int> wrong = 0;
    std::vector<std::thread> workers;
    for (int worker = 0; worker < 4; ++worker) {
        workers.emplace_back([&] {
            std::vector<unsigned char> picture(32 * 4, 90);
            ++begun;
            // Some rounds once the device has gone, as a job does that is still under way then.
            for (int last = 0; last < 20;) {
                const bool gone = stopped;
                if (!oneRound(picture))
                    ++wrong;
                if (gone) {
                    ++last;
                    ++after;
                }
            }
        });
    }
    while (begun < 4)
        std::this_thread::yield();
    Device::stop();
    stopped = true;
    for (std::thread &worker : workers)
        worker.join();
    QCOMPARE(after.load(), 80);
    QCOMPARE(wrong.load(), 0);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    tst_AnyThread test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_any_thread.moc"
