// What the control set adds to Image and Loader.

#include <device.h>
#include <journal.h>

#include "panel_application.h"
#include "qml_scene.h"

#include <QDir>
#include <QFile>
#include <QQuickAsyncImageProvider>
#include <QQuickImageProvider>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsLoading : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void changedFileIsReadAgain_data();
    void changedFileIsReadAgain();
    void changedTwice();
    void bindingStaysInForce();
    void fileThatIsGoneLeavesItsPicture();
    void fileThatComesLate();
    void folderThatGoesAndComesBack();
    void folderThatComesLate();
    void cardThatGoesAndComesBack();
    void touchedFileOfAnotherImage();
    void otherSourcesArePlain();
    void loadingPutsSleepOff_data();
    void loadingPutsSleepOff();
    void longLoadingPutsSleepOffFromItsStart();
    void emptyLoaderAsksForNothing();

private:
    QString path(const QString &name = u"picture.png"_s) const { return m_folder->filePath(name); }
    void makeImage(const QByteArray &members);
    QColor shown(const QString &name = u"image"_s);
    bool witnessIsReadAgain();
    int sleepsPutOff() const { return Device::instance()->power.banSleep(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QTemporaryDir> m_witnessFolder;
    std::unique_ptr<QmlScene> m_scene;
};

namespace {

/// A picture of one grey, written as a program does that saves in place.
void write(const QString &path, int grey, int side = 40)
{
    QImage image(side, side, QImage::Format_Grayscale8);
    image.fill(grey);
    QVERIFY(image.save(path, "PNG"));
}

QByteArray imageOf(const QByteArray &name, const QString &path)
{
    return "import QtQuick\nimport com.lindenreed.controls 1.0\n"
           "AutoReloadImage { objectName: '"
        + name + "'; source: 'file://" + path.toUtf8() + "' }";
}

/// Counts what the engine asks of it.
class CountingProvider : public QQuickImageProvider
{
public:
    explicit CountingProvider(int *requests)
        : QQuickImageProvider(QQuickImageProvider::Image)
        , m_requests(requests)
    {
    }

    QImage requestImage(const QString &, QSize *size, const QSize &) override
    {
        ++*m_requests;
        QImage image(20, 20, QImage::Format_Grayscale8);
        image.fill(Qt::black);
        *size = image.size();
        return image;
    }

private:
    int *m_requests;
};

} // namespace

void tst_ControlsLoading::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_witnessFolder = std::make_unique<QTemporaryDir>();
    write(m_witnessFolder->filePath(u"witness.png"_s), 0);
    Device::instance()->power.reset();
    journal::forget();
}

void tst_ControlsLoading::cleanup()
{
    const QStringList warnings = m_scene ? m_scene->warnings() : QStringList();
    m_scene.reset();
    Device::instance()->media.plug(Medium::Card, false);
    QCOMPARE(warnings, QStringList());
    QVERIFY(journal::entries().isEmpty());
}

void tst_ControlsLoading::makeImage(const QByteArray &members)
{
    m_scene = std::make_unique<QmlScene>(
        "import QtQuick\nimport com.lindenreed.controls 1.0\nItem { property string path\n"
        "AutoReloadImage { objectName: 'image'; width: 40; height: 40\n"
        + members
        + " }\nAutoReloadImage { objectName: 'witness'; x: 100; width: 40; height: 40; source: 'file://"
        + m_witnessFolder->filePath(u"witness.png"_s).toUtf8() + "' } }");
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
}

QColor tst_ControlsLoading::shown(const QString &name)
{
    return m_scene->picture(name).pixelColor(20, 20);
}

/// Changes the picture of the witness twice and waits for it: by then whatever happened before has had its
/// effect on the other image.
bool tst_ControlsLoading::witnessIsReadAgain()
{
    for (int grey : {0x44, 0xCC}) {
        write(m_witnessFolder->filePath(u"witness.png"_s), grey, 30 + grey);
        if (!QTest::qWaitFor([&] { return shown(u"witness"_s) == QColor(grey, grey, grey); }))
            return false;
    }
    return true;
}

void tst_ControlsLoading::changedFileIsReadAgain_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<bool>("replaced");

    QTest::newRow("written in place") << QByteArray() << false;
    QTest::newRow("replaced by another file") << QByteArray() << true;
    QTest::newRow("without the cache") << QByteArray("cache: false") << false;
    QTest::newRow("in the background") << QByteArray("asynchronous: true") << false;
    QTest::newRow("at a size of its own") << QByteArray("sourceSize: Qt.size(20, 20)") << false;
}

void tst_ControlsLoading::changedFileIsReadAgain()
{
    QFETCH(QByteArray, members);
    QFETCH(bool, replaced);

    write(path(), 0);
    makeImage("source: 'file://" + path().toUtf8() + "'\n" + members);
    QTRY_COMPARE(shown(), QColor(0, 0, 0));
    if (replaced) {
        write(path(u"new.png"_s), 0x88, 41);
        QFile::remove(path());
        QVERIFY(QFile::rename(path(u"new.png"_s), path()));
    } else {
        write(path(), 0x88, 41);
    }
    QTRY_COMPARE(shown(), QColor(0x88, 0x88, 0x88));
    QCOMPARE(m_scene->item(u"image"_s)->property("source").toUrl(), QUrl::fromLocalFile(path()));
    QCOMPARE(m_scene->item(u"image"_s)->property("status").toInt(), 1); // ready
}

void tst_ControlsLoading::changedTwice()
{
    write(path(), 0);
    makeImage("source: 'file://" + path().toUtf8() + "'");
    for (int grey : {0x44, 0xCC, 0x22}) {
        write(path(), grey, 30 + grey);
        QTRY_COMPARE(shown(), QColor(grey, grey, grey));
    }
}

void tst_ControlsLoading::bindingStaysInForce()
{
    write(path(), 0);
    write(path(u"other.png"_s), 0x66);
    makeImage("source: parent.path");
    m_scene->root()->setProperty("path", u"file://"_s + path());
    QTRY_COMPARE(shown(), QColor(0, 0, 0));
    write(path(), 0x88, 41);
    QTRY_COMPARE(shown(), QColor(0x88, 0x88, 0x88));
    m_scene->root()->setProperty("path", u"file://"_s + path(u"other.png"_s));
    QTRY_COMPARE(shown(), QColor(0x66, 0x66, 0x66));
    write(path(u"other.png"_s), 0xEE, 41); // and this one is watched now
    QTRY_COMPARE(shown(), QColor(0xEE, 0xEE, 0xEE));
}

void tst_ControlsLoading::fileThatIsGoneLeavesItsPicture()
{
    write(path(), 0);
    makeImage("source: 'file://" + path().toUtf8() + "'");
    QSignalSpy changed(m_scene->item(u"image"_s), SIGNAL(statusChanged(QQuickImageBase::Status)));
    QVERIFY(QFile::remove(path()));
    QVERIFY(witnessIsReadAgain());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(shown(), QColor(0, 0, 0));
    write(path(), 0x88, 41);
    QTRY_COMPARE(shown(), QColor(0x88, 0x88, 0x88));
}

void tst_ControlsLoading::fileThatComesLate()
{
    makeImage("");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Cannot open: file://"_s));
    QmlScene scene(imageOf("late", path()));
    QVERIFY(scene.isShown());
    write(path(), 0x88);
    QTRY_COMPARE(scene.picture(u"late"_s).pixelColor(5, 5), QColor(0x88, 0x88, 0x88));
}

void tst_ControlsLoading::folderThatGoesAndComesBack()
{
    const QString folder = path(u"album"_s);
    const QString picture = folder + u"/picture.png"_s;
    QVERIFY(QDir().mkdir(folder));
    write(picture, 0);
    makeImage("source: 'file://" + picture.toUtf8() + "'");
    for (int grey : {0x44, 0xCC}) { // more than once
        QVERIFY(QDir(folder).removeRecursively());
        QVERIFY(witnessIsReadAgain());
        QCOMPARE(m_scene->item(u"image"_s)->property("status").toInt(), 1); // the last picture stays
        QVERIFY(QDir().mkdir(folder));
        write(picture, grey);
        QTRY_COMPARE(shown(), QColor(grey, grey, grey));
        write(picture, grey + 0x22, 41); // and it is watched as before
        QTRY_COMPARE(shown(), QColor(grey + 0x22, grey + 0x22, grey + 0x22));
    }
}

void tst_ControlsLoading::folderThatComesLate()
{
    const QString picture = path(u"a/b/picture.png"_s);
    makeImage("");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Cannot open: file://"_s));
    QmlScene scene(imageOf("late", picture));
    QVERIFY(scene.isShown());
    QVERIFY(QDir().mkpath(path(u"a"_s)));
    QVERIFY(witnessIsReadAgain());
    QVERIFY(QDir().mkpath(path(u"a/b"_s)));
    write(picture, 0x88);
    QTRY_COMPARE(scene.picture(u"late"_s).pixelColor(5, 5), QColor(0x88, 0x88, 0x88));
}

void tst_ControlsLoading::cardThatGoesAndComesBack()
{
    Media &media = Device::instance()->media;
    const QString folder = u"/mnt/ext2/album"_s;
    const QString picture = folder + u"/picture.png"_s;
    QCOMPARE(media.plug(Medium::Card, true), PlugResult::Done);
    QVERIFY(QDir().mkpath(folder));
    write(picture, 0);
    makeImage("source: 'file://" + picture.toUtf8() + "'");
    for (int grey : {0x44, 0xCC}) {
        QCOMPARE(media.plug(Medium::Card, false), PlugResult::Done);
        write(u"/mnt/.unplugged/sd/album/picture.png"_s, grey, 30 + grey);
        QVERIFY(witnessIsReadAgain());
        QCOMPARE(media.plug(Medium::Card, true), PlugResult::Done);
        QTRY_COMPARE(shown(), QColor(grey, grey, grey));
    }
    write(picture, 0x88, 41);
    QTRY_COMPARE(shown(), QColor(0x88, 0x88, 0x88));
}

void tst_ControlsLoading::touchedFileOfAnotherImage()
{
    write(path(), 0);
    makeImage("source: 'file://" + path().toUtf8() + "'");
    QQuickItem *image = m_scene->item(u"image"_s);
    QSignalSpy changed(image, SIGNAL(statusChanged(QQuickImageBase::Status)));
    write(path(u"neighbour.png"_s), 0x88);
    QVERIFY(witnessIsReadAgain());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(image->property("cache").toBool(), true);
}

void tst_ControlsLoading::otherSourcesArePlain()
{
    int requests = 0;
    makeImage("");
    m_scene->engine().addImageProvider(u"counting"_s, new CountingProvider(&requests));
    QQuickItem *image = m_scene->item(u"image"_s);
    QVERIFY(image->inherits("QQuickImage"));
    image->setProperty("source", QUrl(u"image://counting/"_s + path()));
    QTRY_COMPARE(shown(), QColor(Qt::black));
    QCOMPARE(requests, 1);
    QSignalSpy changed(image, SIGNAL(statusChanged(QQuickImageBase::Status)));
    write(path(), 0x88); // a file of that name is no business of its
    QVERIFY(witnessIsReadAgain());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(requests, 1);
}

void tst_ControlsLoading::loadingPutsSleepOff_data()
{
    QTest::addColumn<QByteArray>("members");

    QTest::newRow("at once") << QByteArray("sourceComponent: Item { objectName: 'loaded' }");
    QTest::newRow("in the background")
        << QByteArray("asynchronous: true; sourceComponent: Item { objectName: 'loaded' }");
}

void tst_ControlsLoading::loadingPutsSleepOff()
{
    QFETCH(QByteArray, members);

    m_scene = std::make_unique<QmlScene>(
        "import QtQuick\nimport com.lindenreed.controls 1.0\nItem { property int told: 0\n"
        "LoaderNoSleep { objectName: 'loader'; onLoaded: ++parent.told; "
        + members + " } }");
    QTRY_VERIFY(m_scene->item(u"loaded"_s));
    QCOMPARE(m_scene->root()->property("told").toInt(), 1); // the screen's own handler runs as well
    QVERIFY(m_scene->item(u"loader"_s)->inherits("QQuickLoader"));
    QTRY_VERIFY(sleepsPutOff() >= 1);
}

void tst_ControlsLoading::longLoadingPutsSleepOffFromItsStart()
{
    m_scene = std::make_unique<QmlScene>(
        "import QtQuick\nimport com.lindenreed.controls 1.0\nItem { id: page; property int status: 0\n"
        "LoaderNoSleep { objectName: 'loader'; asynchronous: true; active: false\n"
        "onStatusChanged: page.status = status\n"
        "sourceComponent: Column { Repeater { model: 3000; Text { text: index } } } } }");
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
    // As the engine of a program whose window is made by QML: else all is loaded at once.
    m_scene->engine().setIncubationController(m_scene->window().incubationController());
    QCOMPARE(sleepsPutOff(), 0);
    m_scene->item(u"loader"_s)->setProperty("active", true);
    QCOMPARE(m_scene->root()->property("status").toInt(), 2); // loading
    QCOMPARE(sleepsPutOff(), 1);
    QTRY_COMPARE(m_scene->root()->property("status").toInt(), 1); // ready
    QCOMPARE(sleepsPutOff(), 2); // and a whole idle time from now on
}

void tst_ControlsLoading::emptyLoaderAsksForNothing()
{
    m_scene = std::make_unique<QmlScene>("import QtQuick\nimport com.lindenreed.controls 1.0\n"
                                         "Item { LoaderNoSleep {} }");
    QVERIFY(m_scene->isShown());
    QCOMPARE(sleepsPutOff(), 0);
}

PANEL_TEST_MAIN(tst_ControlsLoading)
#include "tst_controls_loading.moc"
