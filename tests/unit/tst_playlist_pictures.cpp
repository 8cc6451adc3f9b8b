// The pictures of playlists: added, deleted, counted, opened; files that have gone.

#include "playlist_fixture.h"

#include <device.h>

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

void make(const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

} // namespace

class tst_PlaylistPictures : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<PlaylistFixture>(); }
    void cleanup() { m_test.reset(); }

    void addingPicturesReadsThePlaylistsEachTime();
    void addingPicturesGoesToTheActivePlaylist();
    void deletingPicturesGoesByTheirOrder();
    void deletingOnePicture();
    void getImageSkipsVanishedFiles();
    void getImageWithoutAPicture_data();
    void getImageWithoutAPicture();
    void getImageComparesTheWholeId();
    void countsWithVanishedFiles();
    void foldersAndLinksCountAsTheyExist();
    void lookUpsByUnknownIds();
    void hasImageIsExact();
    void openImageHandsTheBytesOver_data();
    void openImageHandsTheBytesOver();

private:
    std::unique_ptr<PlaylistFixture> m_test;
};

void tst_PlaylistPictures::addingPicturesReadsThePlaylistsEachTime()
{
    m_test->model->setActiveId(m_test->model->addItem(u"Lake"_s));
    PlaylistSignals log(m_test->model.get());
    m_test->model->addImagesToPlaylist({u"/b.jpg"_s, u"/a.jpg"_s, u"/b.jpg"_s});
    const QStringList once{u"about"_s, u"reset 1"_s, u"count 1"_s};
    QCOMPARE(log.taken(), once + once); // the third was there already
    m_test->model->addImagesToPlaylist({});
    QCOMPARE(log.taken(), QStringList());
    QCOMPARE(stored_database::rows(u"SELECT url FROM playlist_images ORDER BY id"_s),
             QStringList({u"/b.jpg"_s, u"/a.jpg"_s}));
    QCOMPARE(m_test->model->getImagesById(m_test->model->activeId()),
             QStringList({u"/a.jpg"_s, u"/b.jpg"_s}));
}

void tst_PlaylistPictures::addingPicturesGoesToTheActivePlaylist()
{
    const qlonglong lake = m_test->model->addItem(u"Lake"_s);
    const qlonglong wood = m_test->model->addItem(u"Wood"_s);
    m_test->model->setActiveId(lake);
    m_test->model->addImagesToPlaylist({u"/a.jpg"_s});
    m_test->model->setActiveId(wood);
    m_test->model->addImagesToPlaylist({u"/b.jpg"_s});
    QCOMPARE(m_test->model->getImagesById(lake), QStringList(u"/a.jpg"_s));
    QCOMPARE(m_test->model->getImagesById(wood), QStringList(u"/b.jpg"_s));

    m_test->model->setActiveId(-1);
    m_test->model->addImagesToPlaylist({u"/c.jpg"_s});
    QCOMPARE(stored_database::rows(u"SELECT playlist FROM playlist_images WHERE url = '/c.jpg'"_s),
             QStringList(u"-1"_s));
}

void tst_PlaylistPictures::deletingPicturesGoesByTheirOrder()
{
    const qlonglong id = m_test->model->addItem(u"Lake"_s);
    m_test->model->setActiveId(id);
    m_test->model->addImagesToPlaylist({u"/a.jpg"_s, u"/b.jpg"_s, u"/c.jpg"_s});
    m_test->model->setActiveId(-1); // the playlist is named, not the active one

    QStringList left;
    connect(m_test->model.get(), &PlaylistModel::countChanged, m_test->model.get(),
            [&] { left.append(m_test->model->getImagesById(id).join(u' ')); });
    m_test->model->deleteImages(id, {u"/c.jpg"_s, u"/gone.jpg"_s, u"/a.jpg"_s});
    QCOMPARE(left, QStringList({u"/a.jpg /b.jpg"_s, u"/a.jpg /b.jpg"_s, u"/b.jpg"_s}));
}

void tst_PlaylistPictures::deletingOnePicture()
{
    const qlonglong id = m_test->model->addItem(u"Lake"_s);
    m_test->model->setActiveId(id);
    m_test->model->addImagesToPlaylist({u"/a.jpg"_s, u"/b.jpg"_s});
    PlaylistSignals log(m_test->model.get());
    m_test->model->deleteImage(id, u"/a.jpg"_s);
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"reset 1"_s, u"count 1"_s}));
    QCOMPARE(m_test->model->getImagesById(id), QStringList(u"/b.jpg"_s));
    m_test->model->deleteImage(99, u"/b.jpg"_s);
    QCOMPARE(m_test->model->getImagesById(id), QStringList(u"/b.jpg"_s));
}

void tst_PlaylistPictures::getImageSkipsVanishedFiles()
{
    const qlonglong id = m_test->model->addItem(u"Lake"_s);
    m_test->model->setActiveId(id);
    QStringList paths;
    for (int i = 1; i <= 6; ++i)
        paths.append(m_test->picture(u"%1.jpg"_s.arg(i), i > 2));
    m_test->model->addImagesToPlaylist(paths);

    const int playlist = static_cast<int>(id);
    QCOMPARE(m_test->model->getImage(playlist, 0), paths.at(2));
    QCOMPARE(m_test->model->getImage(playlist, 1), paths.at(3));
    QCOMPARE(m_test->model->getImage(playlist, 3), paths.at(5));
    QCOMPARE(m_test->model->getImage(playlist, 4), QString());
    QCOMPARE(m_test->model->getImage(playlist, 5), QString());
    QCOMPARE(m_test->model->getImage(playlist, 6), QString());

    // A picture on a card comes back with the card, one in the middle leaves no hole.
    make(paths.at(0));
    QVERIFY(QFile::remove(paths.at(3)));
    QCOMPARE(m_test->model->getImage(playlist, 0), paths.at(0));
    QCOMPARE(m_test->model->getImage(playlist, 1), paths.at(2));
    QCOMPARE(m_test->model->getImage(playlist, 2), paths.at(4));
}

void tst_PlaylistPictures::getImageWithoutAPicture_data()
{
    QTest::addColumn<int>("playlist");
    QTest::addColumn<int>("index");

    QTest::newRow("an unknown playlist") << 2 << 0;
    QTest::newRow("no playlist") << -1 << 0;
    QTest::newRow("behind the last") << 1 << 2;
    QTest::newRow("far behind") << 1 << 2147483647;
    QTest::newRow("before the first") << 1 << -1;
}

void tst_PlaylistPictures::getImageWithoutAPicture()
{
    QFETCH(int, playlist);
    QFETCH(int, index);

    QVERIFY(stored_database::execute({u"INSERT INTO playlists VALUES(1, 'Lake')"_s}));
    m_test->model->setActiveId(1);
    m_test->model->addImagesToPlaylist({m_test->picture(u"a.jpg"_s), m_test->picture(u"b.jpg"_s)});
    QCOMPARE(m_test->model->getImage(1, 1), m_test->folder.filePath(u"b.jpg"_s));
    QCOMPARE(m_test->model->getImage(playlist, index), QString());
}

void tst_PlaylistPictures::getImageComparesTheWholeId()
{
    const QString path = m_test->picture(u"a.jpg"_s);
    QVERIFY(stored_database::execute({u"INSERT INTO playlists VALUES(4294967297, 'one and 2^32')"_s,
                                      u"INSERT INTO playlists VALUES(-5, 'below zero')"_s,
                                      u"INSERT INTO playlist_images VALUES(1, '%1', 4294967297)"_s.arg(path),
                                      u"INSERT INTO playlist_images VALUES(2, '%1', -5)"_s.arg(path)}));
    m_test->model->refreshData();
    QCOMPARE(m_test->model->getImage(1, 0), QString());
    QCOMPARE(m_test->model->getImage(-5, 0), path);
    QCOMPARE(m_test->model->getIndexById(4294967297LL), 1);
    QCOMPARE(m_test->model->getImagesById(4294967297LL), QStringList(path));
}

void tst_PlaylistPictures::countsWithVanishedFiles()
{
    const qlonglong id = m_test->model->addItem(u"Lake"_s);
    m_test->model->setActiveId(id);
    const QString a = m_test->picture(u"a.jpg"_s);
    const QString b = m_test->picture(u"b.jpg"_s);
    m_test->model->addImagesToPlaylist({a, b});
    QVERIFY(m_test->model->hasExistsImage(id));
    QCOMPARE(m_test->model->countExistsImages({a, b, a, u"/nowhere"_s, QString()}), 3);
    QCOMPARE(m_test->model->countExistsImages({}), 0);

    PlaylistSignals log(m_test->model.get());
    QVERIFY(QFile::remove(a));
    QCOMPARE(cell(*m_test->model, 0, PlaylistModel::CountRole).toInt(), 2);
    QCOMPARE(cell(*m_test->model, 0, PlaylistModel::CountExistsRole).toInt(), 1);
    QVERIFY(m_test->model->hasExistsImage(id));
    QVERIFY(QFile::remove(b));
    QCOMPARE(cell(*m_test->model, 0, PlaylistModel::CountRole).toInt(), 2);
    QCOMPARE(cell(*m_test->model, 0, PlaylistModel::CountExistsRole).toInt(), 0);
    QVERIFY(!m_test->model->hasExistsImage(id));
    QCOMPARE(m_test->model->getImagesById(id), QStringList({a, b}));
    make(b);
    QVERIFY(m_test->model->hasExistsImage(id));
    QCOMPARE(log.taken(), QStringList()); // nobody tells the model of files
    QCOMPARE(stored_database::rows(u"SELECT count(*) FROM playlist_images"_s), QStringList(u"2"_s));
}

void tst_PlaylistPictures::foldersAndLinksCountAsTheyExist()
{
    const QString folder = m_test->folder.filePath(u"folder"_s);
    QVERIFY(QDir().mkdir(folder));
    const QString link = m_test->folder.filePath(u"link"_s);
    QVERIFY(QFile::link(m_test->folder.filePath(u"gone"_s), link));
    QCOMPARE(m_test->model->countExistsImages({folder, link}), 1);
}

void tst_PlaylistPictures::lookUpsByUnknownIds()
{
    m_test->model->addItem(u"Lake"_s);
    for (qlonglong id : {-1LL, 0LL, 99LL, (1LL << 32) + 1}) {
        QCOMPARE(m_test->model->getIndexById(id), -1);
        QCOMPARE(m_test->model->getImagesById(id), QStringList());
        QVERIFY(!m_test->model->hasImage(id, u"/a.jpg"_s));
        QVERIFY(!m_test->model->hasExistsImage(id));
    }
}

void tst_PlaylistPictures::hasImageIsExact()
{
    const qlonglong id = m_test->model->addItem(u"Lake"_s);
    m_test->model->setActiveId(id);
    m_test->model->addImagesToPlaylist({u"/p/a.jpg"_s});
    QVERIFY(m_test->model->hasImage(id, u"/p/a.jpg"_s)); // stored, whether the file is there or not
    QVERIFY(!m_test->model->hasImage(id, u"/p/A.jpg"_s));
    QVERIFY(!m_test->model->hasImage(id, u"/p/a.jp"_s));
    QVERIFY(!m_test->model->hasImage(id, u"/p//a.jpg"_s));
}

void tst_PlaylistPictures::openImageHandsTheBytesOver_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("plain") << u"/mnt/ext1/Photo/01.jpg"_s;
    QTest::newRow("blanks and signs") << u"/mnt/ext1/50% of #1?.jpg"_s;
    QTest::newRow("umlauts") << u"/mnt/ext1/K\u00fcste.jpg"_s;
    QTest::newRow("a missing file") << u"/nowhere"_s;
}

void tst_PlaylistPictures::openImageHandsTheBytesOver()
{
    QFETCH(QString, path);

    m_test->device.forgetCalls();
    m_test->model->openImage(path);
    const QList<lindenreed::device::SdkCall> calls = m_test->device.calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().name, "OpenBook");
    QCOMPARE(calls.first().arguments, QByteArrayList({path.toLocal8Bit(), "null", "0"}));
    QCOMPARE(lindenreed::device::Device::instance()->viewer.opened().last(), path);
}

QTEST_GUILESS_MAIN(tst_PlaylistPictures)
#include "tst_playlist_pictures.moc"
