// The rows of the browser: storages, folders, what is told when they change, how many pictures can be picked.

#include "folder_fixture.h"
#include "obeyed_permissions.h"

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;
using lindenreed::picture_stand::Storage;

class tst_FolderModel : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { m_test = std::make_unique<FolderFixture>(); }
    void cleanup() { m_test.reset(); }

    void storages_data();
    void storages();
    void foldersThenPictures();
    void everyKindOfPicture();
    void folderThatLooksLikeAPicture();
    void whatIsToldInOrder();
    void thumbnailsAreToldBareNames();
    void countLeavesOutTheIgnored();
    void countStaysUntilTheRowsChange();
    void countReadsTheFolderItself();
    void countOfTheStorages();
    void noFolder_data();
    void noFolder();
    void folderThatComesLater();
    void unreadableFolder();
    void storagesFollowTheMedia();
    void rowsOfAPulledCardStay();
    void restoreComesBack();
    void theDeviceIsNotAsked();

private:
    std::unique_ptr<FolderFixture> m_test;
};

void tst_FolderModel::initTestCase()
{
    const MediaFixture media;
    QVERIFY(MediaFixture::settled());
}

void tst_FolderModel::storages_data()
{
    MediaFixture::addStorages();
}

void tst_FolderModel::storages()
{
    QFETCH(bool, card);
    QFETCH(bool, usb);
    QFETCH(QStringList, expected);

    MediaFixture::plug(card, usb);
    QVERIFY(MediaFixture::look());
    m_test->model.changeFolder({});
    QCOMPARE(m_test->rows(), expected);
}

void tst_FolderModel::foldersThenPictures()
{
    m_test->tree.make({u"d/"_s, u"a/"_s, u"c/"_s, u"b/"_s, u"2.jpg"_s, u"1.png"_s, u"notes.txt"_s,
                       u".hidden.jpg"_s, u"a/inside.jpg"_s});
    m_test->model.changeFolder(m_test->tree.top);
    QCOMPARE(m_test->rows(),
             QStringList({u"a /mnt/ext1/album/a 4"_s, u"b /mnt/ext1/album/b 4"_s, u"c /mnt/ext1/album/c 4"_s,
                          u"d /mnt/ext1/album/d 4"_s, u"  6"_s, u"  6"_s, u"1.png /mnt/ext1/album/1.png 5"_s,
                          u"2.jpg /mnt/ext1/album/2.jpg 5"_s}));
    QCOMPARE(m_test->model.countFiles(), 2);
}

void tst_FolderModel::everyKindOfPicture()
{
    const QStringList pictures{u"A.JPG"_s,  u"B.Png"_s, u"c.bmp"_s, u"d.JPEG"_s,
                               u"e.tiff"_s, u"f.TIF"_s, u"g.svg"_s, u"h.b.jpg"_s};
    m_test->tree.make(pictures);
    m_test->tree.make({u"i.gif"_s, u"jpg"_s, u"k.jpgx"_s, u"l.jpg.txt"_s});
    m_test->model.changeFolder(m_test->tree.top);
    QCOMPARE(m_test->names(), pictures);
    QCOMPARE(m_test->model.countFiles(), 8);
}

void tst_FolderModel::folderThatLooksLikeAPicture()
{
    m_test->tree.make({u"x.jpg/"_s, u"y.jpg"_s});
    m_test->model.changeFolder(m_test->tree.top);
    QCOMPARE(m_test->rows(),
             QStringList({u"x.jpg /mnt/ext1/album/x.jpg 4"_s, u"  6"_s, u"  6"_s,
                          u"x.jpg /mnt/ext1/album/x.jpg 5"_s, u"y.jpg /mnt/ext1/album/y.jpg 5"_s}));
    QCOMPARE(m_test->model.countFiles(), 2); // counted, too
}

void tst_FolderModel::whatIsToldInOrder()
{
    m_test->tree.make({u"1.jpg"_s, u"empty/"_s});
    m_test->model.changeFolder(m_test->tree.top);
    QCOMPARE(m_test->told.taken(),
             QStringList({u"about"_s, u"reset 4"_s, u"folder /mnt/ext1/album"_s, u"files 1"_s}));
    // The same again: told again. The path is told as it was given.
    m_test->model.changeFolder(m_test->tree.top + u'/');
    QCOMPARE(m_test->told.taken(),
             QStringList({u"about"_s, u"reset 4"_s, u"folder /mnt/ext1/album/"_s, u"files 1"_s}));
    int countThen = -1;
    connect(&m_test->model, &FolderModel::changedFolder, this,
            [&] { countThen = m_test->model.countFiles(); });
    m_test->model.changeFolder(m_test->path(u"empty"_s));
    QCOMPARE(m_test->told.taken(),
             QStringList({u"about"_s, u"reset 0"_s, u"folder /mnt/ext1/album/empty"_s, u"files 0"_s}));
    QCOMPARE(countThen, 1); // not yet counted
}

void tst_FolderModel::thumbnailsAreToldBareNames()
{
    m_test->tree.make({u"folder/"_s, u"2.jpg"_s, u"1.jpg"_s});
    QStringList order;
    const QObject context;
    connect(&Storage::instance(), &Storage::listFilesChanged, &context,
            [&](const QStringList &names) { order += m_test->told.taken() + names; });
    m_test->model.changeFolder(m_test->tree.top);
    order += m_test->told.taken();
    QCOMPARE(order,
             QStringList({u"about"_s, u"1.jpg"_s, u"2.jpg"_s, u"reset 5"_s, u"folder /mnt/ext1/album"_s,
                          u"files 2"_s}));
    order.clear();
    m_test->model.changeFolder({}); // the storages have no thumbnails
    QVERIFY(order.isEmpty());
}

void tst_FolderModel::countLeavesOutTheIgnored()
{
    m_test->tree.make({u"a.jpg"_s, u"b.jpg"_s, u"c.jpg"_s, u"d.jpg"_s});
    m_test->model.setListIgnoreSelection({m_test->path(u"a.jpg"_s), m_test->path(u"A.jpg"_s),
                                          m_test->path(u"B.JPG"_s), u"c.jpg"_s, u"/mnt/ext1/d.jpg"_s});
    m_test->model.changeFolder(m_test->tree.top);
    QCOMPARE(m_test->model.countFiles(), 3); // whole paths, letter for letter
    m_test->model.restore();
    QCOMPARE(m_test->model.countFiles(), 3); // they are kept
    QCOMPARE(m_test->names(), QStringList({u"a.jpg"_s, u"b.jpg"_s, u"c.jpg"_s, u"d.jpg"_s}));
}

void tst_FolderModel::countStaysUntilTheRowsChange()
{
    m_test->tree.make({u"a.jpg"_s, u"b.jpg"_s});
    m_test->model.changeFolder(m_test->tree.top);
    m_test->told.taken();

    m_test->model.setListIgnoreSelection({m_test->path(u"a.jpg"_s)});
    QCOMPARE(m_test->model.countFiles(), 2);
    m_test->model.restore();
    QCOMPARE(m_test->model.countFiles(), 1);
    m_test->model.setListIgnoreSelection({u"/elsewhere.jpg"_s}); // replaces
    m_test->model.restore();
    QCOMPARE(m_test->model.countFiles(), 2);
    m_test->model.setListIgnoreSelection({m_test->path(u"a.jpg"_s), m_test->path(u"b.jpg"_s)});
    m_test->model.restore();
    QCOMPARE(m_test->model.countFiles(), 0);
    m_test->told.taken();
    m_test->model.clearListIgnoreSelection();
    QCOMPARE(m_test->model.countFiles(), 0);
    QCOMPARE(m_test->told.taken(), QStringList());
    m_test->model.changeFolder(m_test->tree.top);
    QCOMPARE(m_test->model.countFiles(), 2);
}

void tst_FolderModel::countReadsTheFolderItself()
{
    m_test->tree.make({u"a.jpg"_s});
    const QObject context;
    connect(&m_test->model, &FolderModel::changedFolder, &context,
            [this] { m_test->tree.make({u"b.jpg"_s}); });
    m_test->model.changeFolder(m_test->tree.top);
    QCOMPARE(m_test->names(), QStringList{u"a.jpg"_s});
    QCOMPARE(m_test->model.countFiles(), 2); // with the one that came in between
}

void tst_FolderModel::countOfTheStorages()
{
    m_test->tree.make({u"a.jpg"_s, u"b.jpg"_s, u"folder/"_s, u"elsewhere/"_s});
    {
        const auto working = workIn(m_test->tree.top);
        m_test->model.changeFolder({});
        QCOMPARE(m_test->rows(), QStringList{u"This device /mnt/ext1 1"_s});
        QCOMPARE(m_test->model.countFiles(), 2); // of the working directory
        m_test->model.setListIgnoreSelection({m_test->path(u"a.jpg"_s)});
        m_test->model.restore();
        QCOMPARE(m_test->model.countFiles(), 1);
    }
    const auto working = workIn(m_test->path(u"elsewhere"_s));
    m_test->model.restore();
    QCOMPARE(m_test->model.countFiles(), 0);
}

void tst_FolderModel::noFolder_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("not there") << u"/mnt/ext1/album/nothing"_s;
    QTest::newRow("a file") << u"/mnt/ext1/album/a.jpg"_s;
    QTest::newRow("a card that is out") << u"/mnt/ext2"_s;
    QTest::newRow("a link to nothing") << u"/mnt/ext1/album/link"_s;
}

void tst_FolderModel::noFolder()
{
    QFETCH(QString, path);

    m_test->tree.make({u"a.jpg"_s});
    QVERIFY(QFile::link(u"/nowhere"_s, m_test->path(u"link"_s)));
    m_test->model.changeFolder(m_test->tree.top);
    QCOMPARE(m_test->model.countFiles(), 1);
    m_test->told.taken();

    m_test->model.changeFolder(path);
    QCOMPARE(m_test->rows(), QStringList{u"This device /mnt/ext1 1"_s});
    QCOMPARE(m_test->told.taken(),
             QStringList({u"about"_s, u"reset 1"_s, u"folder %1"_s.arg(path), u"files 0"_s}));
    // It looks like the storages, but it is a folder: it stays as it is.
    MediaFixture::plug(false, true);
    QVERIFY(MediaFixture::look());
    m_test->model.storageChanged();
    QCOMPARE(m_test->told.taken(), QStringList());
    m_test->model.restore();
    QCOMPARE(m_test->told.taken(),
             QStringList({u"about"_s, u"reset 2"_s, u"folder %1"_s.arg(path), u"files 0"_s}));
}

void tst_FolderModel::folderThatComesLater()
{
    m_test->model.changeFolder(m_test->path(u"later"_s));
    QCOMPARE(m_test->rows(), QStringList{u"This device /mnt/ext1 1"_s});
    m_test->tree.make({u"later/a.jpg"_s});
    m_test->model.restore();
    QCOMPARE(m_test->names(), QStringList{u"a.jpg"_s});
    QCOMPARE(m_test->model.countFiles(), 1);
}

void tst_FolderModel::unreadableFolder()
{
    m_test->tree.make({u"a.jpg"_s, u"folder/"_s});
    const ObeyedPermissions asOrdinaryUser;
    QVERIFY(QFile::setPermissions(m_test->tree.top, QFile::ExeOwner));
    m_test->model.changeFolder(m_test->tree.top);
    QVERIFY(QFile::setPermissions(m_test->tree.top, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QCOMPARE(m_test->told.taken(),
             QStringList({u"about"_s, u"reset 0"_s, u"folder /mnt/ext1/album"_s, u"files 0"_s}));
}

void tst_FolderModel::storagesFollowTheMedia()
{
    m_test->followStorages();
    m_test->model.changeFolder({});
    m_test->told.taken();
    MediaFixture::plug(true, false);
    QVERIFY(MediaFixture::look());
    QCOMPARE(m_test->rows(), QStringList({u"This device /mnt/ext1 1"_s, u"SD card /mnt/ext2 2"_s}));
    QStringList told = m_test->told.taken();
    QVERIFY(told.takeLast().startsWith(u"files "));
    QCOMPARE(told, QStringList({u"about"_s, u"reset 2"_s, u"folder "_s}));
    MediaFixture::plug(false, false);
    QVERIFY(MediaFixture::look());
    QCOMPARE(m_test->rows(), QStringList{u"This device /mnt/ext1 1"_s});
}

void tst_FolderModel::rowsOfAPulledCardStay()
{
    m_test->followStorages();
    MediaFixture::plug(true, false);
    QVERIFY(MediaFixture::look());
    const QStringList rows{u"a.jpg /mnt/ext2/trip/a.jpg 5"_s};
    {
        const FolderTree trip(u"/mnt/ext2/trip"_s);
        trip.make({u"a.jpg"_s});
        m_test->model.changeFolder(trip.top);
        QCOMPARE(m_test->rows(), rows);
        m_test->told.taken();

        MediaFixture::plug(false, false);
        QVERIFY(MediaFixture::look());
        QCOMPARE(m_test->told.taken(), QStringList());
        QCOMPARE(m_test->rows(), rows);
        QCOMPARE(m_test->model.countFiles(), 1);
        m_test->model.restore(); // the user moves
        QCOMPARE(m_test->rows(), QStringList{u"This device /mnt/ext1 1"_s});
        MediaFixture::plug(true, false);
        QVERIFY(MediaFixture::look());
        m_test->model.restore();
        QCOMPARE(m_test->rows(), rows);
    }
}

void tst_FolderModel::restoreComesBack()
{
    m_test->tree.make({u"a.jpg"_s, u"folder/b.jpg"_s});
    m_test->model.changeFolder(m_test->path(u"folder"_s));
    m_test->model.loadFromList({m_test->path(u"a.jpg"_s)});
    QCOMPARE(m_test->names(), QStringList{u"a.jpg"_s});
    m_test->told.taken();
    m_test->model.restore();
    QCOMPARE(m_test->names(), QStringList{u"b.jpg"_s});
    QCOMPARE(m_test->told.taken(),
             QStringList({u"about"_s, u"reset 1"_s, u"folder /mnt/ext1/album/folder"_s, u"files 1"_s}));
    m_test->model.storageChanged(); // the list is forgotten
    QCOMPARE(m_test->told.taken(), QStringList());
}

void tst_FolderModel::theDeviceIsNotAsked()
{
    m_test->tree.make({u"folder/"_s, u"a.jpg"_s});
    m_test->media.device.forgetCalls();
    m_test->model.changeFolder(m_test->tree.top);
    m_test->model.changeFolder({});
    QCOMPARE(m_test->names(), QStringList{u"This device"_s}); // measured and named before
    m_test->model.loadFromList({m_test->path(u"a.jpg"_s)});
    QCOMPARE(m_test->names(), QStringList{u"a.jpg"_s});
    QVERIFY(lindenreed::device::journal::entries().isEmpty());
}

QTEST_GUILESS_MAIN(tst_FolderModel)
#include "tst_folder_model.moc"
