// Thumbnails through a real engine: odd names, what cannot be shown, and the end of the program.

#include "cover_cache.h"
#include "held_pictures.h"
#include "panel_application.h"
#include "running_app.h"
#include "storage.h"
#include "stored_database.h"

#include <slateview_testing.h>

#include <QDir>
#include <QImage>
#include <QQmlComponent>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QUrl>
#include <QtPlugin>

#include <memory>
#include <vector>

Q_IMPORT_PLUGIN(HeldPicturePlugin)

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;
using lindenreed::picture_stand::App;
using lindenreed::picture_stand::CoverCache;
using lindenreed::picture_stand::coverKey;
using lindenreed::picture_stand::Storage;

namespace {

enum ImageStatus { Null, Ready, Loading, Error }; // as QQuickImageBase numbers them

QImage twoGreys(QSize size)
{
    QImage picture(size, QImage::Format_Grayscale8);
    picture.fill(0x44);
    picture.scanLine(3)[5] = 0xee;
    return picture;
}

/// An item of the interface that shows the thumbnail of a file in a box of 60 x 60.
std::unique_ptr<QQuickItem> showCover(const RunningApp &running, const QString &path)
{
    QQmlComponent component(running.context->engine());
    component.setData("import QtQuick\n"
                      "Image { property string path; width: 60; height: 60; asynchronous: true; cache: false;"
                      " fillMode: Image.PreserveAspectCrop; sourceSize: Qt.size(width, height);"
                      " source: \"image://cover_provider/\" + path.replace(/%/g, \"%25\") }",
                      QUrl(u"file:///inline.qml"_s));
    std::unique_ptr<QObject> object(
        component.createWithInitialProperties({{u"path"_s, path}}, running.context));
    auto *item = qobject_cast<QQuickItem *>(object.release());
    if (!item)
        qFatal("%s", qUtf8Printable(component.errorString()));
    item->setParentItem(running.window->contentItem());
    return std::unique_ptr<QQuickItem>(item);
}

int status(const std::unique_ptr<QQuickItem> &item)
{
    return item->property("status").toInt();
}

/// Keeps both threads until all held pictures may pass.
std::vector<std::unique_ptr<QQuickItem>> takeThreads(const RunningApp &running, const QString &folder)
{
    std::vector<std::unique_ptr<QQuickItem>> holders;
    for (int i = 0; i < 2; ++i)
        holders.push_back(showCover(running, writeHeldPicture(folder, u"holder %1"_s.arg(i))));
    if (!HeldPictures::waitUntilBegun(2))
        qWarning("the threads are not taken");
    return holders;
}

/// What shows the thumbnail of a file, from `item` on; null where nothing does.
QQuickItem *coverBelow(QQuickItem *item, const QString &path)
{
    if (item->property("source").toUrl()
            == QUrl(u"image://cover_provider/"_s + QString(path).replace(u'%', u"%25"_s))
        && item->property("status").isValid())
        return item;
    for (QQuickItem *child : item->childItems()) {
        if (QQuickItem *found = coverBelow(child, path))
            return found;
    }
    return nullptr;
}

} // namespace

class tst_CoversOnScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init();
    void cleanup();

    void oddNames_data();
    void oddNames();
    void shownThoughTheFileHasGone();
    void cannotBeShown();
    void longNameThatComesBack_data();
    void longNameThatComesBack();
    void tileThatComesBack();
    void itemThatGoesWhileItsCoverIsMade();
    void manyItems();
    void quitWithQueuedJobs();
    void quitInTheMiddleOfManyItems();

private:
    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_CoversOnScreen::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    m_folder = std::make_unique<QTemporaryDir>();
    m_device = std::make_unique<DeviceForTest>();
    HeldPictures::reset();
}

void tst_CoversOnScreen::cleanup()
{
    HeldPictures::letAllPass();
    m_device.reset();
    m_folder.reset();
}

void tst_CoversOnScreen::oddNames_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("plain") << u"plain.png"_s;
    QTest::newRow("spaces") << u"two  words .png"_s;
    QTest::newRow("percent before a letter that is no digit") << u"50%.png"_s;
    QTest::newRow("percent before digits that are an escape") << u"1%25.png"_s;
    QTest::newRow("percent before digits that are another letter") << u"a%20b%41%C3%BC.png"_s;
    QTest::newRow("hash and question mark") << u"a#b?.png"_s;
    QTest::newRow("quotes") << u"\"it's\".png"_s;
    QTest::newRow("other scripts") << u"ü 山 ф 🌄.png"_s;
}

void tst_CoversOnScreen::oddNames()
{
    QFETCH(QString, name);

    const QString path = m_folder->filePath(name);
    QVERIFY(twoGreys({40, 20}).save(path));
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const auto item = showCover(running, path);
                        QTRY_COMPARE(status(item), int(Ready));
                        QCOMPARE(item->implicitWidth(), 60.);
                        // Under the name of the file itself, as whoever loads ahead has it.
                        QVERIFY(CoverCache::instance().find(coverKey(path, 60, 60)));
                    }),
             0);
}

void tst_CoversOnScreen::shownThoughTheFileHasGone()
{
    const QString path = m_folder->filePath(u"1%25.png"_s);
    QVERIFY(twoGreys({40, 20}).save(path));
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        auto item = showCover(running, path);
                        QTRY_COMPARE(status(item), int(Ready));
                        QVERIFY(QFile::remove(path));
                        item = showCover(running, path);
                        QTRY_COMPARE(status(item), int(Ready));
                        QCOMPARE(item->implicitWidth(), 60.);
                    }),
             0);
}

void tst_CoversOnScreen::cannotBeShown()
{
    const QString path = m_folder->filePath(u"missing.png"_s);
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const auto item = showCover(running, path);
                        QTRY_VERIFY(CoverCache::instance().find(coverKey(path, 60, 60)));
                        QTRY_VERIFY(status(item) != Loading);
                        QCOMPARE(item->property("implicitWidth").toReal(), 0.);
                    }),
             0);
}

/// The key of such a path ends before the letter that an address escapes.
void tst_CoversOnScreen::longNameThatComesBack_data()
{
    QTest::addColumn<QString>("end");

    QTest::newRow("percent") << u"50%.png"_s;
    QTest::newRow("percent before digits") << u"1%25.png"_s;
    QTest::newRow("quote") << u"\"it\".png"_s;
}

void tst_CoversOnScreen::longNameThatComesBack()
{
    QFETCH(QString, end);

    const QString path = m_folder->filePath(QString(62, u'n') + end);
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        for (int look = 0; look < 2; ++look) {
                            const auto away = showCover(running, path);
                            QTRY_VERIFY(CoverCache::instance().find(coverKey(path, 60, 60)));
                            QTRY_VERIFY(status(away) != Loading);
                            QCOMPARE(away->implicitWidth(), 0.);
                        }
                        QVERIFY(twoGreys({40, 20}).save(path));
                        const auto item = showCover(running, path);
                        QTRY_COMPARE(status(item), int(Ready));
                        QCOMPARE(item->implicitWidth(), 60.);
                    }),
             0);
}

/// Of a playlist in the overview: its file went after it was asked for, and is back when the overview is.
void tst_CoversOnScreen::tileThatComesBack()
{
    const QString path = m_folder->filePath(u"away%41.png"_s);
    QVERIFY(twoGreys({40, 20}).save(path));
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        const auto settled = [&]() -> QQuickItem * {
                            QQuickItem *const tile = coverBelow(running.window->contentItem(), path);
                            return tile && tile->property("status").toInt() != Loading ? tile : nullptr;
                        };
                        const auto holders = takeThreads(running, m_folder->path());
                        PlaylistModel *const playlists = running.playlists();
                        playlists->setActiveId(playlists->addItem(u"Mine"_s));
                        playlists->addImagesToPlaylist({path});
                        QTRY_VERIFY(coverBelow(running.window->contentItem(), path));
                        QVERIFY(QFile::rename(path, path + u".away"_s));
                        HeldPictures::letAllPass();
                        QTRY_VERIFY(settled());
                        QCOMPARE(settled()->implicitWidth(), 0.);

                        app.changeView(u"settings_slideshow"_s);
                        QTRY_VERIFY(!settled());
                        QVERIFY(QFile::rename(path + u".away"_s, path));
                        app.changeView(u"playlists"_s);
                        QTRY_VERIFY(settled() && settled()->implicitWidth() > 0);
                    }),
             0);
}

void tst_CoversOnScreen::itemThatGoesWhileItsCoverIsMade()
{
    const QString path = writeHeldPicture(m_folder->path(), u"one"_s);
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        auto item = showCover(running, path);
                        QVERIFY(HeldPictures::waitUntilBegun(1));
                        item.reset();
                        HeldPictures::letAllPass();
                        QTRY_VERIFY(CoverCache::instance().find(coverKey(path, 60, 60)));
                    }),
             0);
}

void tst_CoversOnScreen::manyItems()
{
    QStringList paths;
    for (int i = 0; i < 50; ++i) {
        paths.append(m_folder->filePath(u"%1.png"_s.arg(i)));
        QVERIFY(twoGreys({400 + i, 300}).save(paths.last()));
    }
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        std::vector<std::unique_ptr<QQuickItem>> items;
                        for (const QString &path : paths)
                            items.push_back(showCover(running, path));
                        for (const auto &item : items)
                            QTRY_COMPARE_WITH_TIMEOUT(status(item), int(Ready), 30'000);
                    }),
             0);
}

void tst_CoversOnScreen::quitWithQueuedJobs()
{
    QStringList paths;
    for (int i = 0; i < 40; ++i)
        paths.append(writeHeldPicture(m_folder->path(), QString::number(i)));
    const QString old = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    {
        App app;
        QCOMPARE(runApp(app,
                        [&](RunningApp &running) {
                            Storage::instance().listFiles(m_folder->path(), {u"*.held"_s}, 3);
                            QVERIFY(HeldPictures::waitUntilBegun(2)); // the two threads are taken
                            for (int i = 0; i < 10; ++i)
                                showCover(running, paths.at(i)).release()->setParent(running.window);
                        }),
                 0);
    }
    QVERIFY(QDir::setCurrent(old));
    QCOMPARE(HeldPictures::begun().size(), 2);
}

void tst_CoversOnScreen::quitInTheMiddleOfManyItems()
{
    for (int round = 0; round < 5; ++round) {
        QStringList paths;
        for (int i = 0; i < 20; ++i) {
            paths.append(m_folder->filePath(u"%1-%2.png"_s.arg(round).arg(i)));
            QVERIFY(twoGreys({600, 400}).save(paths.last()));
        }
        App app;
        QCOMPARE(runApp(app,
                        [&](RunningApp &running) {
                            for (const QString &path : paths)
                                showCover(running, path).release()->setParent(running.window);
                            QTRY_VERIFY(CoverCache::instance().find(coverKey(paths.first(), 60, 60)));
                        }),
                 0);
    }
}

PANEL_TEST_MAIN(tst_CoversOnScreen)
#include "tst_covers_on_screen.moc"
