// The way from the top over a storage down to a folder.

#include "media_fixture.h"

#include <QDir>
#include <QFile>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::Storage;

class tst_StoragePath : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void beforeTheFirstReport(); // first: there is one storage object in a process
    void ways_data();
    void ways();
    void storagesThatAreKnown();
    void storageThatHasGone();

private:
    std::unique_ptr<MediaFixture> m_media;
};

void tst_StoragePath::init()
{
    m_media = std::make_unique<MediaFixture>();
    for (const char *folder : {"a/b/c", "2023.01/June", "a/x.jpg", ".hidden", "mnt/ext2"})
        QVERIFY(QDir().mkpath(u"/mnt/ext1/tree/"_s + QString::fromLatin1(folder)));
    QFile file(u"/mnt/ext1/tree/file"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(u"/mnt/ext1/tree/a"_s, u"/mnt/ext1/tree/link"_s));
}

void tst_StoragePath::cleanup()
{
    QVERIFY(QDir(u"/mnt/ext1/tree"_s).removeRecursively());
    m_media.reset();
}

void tst_StoragePath::beforeTheFirstReport()
{
    QCOMPARE(MediaFixture::lines(Storage::instance().pathItems(u"/mnt/ext1/tree"_s)), QStringList{u"  0"_s});
}

void tst_StoragePath::ways_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("expected"); // behind the first

    const QString root = u"This device /mnt/ext1 1"_s;
    const QString tree = u"tree /mnt/ext1/tree 4"_s;
    const QString a = u"a /mnt/ext1/tree/a 4"_s;
    QTest::newRow("no path") << QString() << QStringList();
    QTest::newRow("a folder that is not there") << u"/mnt/ext1/nothing"_s << QStringList();
    QTest::newRow("a file") << u"/mnt/ext1/tree/file"_s << QStringList();
    QTest::newRow("on none of the storages") << u"/usr"_s << QStringList();
    QTest::newRow("above the storages") << u"/mnt"_s << QStringList();
    QTest::newRow("the storage") << u"/mnt/ext1"_s << QStringList{root};
    QTest::newRow("the storage with a slash") << u"/mnt/ext1/"_s << QStringList{root};
    QTest::newRow("one level") << u"/mnt/ext1/tree"_s << QStringList{root, tree};
    QTest::newRow("two levels") << u"/mnt/ext1/tree/a"_s << QStringList{root, tree, a};
    QTest::newRow("four levels") << u"/mnt/ext1/tree/a/b/c"_s
                                 << QStringList{root, tree, a, u"b /mnt/ext1/tree/a/b 4"_s,
                                                u"c /mnt/ext1/tree/a/b/c 4"_s};
    QTest::newRow("a dot on the way") << u"/mnt/ext1/tree/2023.01/June"_s << QStringList{root};
    QTest::newRow("a dot at the end") << u"/mnt/ext1/tree/2023.01"_s << QStringList{root};
    QTest::newRow("a hidden folder") << u"/mnt/ext1/tree/.hidden"_s << QStringList{root};
    QTest::newRow("through a link") << u"/mnt/ext1/tree/link"_s
                                    << QStringList{root, tree, u"link /mnt/ext1/tree/link 4"_s};
}

void tst_StoragePath::ways()
{
    QFETCH(QString, path);
    QFETCH(QStringList, expected);

    QVERIFY(MediaFixture::settled());
    QCOMPARE(MediaFixture::lines(Storage::instance().pathItems(path)), QStringList{u"  0"_s} + expected);
}

void tst_StoragePath::storagesThatAreKnown()
{
    QVERIFY(MediaFixture::settled());
    MediaFixture::plug(true, false);
    QVERIFY(QDir().mkpath(u"/mnt/ext2/holiday"_s));
    QVERIFY(MediaFixture::look());
    QCOMPARE(MediaFixture::lines(Storage::instance().pathItems(u"/mnt/ext2/holiday"_s)),
             QStringList({u"  0"_s, u"SD card /mnt/ext2 2"_s, u"holiday /mnt/ext2/holiday 4"_s}));
    // A storage's path in the middle of another one's counts; there is no way down from it.
    QCOMPARE(MediaFixture::lines(Storage::instance().pathItems(u"/mnt/ext1/tree/mnt/ext2"_s)),
             QStringList({u"  0"_s, u"This device /mnt/ext1 1"_s, u"tree /mnt/ext1/tree 4"_s,
                          u"mnt /mnt/ext1/tree/mnt 4"_s, u"ext2 /mnt/ext1/tree/mnt/ext2 4"_s,
                          u"SD card /mnt/ext2 2"_s}));
    QVERIFY(QDir(u"/mnt/ext2/holiday"_s).removeRecursively());
}

void tst_StoragePath::storageThatHasGone()
{
    QVERIFY(MediaFixture::settled());
    m_media->device.setMounted(true, false); // so it is said, but nothing is there
    QVERIFY(MediaFixture::look());
    // What has no path is part of each path.
    QCOMPARE(MediaFixture::lines(Storage::instance().pathItems(u"/mnt/ext1/tree"_s)),
             QStringList({u"  0"_s, u"This device /mnt/ext1 1"_s, u"tree /mnt/ext1/tree 4"_s,
                          u"SD card /mnt/ext2 2"_s}));
    m_media->device.setMounted(false, false);
    QVERIFY(MediaFixture::look());
}

QTEST_GUILESS_MAIN(tst_StoragePath)
#include "tst_storage_path.moc"
