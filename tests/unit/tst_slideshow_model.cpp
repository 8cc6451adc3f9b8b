// The list of the show: steps, order, what it asks of the screen.

#include "show_fixture.h"

#include <QDir>
#include <QFileInfo>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QSignalSpy>

#include <cstdlib>

#include <sys/stat.h>

using lindenreed::device::SdkCall;
using lindenreed::picture_stand::SlideshowModel;

class tst_SlideshowModel : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_show = std::make_unique<ShowFixture>(); }
    void cleanup() { m_show.reset(); }

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
    void highQualityUpdates_data();
    void highQualityUpdates();
    void touchDragZone();
    void fromFolder();
    void setCurrentFile();

private:
    std::unique_ptr<ShowFixture> m_show;
};

void tst_SlideshowModel::metaObject()
{
    QByteArrayList methods;
    const QMetaObject &meta = SlideshowModel::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        methods.append(method.methodSignature() + ' ' + method.parameterNames().join(','));
    }
    QCOMPARE(methods,
             (QByteArrayList{"current_imageChanged() ", "loadToCache(QStringList,int) ,", "openCloseMenu() ",
                             "nextImage() ", "prevImage() ", "intervalChange(int) seconds",
                             "shuffleChange(bool) shuffle", "stop() ", "start() ", "onForeground() ",
                             "onBackground() ", "switchHQUpdates(bool) value", "getTouchDragZone() ",
                             "getTimeString(QString,QDateTime) format,dateTime",
                             "initFromList(QStringList,int) images,interval"}));

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
    const QStringList paths = m_show->makePictures(3);
    SlideshowModel model;
    model.initFromList(paths, 5);
    QCOMPARE(model.currentImage(), paths.at(0));
    model.nextImage();
    QCOMPARE(model.currentImage(), paths.at(1));
    model.nextImage();
    QCOMPARE(model.currentImage(), paths.at(2));
    model.nextImage();
    QCOMPARE(model.currentImage(), paths.at(0));
    QCOMPARE(m_show->device.calls({"BanSleep"}).size(), 3);
    QCOMPARE(m_show->device.calls({"BanSleep"}).first().arguments, QByteArrayList{"1"});
}

void tst_SlideshowModel::stepsBack()
{
    const QStringList paths = m_show->makePictures(3);
    SlideshowModel model;
    model.initFromList(paths, 5);
    model.prevImage();
    QCOMPARE(model.currentImage(), paths.at(2));
    model.prevImage();
    QCOMPARE(model.currentImage(), paths.at(1));
    QCOMPARE(m_show->device.calls({"BanSleep"}).size(), 0); // only the step forward puts sleep off
}

void tst_SlideshowModel::listOfOne()
{
    const QStringList paths = m_show->makePictures(1);
    SlideshowModel model;
    model.initFromList(paths, 5);
    model.start();
    m_show->device.forgetCalls();
    QSignalSpy changed(&model, &SlideshowModel::current_imageChanged);
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    model.nextImage();
    model.prevImage();
    QCOMPARE(model.currentImage(), paths.first());
    QCOMPARE(changed.count(), 2);
    QCOMPARE(load.count(), 2);
    QCOMPARE(m_show->calls(), cleared + '\n' + armed(5000) + "\nBanSleep 1\n" + cleared + '\n' + armed(5000));
}

void tst_SlideshowModel::emptyList()
{
    SlideshowModel model;
    QSignalSpy changed(&model, &SlideshowModel::current_imageChanged);
    QSignalSpy load(&model, &SlideshowModel::loadToCache);

    model.nextImage();
    QCOMPARE(changed.count(), 1);
    QCOMPARE(load.takeFirst(), (QVariantList{QStringList(), 0}));
    QCOMPARE(m_show->calls(), cleared + "\nBanSleep 1");

    // One position before the first: nothing is there, as behind the last.
    model.prevImage();
    QCOMPARE(load.takeFirst(), (QVariantList{QStringList(), -1}));
    QCOMPARE(model.currentImage(), QString());
    QVERIFY(!model.createdDateTime().isValid());

    model.shuffleChange(true);
    model.shuffleChange(false);
    QCOMPARE(load.count(), 0);

    const QStringList paths = m_show->makePictures(2);
    model.initFromList(paths, 1);
    QCOMPARE(model.currentImage(), paths.first());
}

void tst_SlideshowModel::takesOnlyExistingFiles()
{
    const QStringList paths = m_show->makePictures(3);
    QFile::remove(paths.at(1));
    SlideshowModel model;
    QSignalSpy changed(&model, &SlideshowModel::current_imageChanged);
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    model.initFromList(paths, 5);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(load.count(), 0);
    QCOMPARE(m_show->calls(), QByteArray());

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
    model.initFromList(m_show->makePictures(2), 5);
    model.start();
    m_show->device.forgetCalls();
    model.initFromList(m_show->makePictures(1), 7);
    QCOMPARE(m_show->calls(), QByteArray());
    QVERIFY(m_show->device.fire("nextImageEvent"));
    QCOMPARE(m_show->calls(), cleared + '\n' + armed(7000) + "\nBanSleep 1");
}

void tst_SlideshowModel::sortedByPath()
{
    QStringList paths;
    for (const char *name : {"b.jpg", "a10.jpg", "B.jpg", "a9.jpg", "ä.jpg"}) {
        paths.append(m_show->folder.filePath(QString::fromUtf8(name)));
        QVERIFY(writeFile(paths.last()));
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
    const QStringList paths = m_show->makePictures(8);
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
    QStringList paths = m_show->makePictures(3);
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
    model.initFromList(m_show->makePictures(3), 30);
    model.start();
    m_show->device.forgetCalls();
    model.shuffleChange(true);
    model.shuffleChange(false);
    QCOMPARE(m_show->calls(), QByteArray());
    QVERIFY(m_show->device.fire("nextImageEvent"));
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

    m_show->device.setColourMask(mask);
    SlideshowModel model;
    model.switchHQUpdates(quality);
    const QList<SdkCall> made = m_show->device.calls({"setFastUpdates"});
    QCOMPARE(made.size(), calls.isEmpty() ? 0 : 1);
    if (!calls.isEmpty())
        QCOMPARE(made.first().arguments, QByteArrayList{calls});
}

void tst_SlideshowModel::touchDragZone()
{
    SlideshowModel model;
    QCOMPARE(model.getTouchDragZone(), 212 * 1.6);
}

void tst_SlideshowModel::fromFolder()
{
    QDir folder(m_show->folder.path());
    QVERIFY(folder.mkpath(QStringLiteral("sub/deeper")) && folder.mkpath(QStringLiteral("system/x")));
    for (const char *name : {"a.jpg", "b.JPEG", "c.txt", "sub/d.Png", "sub/deeper/e.svg", "sub/f.gif",
                             "g.bmp", "h.tif", "i.tiff", "system/j.jpg", "system/x/k.jpg"})
        QVERIFY(writeFile(folder.filePath(QString::fromLatin1(name))));
    QVERIFY(folder.mkpath(QStringLiteral("folder.jpg")));
    QCOMPARE(mkfifo(QFile::encodeName(folder.filePath(QStringLiteral("fifo.jpg"))).constData(), 0600), 0);

    const QString earlier = m_show->makePictures(1).first();
    QVERIFY(QFile::rename(earlier, earlier + QStringLiteral(".keep")));
    SlideshowModel model;
    model.initFromList({earlier + QStringLiteral(".keep")}, 1);
    model.nextImage();
    QSignalSpy load(&model, &SlideshowModel::loadToCache);
    model.initFromFolder(m_show->folder.path(), 9);
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
    QCOMPARE(m_show->device.calls({"SetHardTimerEx"}).last().arguments.last(), QByteArray("9000"));
}

void tst_SlideshowModel::setCurrentFile()
{
    const QStringList paths = m_show->makePictures(3);
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
    QCOMPARE(m_show->calls(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_SlideshowModel)
#include "tst_slideshow_model.moc"
