// Folders that try the explorer: very many files, awkward names, links, no permission, and a card that goes.

#include "accessible_items.h"
#include "explorer_fixture.h"
#include "held_pictures.h"
#include "obeyed_permissions.h"
#include "panel_application.h"
#include "panel_remote.h"

#include <QtPlugin>

#include <memory>

#include <sys/stat.h>

Q_IMPORT_PLUGIN(HeldPicturePlugin)

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::BreadcrumbsModel;
using lindenreed::picture_stand::FolderModel;

namespace {

enum ImageStatus { Null, Ready, Loading, Error }; // as QQuickImageBase numbers them

QStringList names(const RunningExplorer &explorer)
{
    QStringList found;
    for (int row = 0; row < explorer.folders()->rowCount(); ++row)
        found.append(
            explorer.folders()->data(explorer.folders()->index(row), FolderModel::NameRole).toString());
    return found;
}

QStringList crumbs(const RunningExplorer &explorer)
{
    const auto *model = explorer.model<BreadcrumbsModel>("BreadcrumbsModel");
    QStringList found;
    for (int row = 0; row < model->rowCount(); ++row)
        found.append(model->data(model->index(row), BreadcrumbsModel::NameRole).toString());
    return found;
}

/// Taps a folder, a storage or a picture by its name, which has to be in sight.
void tapOn(const RunningExplorer &explorer, const QString &name)
{
    QQuickItem *const item = findAccessible(explorer.list(), QAccessible::Button, name);
    QVERIFY2(item, qPrintable(name));
    explorer.tap(item);
}

/// Whether no thumbnail that the view holds is still to come.
bool thumbnailsHaveCome(const RunningExplorer &explorer)
{
    for (int row = 0; row < explorer.cells(); ++row) {
        const QQuickItem *const image = RunningExplorer::below(explorer.cell(row), "sourceSet")
            ? RunningExplorer::below(explorer.cell(row), "fillMode")
            : nullptr;
        if (image && image->property("status").toInt() == Loading)
            return false;
    }
    return true;
}

/// As the user does it while the application runs.
void plugCard(bool in)
{
    PanelRemote remote;
    QCOMPARE(code(remote.ask(u"card"_s, {{u"in"_s, in}})), u"ok"_s);
    QTRY_COMPARE(MediaFixture::roots().size(), in ? 2 : 1);
}

/// A folder on a card that is in, and that is in again at the end, whatever became of it.
class FolderOnCard
{
public:
    FolderOnCard()
    {
        if (!MediaFixture::look())
            qFatal("the storages are not reported");
    }
    ~FolderOnCard() { MediaFixture::plug(true, false); }
    FolderOnCard(const FolderOnCard &) = delete;
    FolderOnCard &operator=(const FolderOnCard &) = delete;

private:
    static QString onTheCard()
    {
        MediaFixture::plug(true, false);
        return u"/mnt/ext2/trip"_s;
    }

public:
    const FolderTree tree{onTheCard()};
};

} // namespace

class tst_ExplorerOddFolders : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init()
    {
        m_test = std::make_unique<ExplorerFixture>();
        HeldPictures::reset();
    }
    void cleanup()
    {
        HeldPictures::letAllPass();
        m_test.reset();
    }

    void tenThousandFiles();
    void everyByte();
    void awkwardNames_data();
    void awkwardNames();
    void links();
    void circularLink();
    void unreadableFolder();
    void unreadablePicture();
    void cardPulledWhileListed();
    void cardPulledAndAFolderTapped();
    void cardPulledWhileThumbnailsAreMade();
    void cardPulledBelowAPlaylist();

private:
    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerOddFolders::tenThousandFiles()
{
    QStringList files;
    for (int i = 0; i < 10'000; ++i)
        files.append(u"%1.jpg"_s.arg(i, 5, 10, QLatin1Char('0')));
    m_test->tree.make(files);
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QCOMPARE(explorer.cells(), 10'000);
        QCOMPARE(explorer.folders()->countFiles(), 10'000);
        QTRY_VERIFY(explorer.cell(0));
        QVERIFY(!explorer.cell(200)); // cells are made for what is in sight, and a little further
        QVERIFY(QMetaObject::invokeMethod(explorer.list(), "positionViewAtEnd"));
        QTRY_VERIFY(explorer.cell(9'999));
        QVERIFY(!explorer.cell(0));
        tapOn(explorer, u"09995.jpg"_s);
        QTRY_COMPARE(explorer.folders()->getSelected(), QStringList{m_test->path(u"09995.jpg"_s)});
        explorer.folders()->selectAllFiles();
        QCOMPARE(explorer.folders()->countSelected(), 10'000);
    });
}

void tst_ExplorerOddFolders::everyByte()
{
    QStringList expected;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte == '/')
            continue;
        const QByteArray name = "a" + QByteArray(1, char(byte)) + ".png";
        QVERIFY(::mkdir((m_test->tree.top.toUtf8() + "/b" + name).constData(), 0777) == 0);
        FILE *file = std::fopen((m_test->tree.top.toUtf8() + '/' + name).constData(), "w");
        QVERIFY(file && std::fclose(file) == 0);
        if (byte < 0x80) // others are no text by themselves, and not listed
            expected.append(QString::fromLatin1(name));
    }
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QStringList found = names(explorer);
        found.removeIf([](const QString &name) { return !name.startsWith(u'a'); });
        QCOMPARE(found, expected);
        // Once past every cell, each with its delegates and its thumbnail.
        for (int row = 0; row < explorer.cells(); row += 3) {
            QVERIFY(QMetaObject::invokeMethod(explorer.list(), "positionViewAtIndex", Q_ARG(int, row),
                                              Q_ARG(int, 0)));
            QTRY_VERIFY(explorer.cell(row));
        }
        QTRY_VERIFY_WITH_TIMEOUT(thumbnailsHaveCome(explorer), 30'000);
    });
}

void tst_ExplorerOddFolders::awkwardNames_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("line breaks") << u"two\nor\r\nmore lines.png"_s;
    QTest::newRow("quotes") << u"\"it's\" `quoted` \\ .png"_s;
    QTest::newRow("percent") << u"50% 100%.png"_s;
    QTest::newRow("what a URL is made of") << u"image:a?b=c&d#e;f.png"_s;
    QTest::newRow("what a text key is made of") << u"@Delete.png"_s;
    QTest::newRow("what a rich text is made of") << u"<b>bold</b> &amp; <img src='a'>.png"_s.remove(u'/');
    QTest::newRow("other scripts, one from right to left") << u"山 שלום ф 🌄.png"_s;
    QTest::newRow("as long as may be") << QString(251, u'w') + u".png"_s;
}

void tst_ExplorerOddFolders::awkwardNames()
{
    QFETCH(QString, name);

    const QString folder = u"in "_s + name.chopped(4);
    m_test->picture(name);
    QVERIFY(QDir(m_test->tree.top).mkdir(folder));
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(explorer.cells(), 4);
        QCOMPARE(names(explorer), (QStringList{folder, u""_s, u""_s, name}));
        QTRY_VERIFY(RunningExplorer::below(explorer.cell(3), "fillMode")->implicitWidth() > 0);
        tapOn(explorer, name);
        QTRY_COMPARE(explorer.folders()->getSelected(), QStringList{m_test->path(name)});
        tapOn(explorer, folder);
        QTRY_COMPARE(explorer.folders()->rowCount(), 0);
        QCOMPARE(crumbs(explorer).last(), folder);
    });
}

void tst_ExplorerOddFolders::links()
{
    const QString picture = m_test->picture(u"behind/picture.png"_s);
    QVERIFY(QFile::link(picture, m_test->path(u"to a picture.png"_s)));
    QVERIFY(QFile::link(m_test->path(u"behind"_s), m_test->path(u"to a folder"_s)));
    QVERIFY(QFile::link(u"/nowhere"_s, m_test->path(u"dangling.png"_s)));
    QVERIFY(QFile::link(u"self.png"_s, m_test->path(u"self.png"_s)));
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(explorer.cells(), 4);
        QCOMPARE(names(explorer), (QStringList{u"behind"_s, u"to a folder"_s, u""_s, u"to a picture.png"_s}));
        tapOn(explorer, u"to a folder"_s);
        QTRY_COMPARE(names(explorer), QStringList{u"picture.png"_s});
        QCOMPARE(crumbs(explorer), (QStringList{u""_s, u"This device"_s, u"album"_s, u"to a folder"_s}));
    });
}

void tst_ExplorerOddFolders::circularLink()
{
    m_test->picture(u"picture.png"_s);
    QVERIFY(QFile::link(m_test->tree.top, m_test->path(u"again"_s)));
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        for (int depth = 1; depth <= 5; ++depth) {
            QTRY_VERIFY(findAccessible(explorer.list(), QAccessible::Button, u"again"_s));
            tapOn(explorer, u"again"_s);
            QTRY_COMPARE(crumbs(explorer).size(), 3 + depth);
            QCOMPARE(names(explorer), (QStringList{u"again"_s, u""_s, u""_s, u"picture.png"_s}));
        }
    });
}

void tst_ExplorerOddFolders::unreadableFolder()
{
    m_test->picture(u"shut/picture.png"_s);
    const QByteArray shut = m_test->path(u"shut"_s).toUtf8();
    QVERIFY(::chmod(shut.constData(), 0) == 0);
    const ObeyedPermissions obeyed;
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_COMPARE(explorer.cells(), 3);
        tapOn(explorer, u"shut"_s);
        QTRY_COMPARE(crumbs(explorer).last(), u"shut"_s);
        QCOMPARE(explorer.folders()->rowCount(), 0);
        QCOMPARE(explorer.folders()->countFiles(), 0);
        explorer.model<BreadcrumbsModel>("BreadcrumbsModel")->changeFolderByIndex(2);
        QTRY_COMPARE(names(explorer), (QStringList{u"shut"_s, u""_s, u""_s}));
    });
    ::chmod(shut.constData(), 0777);
}

void tst_ExplorerOddFolders::unreadablePicture()
{
    const QByteArray picture = m_test->picture(u"picture.png"_s).toUtf8();
    QVERIFY(::chmod(picture.constData(), 0) == 0);
    const ObeyedPermissions obeyed; // the threads that are begun from now on obey as well
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_VERIFY(explorer.cell(0));
        QTRY_COMPARE(RunningExplorer::below(explorer.cell(0), "fillMode")->property("status").toInt(),
                     int(Ready));
        QVERIFY(RunningExplorer::below(explorer.cell(0), "bandColor")->isVisible()); // its name, all the same
    });
}

void tst_ExplorerOddFolders::cardPulledWhileListed()
{
    const FolderOnCard card;
    const FolderTree &trip = card.tree;
    trip.make({u"day/"_s, u"a.png"_s, u"b.png"_s});
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(trip.top);
        QTRY_COMPARE(explorer.cells(), 5);
        plugCard(false);
        QCOMPARE(names(explorer).last(), u"b.png"_s); // until the user moves
        tapOn(explorer, u"b.png"_s);
        QTRY_COMPARE(explorer.folders()->countSelected(), 1);
        QCOMPARE(crumbs(explorer), (QStringList{u""_s, u"SD card"_s, u"trip"_s}));
        explorer.model<BreadcrumbsModel>("BreadcrumbsModel")->changeFolderByIndex(0);
        QTRY_COMPARE(names(explorer), QStringList{u"This device"_s});
    });
}

void tst_ExplorerOddFolders::cardPulledAndAFolderTapped()
{
    const FolderOnCard card;
    const FolderTree &trip = card.tree;
    trip.make({u"day/"_s});
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(trip.top);
        QTRY_COMPARE(explorer.cells(), 3);
        plugCard(false);
        tapOn(explorer, u"day"_s);
        QTRY_COMPARE(names(explorer), QStringList{u"This device"_s});
        QCOMPARE(crumbs(explorer), QStringList{u""_s});
        QTRY_VERIFY(explorer.cell(0));
        explorer.tap(explorer.cell(0));
        QTRY_VERIFY(names(explorer).contains(u"album"_s));
    });
}

void tst_ExplorerOddFolders::cardPulledWhileThumbnailsAreMade()
{
    const FolderOnCard card;
    const FolderTree &trip = card.tree;
    QImage large(1000, 750, QImage::Format_Grayscale8);
    large.fill(0x55);
    for (int i = 0; i < 24; ++i)
        QVERIFY(large.save(trip.path(u"%1.png"_s.arg(i, 2, 10, QLatin1Char('0')))));
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(trip.top);
        QTRY_COMPARE(explorer.cells(), 24);
        const auto width = [&](int row) {
            return RunningExplorer::below(explorer.cell(row), "fillMode")->implicitWidth();
        };
        QTRY_VERIFY(width(0) > 0);
        plugCard(false);
        QTRY_VERIFY_WITH_TIMEOUT(thumbnailsHaveCome(explorer), 30'000);
        QCOMPARE(explorer.cells(), 24);
        QVERIFY(width(0) > 0);
        for (int row = 0; row < 12; ++row) {
            // Each has its picture, or its name alone.
            const QQuickItem *const sign = RunningExplorer::below(explorer.cell(row), "bandColor");
            QCOMPARE(sign->isVisible(), width(row) == 0);
        }
    });
}

void tst_ExplorerOddFolders::cardPulledBelowAPlaylist()
{
    const FolderOnCard card;
    const FolderTree &trip = card.tree;
    QStringList paths{m_test->picture(u"here.png"_s)};
    for (int i = 0; i < 6; ++i)
        paths.append(writeHeldPicture(trip.top, QString::number(i)));
    for (const auto view : {FolderModel::GridViewMode, FolderModel::ListViewMode}) {
        HeldPictures::reset();
        explore([&](RunningExplorer &explorer) {
            explorer.openPlaylist(paths, FolderModel::NormalMode, view);
            QVERIFY(QTest::qWaitFor([] { return HeldPictures::begun().size() >= 2; }));
            QTRY_VERIFY(explorer.cell(6)); // Qt has a warning of its own for one that is still on its way
            plugCard(false); // two are being decoded, the others wait
            QTRY_COMPARE(names(explorer), QStringList{u"here.png"_s});
            HeldPictures::letAllPass();
            QTRY_VERIFY(explorer.cell(0));
            QTRY_COMPARE(RunningExplorer::below(explorer.cell(0), "fillMode")->property("status").toInt(),
                         int(Ready));
            plugCard(true);
            QTRY_COMPARE(explorer.cells(), 7);
        });
    }
}

PANEL_TEST_MAIN(tst_ExplorerOddFolders)
#include "tst_explorer_odd_folders.moc"
