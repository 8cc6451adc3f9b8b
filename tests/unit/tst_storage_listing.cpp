// What lies in a folder, as the interface lists it.

#include "folder_tree.h"
#include "media_fixture.h"
#include "obeyed_permissions.h"

#include <QDir>
#include <QFile>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::Storage;
using lindenreed::picture_stand::StorageItem;

namespace {

const QString top = u"/mnt/ext1/listed"_s;
const QStringList pictures{u"*.jpg"_s,  u"*.png"_s, u"*.bmp"_s, u"*.jpeg"_s,
                           u"*.tiff"_s, u"*.tif"_s, u"*.svg"_s};

QStringList names(const QList<StorageItem> &items)
{
    QStringList found;
    for (const StorageItem &item : items)
        found.append(item.name);
    return found;
}

} // namespace

class tst_StorageListing : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void foldersThenPictures();
    void fillers_data();
    void fillers();
    void order();
    void hiddenEntries();
    void filters_data();
    void filters();
    void folderThatLooksLikeAPicture();
    void notRecursive();
    void manyEntries();
    void emptyFolder();
    void toldBeforeItReturns();
    void otherWaysToNameAFolder_data();
    void otherWaysToNameAFolder();
    void storagesInstead_data();
    void storagesInstead();
    void unreadableFolder();
    void asksTheDeviceNothing();

private:
    QList<StorageItem> list(const QStringList &wanted = pictures, int columns = 3)
    {
        return Storage::instance().listFiles(top, wanted, columns);
    }

    void make(const QStringList &entries) const { m_tree->make(entries); }

    std::unique_ptr<MediaFixture> m_media;
    std::unique_ptr<FolderTree> m_tree;
};

void tst_StorageListing::initTestCase()
{
    const MediaFixture media;
    QVERIFY(MediaFixture::settled());
}

void tst_StorageListing::init()
{
    m_media = std::make_unique<MediaFixture>();
    m_tree = std::make_unique<FolderTree>(top);
}

void tst_StorageListing::cleanup()
{
    m_tree.reset();
    m_media.reset();
}

void tst_StorageListing::foldersThenPictures()
{
    make({u"b/"_s, u"a/"_s, u"2.png"_s, u"1.jpg"_s, u"notes.txt"_s});
    const QList<StorageItem> items = list();
    QCOMPARE(MediaFixture::lines(items),
             QStringList({u"a /mnt/ext1/listed/a 4"_s, u"b /mnt/ext1/listed/b 4"_s, u"  6"_s,
                          u"1.jpg /mnt/ext1/listed/1.jpg 5"_s, u"2.png /mnt/ext1/listed/2.png 5"_s}));
    for (const StorageItem &item : items)
        QVERIFY(item.totalSpace().isEmpty() && item.freeSpace().isEmpty());
}

void tst_StorageListing::fillers_data()
{
    QTest::addColumn<int>("folders");
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("fillers");

    QTest::newRow("no folder") << 0 << 3 << 0;
    QTest::newRow("one") << 1 << 3 << 2;
    QTest::newRow("two") << 2 << 3 << 1;
    QTest::newRow("a whole row") << 3 << 3 << 0;
    QTest::newRow("four") << 4 << 3 << 2;
    QTest::newRow("five") << 5 << 3 << 1;
    QTest::newRow("two whole rows") << 6 << 3 << 0;
    QTest::newRow("no columns") << 5 << 0 << 0;
    QTest::newRow("one column") << 5 << 1 << 0;
    QTest::newRow("four columns") << 5 << 4 << 3;
}

void tst_StorageListing::fillers()
{
    QFETCH(int, folders);
    QFETCH(int, columns);
    QFETCH(int, fillers);

    for (int i = 0; i < folders; ++i)
        make({QString::number(i) + u'/'});
    make({u"picture.jpg"_s});
    const QList<StorageItem> items = list(pictures, columns);
    QCOMPARE(items.size(), folders + fillers + 1);
    for (int i = 0; i < items.size() - 1; ++i) {
        QCOMPARE(items.at(i).type, i < folders ? 4 : 6);
        QVERIFY(i < folders || (items.at(i).name.isEmpty() && items.at(i).path.isEmpty()));
    }
    QCOMPARE(items.constLast().type, 5); // begins a row of its own
}

void tst_StorageListing::order()
{
    make({u"a/"_s, u"B/"_s, u"C/"_s, u"10/"_s, u"9/"_s, u"ä/"_s});
    make({u"b.jpg"_s, u"A.jpg"_s, u"c.jpg"_s, u"B.jpg"_s});
    QCOMPARE(names(list()),
             QStringList({u"10"_s, u"9"_s, u"B"_s, u"C"_s, u"a"_s, u"ä"_s, u"A.jpg"_s, u"B.jpg"_s, u"b.jpg"_s,
                          u"c.jpg"_s}));
}

void tst_StorageListing::hiddenEntries()
{
    make({u".hidden/"_s, u".hidden.jpg"_s, u"seen/"_s, u"seen.jpg"_s});
    QCOMPARE(names(list(pictures, 1)), QStringList({u"seen"_s, u"seen.jpg"_s}));
}

void tst_StorageListing::filters_data()
{
    QTest::addColumn<QStringList>("wanted");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("pictures, in any letter case")
        << pictures
        << QStringList{u"A.JPG"_s, u"b.Jpeg"_s, u"c.tif"_s, u"d.TIFF"_s, u"e.svg"_s, u"f.bmp"_s, u"g.png"_s};
    QTest::newRow("one kind") << QStringList{u"*.JPG"_s} << QStringList{u"A.JPG"_s};
    QTest::newRow("nothing") << QStringList{u"*.gif"_s} << QStringList();
}

void tst_StorageListing::filters()
{
    QFETCH(QStringList, wanted);
    QFETCH(QStringList, expected);

    make({u"A.JPG"_s, u"b.Jpeg"_s, u"c.tif"_s, u"d.TIFF"_s, u"e.svg"_s, u"f.bmp"_s, u"g.png"_s,
          u"h.jpg.txt"_s, u"jpg"_s, u"i.jpgx"_s});
    const QSignalSpy told(&Storage::instance(), &Storage::listFilesChanged);
    QCOMPARE(names(list(wanted)), expected);
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.constFirst().constFirst().toStringList(), expected); // bare names
}

void tst_StorageListing::folderThatLooksLikeAPicture()
{
    make({u"x.jpg/"_s, u"y.jpg"_s});
    const QSignalSpy told(&Storage::instance(), &Storage::listFilesChanged);
    QCOMPARE(MediaFixture::lines(list(pictures, 1)),
             QStringList({u"x.jpg /mnt/ext1/listed/x.jpg 4"_s, u"x.jpg /mnt/ext1/listed/x.jpg 5"_s,
                          u"y.jpg /mnt/ext1/listed/y.jpg 5"_s}));
    QCOMPARE(told.constFirst().constFirst().toStringList(), QStringList({u"x.jpg"_s, u"y.jpg"_s}));
}

void tst_StorageListing::notRecursive()
{
    make({u"a/b/"_s, u"a/inside.jpg"_s});
    QCOMPARE(names(list(pictures, 1)), QStringList{u"a"_s});
}

void tst_StorageListing::manyEntries()
{
    for (int i = 0; i < 200; ++i)
        make({u"%1/"_s.arg(i, 4, 10, QChar(u'0')), u"%1.jpg"_s.arg(i, 4, 10, QChar(u'0'))});
    const QStringList found = names(list(pictures, 1));
    QCOMPARE(found.size(), 400);
    QCOMPARE(found.at(199), u"0199"_s);
    QCOMPARE(found.constLast(), u"0199.jpg"_s);
}

void tst_StorageListing::emptyFolder()
{
    const QSignalSpy told(&Storage::instance(), &Storage::listFilesChanged);
    QVERIFY(list().isEmpty());
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.constFirst().constFirst().toStringList(), QStringList());
}

void tst_StorageListing::toldBeforeItReturns()
{
    make({u"1.jpg"_s});
    QStringList order;
    const auto connection = connect(&Storage::instance(), &Storage::listFilesChanged, this,
                                    [&order](const QStringList &files) { order += files; });
    order += names(list()) + QStringList{u"returned"_s};
    disconnect(connection);
    QCOMPARE(order, QStringList({u"1.jpg"_s, u"1.jpg"_s, u"returned"_s}));
}

void tst_StorageListing::otherWaysToNameAFolder_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("absolute");

    QTest::newRow("with a slash at the end") << top + u'/' << top + u"/1.jpg"_s;
    QTest::newRow("relative") << u"listed"_s << top + u"/1.jpg"_s;
    QTest::newRow("with a way around") << u"/mnt/ext1/../ext1/listed"_s << top + u"/1.jpg"_s;
    QTest::newRow("through a link") << u"/mnt/ext1/link"_s << u"/mnt/ext1/link/1.jpg"_s;
}

void tst_StorageListing::otherWaysToNameAFolder()
{
    QFETCH(QString, path);
    QFETCH(QString, absolute);

    make({u"1.jpg"_s});
    QVERIFY(QFile::link(top, u"/mnt/ext1/link"_s));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(u"/mnt/ext1"_s));
    const QList<StorageItem> items = Storage::instance().listFiles(path, pictures, 3);
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(QFile::remove(u"/mnt/ext1/link"_s));
    QCOMPARE(MediaFixture::lines(items), QStringList{u"1.jpg %1 5"_s.arg(absolute)});
}

void tst_StorageListing::storagesInstead_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("no path") << QString();
    QTest::newRow("a folder that is not there") << top + u"/nothing"_s;
    QTest::newRow("a file") << top + u"/1.jpg"_s;
    QTest::newRow("a card that is out") << u"/mnt/ext2"_s;
}

void tst_StorageListing::storagesInstead()
{
    QFETCH(QString, path);

    make({u"1.jpg"_s});
    MediaFixture::plug(false, true);
    QVERIFY(MediaFixture::look());
    const QSignalSpy told(&Storage::instance(), &Storage::listFilesChanged);
    const QList<StorageItem> items = Storage::instance().listFiles(path, pictures, 3);
    QCOMPARE(MediaFixture::lines(items),
             QStringList({u"This device /mnt/ext1 1"_s, u"USB drive /mnt/ext3 3"_s}));
    QVERIFY(told.isEmpty());
}

void tst_StorageListing::unreadableFolder()
{
    make({u"a/"_s, u"1.jpg"_s});
    const ObeyedPermissions asOrdinaryUser;
    QVERIFY(QFile::setPermissions(top, QFile::ExeOwner));
    const QSignalSpy told(&Storage::instance(), &Storage::listFilesChanged);
    const QList<StorageItem> items = list();
    QVERIFY(QFile::setPermissions(top, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(items.isEmpty());
    QCOMPARE(told.count(), 1);
    QCOMPARE(told.constFirst().constFirst().toStringList(), QStringList());
}

void tst_StorageListing::asksTheDeviceNothing()
{
    make({u"a/"_s, u"1.jpg"_s});
    QVERIFY(MediaFixture::look());
    m_media->device.forgetCalls();
    QCOMPARE(list().size(), 4);
    QCOMPARE(MediaFixture::roots().size(), 1); // as measured before
    QVERIFY(lindenreed::device::journal::entries().isEmpty());
}

QTEST_GUILESS_MAIN(tst_StorageListing)
#include "tst_storage_listing.moc"
