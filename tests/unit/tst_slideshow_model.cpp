// The running show: steps, order, timer, and what it asks of the device.

#include "slideshow_model.h"

#include <slateview_testing.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <libexif/exif-data.h>

#include <climits>
#include <cstdlib>
#include <memory>

#include <sys/stat.h>

using lindenreed::device::DeviceForTest;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::SlideshowModel;

namespace {

/// The calls that change something, as "name argument argument"; queries of the device's kind left out.
QByteArray callsOf(const DeviceForTest &device)
{
    QByteArrayList lines;
    for (const SdkCall &call : device.calls()) {
        if (call.name == "device_display_colormask" || call.name == "device_display_dpi")
            continue;
        lines.append((QByteArrayList{call.name} + call.arguments).join(' '));
    }
    return lines.join('\n');
}

QByteArray armed(int milliseconds)
{
    return "SetHardTimerEx nextImageEvent callback context " + QByteArray::number(milliseconds);
}

const QByteArray cleared = "ClearTimerByName nextImageEvent";

bool write(const QString &path, const QByteArray &contents = "x")
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

/// The smallest JPEG that libexif reads a date from.
QByteArray jpegWithDate(const char *date, ExifIfd directory = EXIF_IFD_EXIF,
                        ExifTag tag = EXIF_TAG_DATE_TIME_ORIGINAL)
{
    ExifData *data = exif_data_new();
    exif_data_set_byte_order(data, EXIF_BYTE_ORDER_INTEL);
    ExifEntry *entry = exif_entry_new();
    exif_content_add_entry(data->ifd[directory], entry);
    entry->tag = tag;
    entry->format = EXIF_FORMAT_ASCII;
    entry->components = std::strlen(date) + 1;
    entry->size = unsigned(entry->components);
    ExifMem *memory = exif_mem_new_default();
    entry->data = static_cast<unsigned char *>(exif_mem_alloc(memory, ExifLong(entry->size)));
    std::memcpy(entry->data, date, entry->size);
    unsigned char *bytes = nullptr;
    unsigned int length = 0;
    exif_data_save_data(data, &bytes, &length);
    QByteArray segment(reinterpret_cast<const char *>(bytes), int(length));
    std::free(bytes);
    exif_entry_unref(entry);
    exif_mem_unref(memory);
    exif_data_unref(data);

    QByteArray file("\xff\xd8\xff\xe1", 4);
    const auto size = quint16(segment.size() + 2);
    file.append(char(size >> 8)).append(char(size & 0xff)).append(segment);
    return file.append("\xff\xd9", 2);
}

} // namespace

class tst_SlideshowModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void metaObject();
    void freshModel();
    void stepsForward();
    void stepsBack();
    void listOfOne();
    void emptyList();
    void takesOnlyExistingFiles();
    void initLeavesARunningShowAlone();
    void sortedByPath();
    void shuffledByTheUnseededSource();
    void shuffleKeepsPositionAndIsSilent();
    void shuffleDuringAShowLeavesTheDeviceAlone();
    void start();
    void startWithoutPictures();
    void stop();
    void secondStartBeginsTheWaitAnew();
    void stepDuringAShow();
    void pausedStepArmsNothing();
    void tick();
    void tickAfterStop();
    void signalsComeBeforeTheTimer();
    void intervals_data();
    void intervals();
    void intervalWhilePaused();
    void zeroIntervalLeavesTheLoopFree();
    void backgroundAndForeground();
    void backgroundTwice();
    void foregroundOfAShowThatDidNotRun();
    void destructorGivesTheDeviceBack();
    void highQualityUpdates_data();
    void highQualityUpdates();
    void touchDragZone();
    void timeString_data();
    void timeString();
    void createdFromExif_data();
    void createdFromExif();
    void createdFromAnotherEntry_data();
    void createdFromAnotherEntry();
    void createdIsReadAnew();
    void createdFromAccessTime();
    void createdOfWhatIsNoFile();
    void createdOfFifo();
    void fromFolder();
    void setCurrentFile();
    void resumeTimer();

private:
    QStringList makePictures(int count);

    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_SlideshowModel::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".?")));
    m_device = std::make_unique<DeviceForTest>();
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_SlideshowModel::cleanup()
{
    m_folder.reset();
    m_device.reset();
}

QStringList tst_SlideshowModel::makePictures(int count)
{
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        paths.append(m_folder->filePath(QStringLiteral("%1.jpg").arg(i)));
        write(paths.last());
    }
    return paths;
}

void tst_SlideshowModel::metaObject()
{
    QByteArrayList methods;
    const QMetaObject &meta = SlideshowModel::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods.append(meta.method(i).methodSignature());
    QCOMPARE(methods,
             (QByteArrayList{"current_imageChanged()", "loadToCache(QStringList,int)", "openCloseMenu()",
                             "nextImage()", "prevImage()", "intervalChange(int)", "shuffleChange(bool)",
                             "stop()", "start()", "onForeground()", "onBackground()", "switchHQUpdates(bool)",
                             "getTouchDragZone()", "getTimeString(QString,QDateTime)",
                             "initFromList(QStringList,int)"}));

    for (int i = 0; i < methods.size(); ++i) {
        const QMetaMethod method = meta.method(meta.methodOffset() + i);
        QCOMPARE(method.methodType(), i < 3 ? QMetaMethod::Signal : QMetaMethod::Slot);
        QCOMPARE(method.access(), QMetaMethod::Public);
        int type = QMetaType::Void;
        if (method.name() == "getTouchDragZone")
            type = QMetaType::Double;
        else if (method.name() == "getTimeString")
            type = QMetaType::QString;
        QCOMPARE(method.returnMetaType().id(), type);
    }

    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 2);
    const QByteArrayList names{"current_image", "created_datetime"};
    const QList<int> types{QMetaType::QString, QMetaType::QDateTime};
    for (int i = 0; i < names.size(); ++i) {
        const QMetaProperty property = meta.property(meta.propertyOffset() + i);
        QCOMPARE(QByteArray(property.name()), names.at(i));
        QCOMPARE(property.metaType().id(), types.at(i));
        QVERIFY(!property.isWritable());
        QCOMPARE(property.notifySignal().name(), QByteArray("current_imageChanged"));
    }
}

void tst_SlideshowModel::freshModel()
{
    const SlideshowModel model;
    QCOMPARE(model.currentImage(), QString());
    QVERIFY(!model.createdDateTime().isValid());
}

void tst_SlideshowModel::stepsForward()
{
    const QStringList paths = makePictures(3);
    SlideshowModel model;
    model.initFromList(paths, 5);
    QCOMPARE(model.currentImage(), paths.at(0));
    model.nextImage();
    QCOMPARE(model.currentImage(), paths.at(1));
    model.nextImage();
    QCOMPARE(model.currentImage(), paths.at(2));
    model.nextImage();
    QCOMPARE(model.currentImage(), paths.at(0));
    QCOMPARE(m_device->calls({"BanSleep"}).size(), 3);
    QCOMPARE(m_device->calls({"BanSleep"}).first().arguments, QByteArrayList{"1"});
}

void tst_SlideshowModel::stepsBack()
{
    const QStringList paths = makePictures(3);
    SlideshowModel model;
    model.initFromList(paths, 5);
    model.prevImage();
    QCOMPARE(model.currentImage(), paths.at(2));
    model.prevImage();
    QCOMPARE(model.currentImage(), paths.at(1));
    QCOMPARE(m_device->calls({"BanSleep"}).size(), 0); // only the step forward puts sleep off
}

void tst_SlideshowModel::listOfOne()
{
    const QStringList paths = makePictures(1);
    SlideshowModel model;
    model.initFromList(paths, 5);
    model.start();
    m_device->forgetCalls();
    QSignalSpy changed(&model, &SlideshowModel::current_imageChanged);
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    model.nextImage();
    model.prevImage();
    QCOMPARE(model.currentImage(), paths.first());
    QCOMPARE(changed.count(), 2);
    QCOMPARE(load.count(), 2);
    QCOMPARE(callsOf(*m_device),
             cleared + '\n' + armed(5000) + "\nBanSleep 1\n" + cleared + '\n' + armed(5000));
}

void tst_SlideshowModel::emptyList()
{
    SlideshowModel model;
    QSignalSpy changed(&model, &SlideshowModel::current_imageChanged);
    QSignalSpy load(&model, &SlideshowModel::loadToCache);

    model.nextImage();
    QCOMPARE(changed.count(), 1);
    QCOMPARE(load.takeFirst(), (QVariantList{QStringList(), 0}));
    QCOMPARE(callsOf(*m_device), cleared + "\nBanSleep 1");

    // One position before the first: nothing is there, as behind the last.
    model.prevImage();
    QCOMPARE(load.takeFirst(), (QVariantList{QStringList(), -1}));
    QCOMPARE(model.currentImage(), QString());
    QVERIFY(!model.createdDateTime().isValid());

    model.shuffleChange(true);
    model.shuffleChange(false);
    QCOMPARE(load.count(), 0);

    const QStringList paths = makePictures(2);
    model.initFromList(paths, 1);
    QCOMPARE(model.currentImage(), paths.first());
}

void tst_SlideshowModel::takesOnlyExistingFiles()
{
    const QStringList paths = makePictures(3);
    QFile::remove(paths.at(1));
    SlideshowModel model;
    QSignalSpy changed(&model, &SlideshowModel::current_imageChanged);
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    model.initFromList(paths, 5);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(load.count(), 0);
    QCOMPARE(callsOf(*m_device), QByteArray());

    // A file that goes later stays in the list.
    QFile::remove(paths.at(2));
    model.nextImage();
    QCOMPARE(model.currentImage(), paths.at(2));
    model.nextImage();
    QCOMPARE(model.currentImage(), paths.at(0));
}

void tst_SlideshowModel::initLeavesARunningShowAlone()
{
    SlideshowModel model;
    model.initFromList(makePictures(2), 5);
    model.start();
    m_device->forgetCalls();
    model.initFromList(makePictures(1), 7);
    QCOMPARE(callsOf(*m_device), QByteArray());
    QVERIFY(m_device->fire("nextImageEvent"));
    QCOMPARE(callsOf(*m_device), cleared + '\n' + armed(7000) + "\nBanSleep 1");
}

void tst_SlideshowModel::sortedByPath()
{
    QStringList paths;
    for (const char *name : {"b.jpg", "a10.jpg", "B.jpg", "a9.jpg", "ä.jpg"}) {
        paths.append(m_folder->filePath(QString::fromUtf8(name)));
        QVERIFY(write(paths.last()));
    }
    SlideshowModel model;
    model.initFromList(paths, 1);
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    model.shuffleChange(false);
    QStringList names;
    for (const QString &path : load.first().first().toStringList())
        names.append(QFileInfo(path).fileName());
    QCOMPARE(names.join(u' '), QStringLiteral("B.jpg a10.jpg a9.jpg b.jpg ä.jpg"));
}

void tst_SlideshowModel::shuffledByTheUnseededSource()
{
    const QStringList paths = makePictures(8);
    QStringList expected = paths;
    std::srand(1); // where an unseeded source stands at the start
    for (int i = 1; i < 8; ++i) {
        const int j = std::rand() % (i + 1);
        if (j != i)
            expected.swapItemsAt(i, j);
    }
    QVERIFY(expected != paths);

    std::srand(1);
    SlideshowModel model;
    model.initFromList(paths, 1);
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    model.shuffleChange(true);
    QCOMPARE(load.first().first().toStringList(), expected);

    // Walking round does not shuffle again.
    for (int i = 0; i < 8; ++i)
        model.nextImage();
    QCOMPARE(load.last().first().toStringList(), expected);

    // The next shuffle starts from this order and goes on in the sequence.
    model.shuffleChange(true);
    QVERIFY(load.last().first().toStringList() != expected);
}

void tst_SlideshowModel::shuffleKeepsPositionAndIsSilent()
{
    QStringList paths = makePictures(3);
    std::reverse(paths.begin(), paths.end());
    SlideshowModel model;
    model.initFromList(paths, 1);
    QSignalSpy changed(&model, &SlideshowModel::current_imageChanged);
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    model.shuffleChange(false);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(load.count(), 1);
    QCOMPARE(load.first().at(1).toInt(), 0);
    QCOMPARE(model.currentImage(), paths.last()); // another picture at the same position
}

void tst_SlideshowModel::shuffleDuringAShowLeavesTheDeviceAlone()
{
    // The wait goes on as it is, and the device keeps what the show asked for.
    SlideshowModel model;
    model.initFromList(makePictures(3), 30);
    model.start();
    m_device->forgetCalls();
    model.shuffleChange(true);
    model.shuffleChange(false);
    QCOMPARE(callsOf(*m_device), QByteArray());
    QVERIFY(m_device->fire("nextImageEvent"));
}

void tst_SlideshowModel::start()
{
    SlideshowModel model;
    model.initFromList(makePictures(2), 30);
    model.start();
    QCOMPARE(callsOf(*m_device), "SetAutoPowerOff 0\nSetAutoKeylock 0\n" + cleared + '\n' + armed(30'000));
}

void tst_SlideshowModel::startWithoutPictures()
{
    SlideshowModel model;
    model.start();
    QCOMPARE(callsOf(*m_device), QByteArray());
    model.initFromList(makePictures(1), 1);
    model.resumeTimer();
    QCOMPARE(callsOf(*m_device), QByteArray()); // and it does not count as running
}

void tst_SlideshowModel::stop()
{
    SlideshowModel model;
    model.initFromList(makePictures(2), 30);
    model.start();
    m_device->forgetCalls();
    model.stop();
    QCOMPARE(callsOf(*m_device), "SetAutoPowerOff 1\nSetAutoKeylock 1\n" + cleared);
    QVERIFY(!m_device->fire("nextImageEvent"));
}

void tst_SlideshowModel::secondStartBeginsTheWaitAnew()
{
    SlideshowModel model;
    model.initFromList(makePictures(2), 30);
    model.start();
    m_device->forgetCalls();
    model.start();
    QCOMPARE(callsOf(*m_device), "SetAutoPowerOff 0\nSetAutoKeylock 0\n" + cleared + '\n' + armed(30'000));
}

void tst_SlideshowModel::stepDuringAShow()
{
    SlideshowModel model;
    model.initFromList(makePictures(3), 2);
    model.start();
    m_device->forgetCalls();
    model.nextImage();
    QCOMPARE(callsOf(*m_device), cleared + '\n' + armed(2000) + "\nBanSleep 1");
    m_device->forgetCalls();
    model.prevImage();
    QCOMPARE(callsOf(*m_device), cleared + '\n' + armed(2000));
}

void tst_SlideshowModel::pausedStepArmsNothing()
{
    SlideshowModel model;
    model.initFromList(makePictures(3), 2);
    model.nextImage();
    model.prevImage();
    QCOMPARE(callsOf(*m_device), cleared + "\nBanSleep 1\n" + cleared);
}

void tst_SlideshowModel::tick()
{
    const QStringList paths = makePictures(2);
    SlideshowModel model;
    model.initFromList(paths, 2);
    model.start();
    m_device->forgetCalls();
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    QVERIFY(m_device->fire("nextImageEvent"));
    QCOMPARE(model.currentImage(), paths.at(1));
    QCOMPARE(load.takeFirst(), (QVariantList{paths, 1}));
    QCOMPARE(callsOf(*m_device), cleared + '\n' + armed(2000) + "\nBanSleep 1");
    QVERIFY(m_device->fire("nextImageEvent"));
    QCOMPARE(model.currentImage(), paths.at(0));
}

void tst_SlideshowModel::tickAfterStop()
{
    // A timer that somebody armed for a stopped model changes nothing.
    const QStringList paths = makePictures(2);
    SlideshowModel model;
    model.initFromList(paths, 2);
    model.start();
    connect(&model, &SlideshowModel::current_imageChanged, &model, [&model] { model.stop(); });
    QVERIFY(m_device->fire("nextImageEvent"));
    QVERIFY(!m_device->fire("nextImageEvent"));
    QCOMPARE(model.currentImage(), paths.at(1));
}

void tst_SlideshowModel::signalsComeBeforeTheTimer()
{
    SlideshowModel model;
    model.initFromList(makePictures(2), 2);
    model.start();
    m_device->forgetCalls();
    QByteArrayList order;
    connect(&model, &SlideshowModel::current_imageChanged, &model, [&] {
        order.append("changed");
        QCOMPARE(callsOf(*m_device), QByteArray());
    });
    connect(&model, &SlideshowModel::loadToCache, &model, [&] {
        order.append("load");
        QCOMPARE(callsOf(*m_device), QByteArray());
    });
    model.nextImage();
    QCOMPARE(order, (QByteArrayList{"changed", "load"}));
}

void tst_SlideshowModel::intervals_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("milliseconds");

    QTest::newRow("none") << 0 << 0;
    QTest::newRow("two seconds") << 2 << 2000;
    QTest::newRow("a day") << 86'400 << 86'400'000;
    QTest::newRow("more than the timer can hold") << INT_MAX << INT_MAX;
    QTest::newRow("less than the timer can hold") << INT_MIN << INT_MIN;
}

void tst_SlideshowModel::intervals()
{
    QFETCH(int, seconds);
    QFETCH(int, milliseconds);

    SlideshowModel model;
    model.initFromList(makePictures(2), 30);
    model.start();
    m_device->forgetCalls();
    model.intervalChange(seconds);
    QCOMPARE(callsOf(*m_device), cleared + '\n' + armed(milliseconds));
}

void tst_SlideshowModel::intervalWhilePaused()
{
    SlideshowModel model;
    model.initFromList(makePictures(2), 30);
    model.intervalChange(3);
    QCOMPARE(callsOf(*m_device), cleared);
    m_device->forgetCalls();
    model.start();
    QCOMPARE(m_device->calls({"SetHardTimerEx"}).first().arguments.last(), QByteArray("3000"));
}

void tst_SlideshowModel::zeroIntervalLeavesTheLoopFree()
{
    SlideshowModel model;
    model.initFromList(makePictures(2), 0);
    QSignalSpy changed(&model, &SlideshowModel::current_imageChanged);
    model.start();
    QCOMPARE(changed.count(), 0); // not from inside the call
    QTRY_VERIFY(changed.count() > 3);
    bool otherWork = false;
    QMetaObject::invokeMethod(
        this, [&otherWork] { otherWork = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(otherWork);
}

void tst_SlideshowModel::backgroundAndForeground()
{
    const QStringList paths = makePictures(2);
    SlideshowModel model;
    model.initFromList(paths, 4);
    model.start();
    m_device->forgetCalls();
    model.onBackground();
    QCOMPARE(callsOf(*m_device), "SetAutoPowerOff 1\nSetAutoKeylock 1\n" + cleared);
    m_device->forgetCalls();
    model.onForeground();
    QCOMPARE(callsOf(*m_device), "SetAutoPowerOff 0\nSetAutoKeylock 0\n" + cleared + '\n' + armed(4000));
    QCOMPARE(model.currentImage(), paths.first());

    // What ran in the foreground once runs again with each return, until the next background.
    model.stop();
    m_device->forgetCalls();
    model.onForeground();
    QCOMPARE(m_device->calls({"SetHardTimerEx"}).size(), 1);
}

void tst_SlideshowModel::backgroundTwice()
{
    SlideshowModel model;
    model.initFromList(makePictures(2), 4);
    model.start();
    model.onBackground();
    model.onBackground();
    m_device->forgetCalls();
    model.onForeground();
    QCOMPARE(callsOf(*m_device), QByteArray());
}

void tst_SlideshowModel::foregroundOfAShowThatDidNotRun()
{
    SlideshowModel model;
    model.initFromList(makePictures(2), 4);
    model.onForeground();
    QCOMPARE(callsOf(*m_device), QByteArray());
    model.onBackground();
    m_device->forgetCalls();
    model.onForeground();
    QCOMPARE(callsOf(*m_device), QByteArray());
}

void tst_SlideshowModel::destructorGivesTheDeviceBack()
{
    {
        SlideshowModel model;
        model.initFromList(makePictures(2), 4);
        model.start();
        m_device->forgetCalls();
    }
    QCOMPARE(callsOf(*m_device), "SetAutoPowerOff 1\nSetAutoKeylock 1\n" + cleared);
}

void tst_SlideshowModel::highQualityUpdates_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<bool>("quality");
    QTest::addColumn<QByteArray>("calls");

    QTest::newRow("grey, on") << 0 << true << QByteArray();
    QTest::newRow("grey, off") << 0 << false << QByteArray();
    QTest::newRow("colour, on") << 1 << true << QByteArray("0");
    QTest::newRow("colour, off") << 1 << false << QByteArray("1");
}

void tst_SlideshowModel::highQualityUpdates()
{
    QFETCH(int, mask);
    QFETCH(bool, quality);
    QFETCH(QByteArray, calls);

    m_device->setColourMask(mask);
    SlideshowModel model;
    model.switchHQUpdates(quality);
    const QList<SdkCall> made = m_device->calls({"setFastUpdates"});
    QCOMPARE(made.size(), calls.isEmpty() ? 0 : 1);
    if (!calls.isEmpty())
        QCOMPARE(made.first().arguments, QByteArrayList{calls});
}

void tst_SlideshowModel::touchDragZone()
{
    SlideshowModel model;
    QCOMPARE(model.getTouchDragZone(), 212 * 1.6);
}

void tst_SlideshowModel::timeString_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QDateTime>("time"); // where it is in UTC, the zone has changed since the last row
    QTest::addColumn<QString>("text");

    const QDateTime morning(QDate(2024, 5, 3), QTime(7, 4, 9));
    QTest::newRow("clock") << QStringLiteral("%H:%M") << morning << QStringLiteral("07:04");
    QTest::newRow("date") << QStringLiteral("%b %d, %Y") << morning << QStringLiteral("May 03, 2024");
    QTest::newRow("other letters pass through")
        << QStringLiteral("ü %H") << morning << QStringLiteral("ü 07");
    QTest::newRow("empty format") << QString() << morning << QString();
    QTest::newRow("no time at all: the epoch")
        << QStringLiteral("%Y") << QDateTime() << QStringLiteral("1970");
    QTest::newRow("another zone than before")
        << QStringLiteral("%d %H:%M") << QDateTime(QDate(2024, 5, 3), QTime(22, 4, 9), Qt::UTC)
        << QStringLiteral("04 07:04");
    QTest::newRow("cut at 127 bytes") << QString(200, u'x') << morning << QString(127, u'x');
}

void tst_SlideshowModel::timeString()
{
    QFETCH(QString, format);
    QFETCH(QDateTime, time);
    QFETCH(QString, text);

    SlideshowModel model;
    model.getTimeString(QStringLiteral("%H"), time); // whoever remembers a zone remembers this one
    const QByteArray zone = qgetenv("TZ");
    if (time.timeSpec() == Qt::UTC)
        qputenv("TZ", "JST-9"); // Tokyo's, written so that no list of zones is needed
    const auto restore = qScopeGuard([&zone] { qputenv("TZ", zone); });
    m_device->forgetCalls();
    QCOMPARE(model.getTimeString(format, time), text);

    const QList<SdkCall> calls = m_device->calls({"GetLangTime"});
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().arguments, (QByteArrayList{"128", format.toUtf8(), "0"}));
}

void tst_SlideshowModel::createdFromExif_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QDateTime>("expected"); // invalid: the access time

    QTest::newRow("as cameras write it")
        << QByteArray("2019:08:17 14:30:05") << QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5));
    QTest::newRow("as ISO writes it")
        << QByteArray("2019-08-17T14:30:05") << QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5));
    QTest::newRow("any separators") << QByteArray("2019/08.17 14:30:05")
                                    << QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5));
    QTest::newRow("a day alone") << QByteArray("2019:08:17") << QDateTime(QDate(2019, 8, 17), QTime(0, 0));
    QTest::newRow("without seconds") << QByteArray("2019:08:17 14:30")
                                     << QDateTime(QDate(2019, 8, 17), QTime(14, 30));
    QTest::newRow("with a fraction") << QByteArray("2019:08:17 14:30:05.25")
                                     << QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5, 250));
    QTest::newRow("in UTC") << QByteArray("2019:08:17 14:30:05Z")
                            << QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5), Qt::UTC);
    QTest::newRow("with an offset") << QByteArray("2019:08:17 14:30:05+02:00")
                                    << QDateTime(QDate(2019, 8, 17), QTime(12, 30, 5), Qt::UTC);
    QTest::newRow("midnight as 24") << QByteArray("2019:08:17 24:00:00")
                                    << QDateTime(QDate(2019, 8, 18), QTime(0, 0));
    QTest::newRow("no such hour") << QByteArray("2019:08:17 25:00:00") << QDateTime();
    QTest::newRow("blanks, as cameras without a clock write it")
        << QByteArray("    :  :     :  :  ") << QDateTime();
    QTest::newRow("empty") << QByteArray() << QDateTime();
    QTest::newRow("no such day") << QByteArray("2019:02:31 14:30:05") << QDateTime();
    QTest::newRow("a camera without a clock") << QByteArray("0000:00:00 00:00:00") << QDateTime();
    QTest::newRow("words") << QByteArray("last summer, maybe!") << QDateTime();
}

void tst_SlideshowModel::createdFromExif()
{
    QFETCH(QByteArray, text);
    QFETCH(QDateTime, expected);

    const QString path = m_folder->filePath(QStringLiteral("dated.jpg"));
    QVERIFY(write(path, jpegWithDate(text.constData())));
    const QDateTime accessed(QDate(2001, 2, 3), QTime(4, 5, 6));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(accessed, QFileDevice::FileAccessTime));
    file.close();

    SlideshowModel model;
    model.initFromList({path}, 1);
    const QDateTime created = model.createdDateTime();
    if (expected.isValid())
        QCOMPARE(created, expected);
    else
        QVERIFY(created == accessed || created == QFileInfo(path).fileTime(QFileDevice::FileAccessTime));
}

void tst_SlideshowModel::createdFromAnotherEntry_data()
{
    QTest::addColumn<int>("directory");
    QTest::addColumn<int>("tag");

    QTest::newRow("when it was taken, in the main directory")
        << int(EXIF_IFD_0) << int(EXIF_TAG_DATE_TIME_ORIGINAL);
    QTest::newRow("when the file was changed, in the main directory")
        << int(EXIF_IFD_0) << int(EXIF_TAG_DATE_TIME);
    QTest::newRow("when it was digitised") << int(EXIF_IFD_EXIF) << int(EXIF_TAG_DATE_TIME_DIGITIZED);
}

void tst_SlideshowModel::createdFromAnotherEntry()
{
    QFETCH(int, directory);
    QFETCH(int, tag);

    // Only the date of the shot in its own directory counts.
    const QString path = m_folder->filePath(QStringLiteral("dated.jpg"));
    QVERIFY(write(path, jpegWithDate("2019:08:17 14:30:05", ExifIfd(directory), ExifTag(tag))));
    SlideshowModel model;
    model.initFromList({path}, 1);
    const QDateTime created = model.createdDateTime();
    QCOMPARE(created, QFileInfo(path).fileTime(QFileDevice::FileAccessTime));
}

void tst_SlideshowModel::createdIsReadAnew()
{
    const QString path = m_folder->filePath(QStringLiteral("dated.jpg"));
    QVERIFY(write(path, jpegWithDate("2019:08:17 14:30:05")));
    SlideshowModel model;
    model.initFromList({path}, 1);
    QCOMPARE(model.createdDateTime(), QDateTime(QDate(2019, 8, 17), QTime(14, 30, 5)));
    QVERIFY(write(path, jpegWithDate("2020:01:02 03:04:05")));
    QCOMPARE(model.createdDateTime(), QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5)));
}

void tst_SlideshowModel::createdFromAccessTime()
{
    const QString path = makePictures(1).first();
    const QDateTime accessed(QDate(2001, 2, 3), QTime(4, 5, 6));
    const QDateTime modified(QDate(2011, 2, 3), QTime(4, 5, 6));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
    QVERIFY(file.setFileTime(accessed, QFileDevice::FileAccessTime));
    file.close();
    SlideshowModel model;
    model.initFromList({path}, 1);
    // Looking for EXIF data may itself move the access time; it is that time all the same.
    const QDateTime created = model.createdDateTime();
    QVERIFY(created == accessed || created == QFileInfo(path).fileTime(QFileDevice::FileAccessTime));
    QVERIFY(created != modified);
}

void tst_SlideshowModel::createdOfWhatIsNoFile()
{
    const QString path = makePictures(1).first();
    SlideshowModel model;
    model.initFromList({path}, 1);
    QFile::remove(path);
    QVERIFY(!model.createdDateTime().isValid());
}

void tst_SlideshowModel::createdOfFifo()
{
    // Opening it would wait for a writer for ever.
    const QString path = m_folder->filePath(QStringLiteral("fifo.jpg"));
    QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    SlideshowModel model;
    model.initFromList({path}, 1);
    QCOMPARE(model.currentImage(), path);
    QCOMPARE(model.createdDateTime(), QFileInfo(path).fileTime(QFileDevice::FileAccessTime));
}

void tst_SlideshowModel::fromFolder()
{
    QDir folder(m_folder->path());
    QVERIFY(folder.mkpath(QStringLiteral("sub/deeper")) && folder.mkpath(QStringLiteral("system/x")));
    for (const char *name : {"a.jpg", "b.JPEG", "c.txt", "sub/d.Png", "sub/deeper/e.svg", "sub/f.gif",
                             "g.bmp", "h.tif", "i.tiff", "system/j.jpg", "system/x/k.jpg"})
        QVERIFY(write(folder.filePath(QString::fromLatin1(name))));
    QVERIFY(folder.mkpath(QStringLiteral("folder.jpg")));
    QCOMPARE(mkfifo(QFile::encodeName(folder.filePath(QStringLiteral("fifo.jpg"))).constData(), 0600), 0);

    const QString earlier = makePictures(1).first();
    QVERIFY(QFile::rename(earlier, earlier + QStringLiteral(".keep")));
    SlideshowModel model;
    model.initFromList({earlier + QStringLiteral(".keep")}, 1);
    model.nextImage();
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    model.initFromFolder(m_folder->path(), 9);
    QCOMPARE(load.count(), 0);

    model.shuffleChange(false);
    QStringList names;
    for (const QString &path : load.first().first().toStringList())
        names.append(folder.relativeFilePath(path));
    // What was there before stays.
    QCOMPARE(names.join(u' '),
             QStringLiteral("0.jpg.keep a.jpg b.JPEG g.bmp h.tif i.tiff sub/d.Png sub/deeper/e.svg"));
    QCOMPARE(load.first().at(1).toInt(), 0);
    model.start();
    QCOMPARE(m_device->calls({"SetHardTimerEx"}).last().arguments.last(), QByteArray("9000"));
}

void tst_SlideshowModel::setCurrentFile()
{
    const QStringList paths = makePictures(3);
    SlideshowModel model;
    model.initFromList(paths, 1);
    QSignalSpy changed(&model, &SlideshowModel::current_imageChanged);
    model.setCurrentFile(paths.at(2));
    QCOMPARE(model.currentImage(), paths.at(2));
    QCOMPARE(changed.count(), 1);
    model.setCurrentFile(QString());
    model.setCurrentFile(QStringLiteral("/nowhere.jpg"));
    QCOMPARE(model.currentImage(), paths.at(2));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(callsOf(*m_device), QByteArray());
}

void tst_SlideshowModel::resumeTimer()
{
    SlideshowModel model;
    model.initFromList(makePictures(2), 6);
    model.resumeTimer();
    QCOMPARE(callsOf(*m_device), QByteArray());
    model.start();
    m_device->forgetCalls();
    model.resumeTimer();
    QCOMPARE(callsOf(*m_device), armed(6000));
}

QTEST_GUILESS_MAIN(tst_SlideshowModel)
#include "tst_slideshow_model.moc"
