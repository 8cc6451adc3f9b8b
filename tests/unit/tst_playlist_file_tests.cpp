// How often the playlists ask the file system: cards are slow, and each test may wait for one.

#include <datastorage.h>
#include <playlist_model.h>
#include <stored_database.h>

#include <QtTest>

#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QByteArray folder = "/mnt/ext1/pictures/";
QByteArrayList asked; ///< names of the pictures whose files were asked for, in order

void note(const char *path)
{
    const QByteArray name(path);
    if (name.startsWith(folder))
        asked.append(name.mid(folder.size()));
}

} // namespace

// Qt asks through one of these, which stand before the C library's own.
int statx(int directory, const char *path, int flags, unsigned int mask, struct statx *result) noexcept
{
    note(path);
    return static_cast<int>(::syscall(SYS_statx, directory, path, flags, mask, result));
}

int access(const char *path, int mode) noexcept
{
    note(path);
    return static_cast<int>(::syscall(SYS_faccessat, AT_FDCWD, path, mode));
}

class tst_PlaylistFileTests : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void getImage_data();
    void getImage();
    void getImageOfAnUnknownPlaylist();
    void hasExistsImage_data();
    void hasExistsImage();
    void countsAskForEachFile();
    void nothingElseAsks();

private:
    void make(const QStringList &there);

    std::unique_ptr<PlaylistModel> m_model;
};

/// A playlist 1 of six pictures without files.
void tst_PlaylistFileTests::init()
{
    DataStorage::instance();
    stored_database::hurry();
    QStringList statements{u"DELETE FROM playlists"_s, u"DELETE FROM playlist_images"_s,
                           u"INSERT INTO playlists VALUES(1, 'Lake')"_s};
    for (int i = 1; i <= 6; ++i)
        statements.append(u"INSERT INTO playlist_images VALUES(%1, '/mnt/ext1/pictures/%1', 1)"_s.arg(i));
    QVERIFY(stored_database::execute(statements));
    QVERIFY(QDir().mkpath(QString::fromLatin1(folder)));
    m_model = std::make_unique<PlaylistModel>();
    asked.clear();
}

void tst_PlaylistFileTests::cleanup()
{
    m_model.reset();
    QVERIFY(QDir(QString::fromLatin1(folder)).removeRecursively());
}

void tst_PlaylistFileTests::make(const QStringList &there)
{
    for (const QString &name : there) {
        QFile file(QString::fromLatin1(folder) + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    asked.clear();
}

void tst_PlaylistFileTests::getImage_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("found");
    QTest::addColumn<QByteArrayList>("expected");

    const QByteArrayList all{"1", "2", "3", "4", "5", "6"};
    QTest::newRow("the first that is there") << 0 << u"3"_s << all.first(3);
    QTest::newRow("the second that is there") << 1 << u"4"_s << all.first(4);
    QTest::newRow("the last") << 3 << u"6"_s << all;
    QTest::newRow("more than are there") << 4 << QString() << all;
    QTest::newRow("as many as are stored") << 6 << QString() << QByteArrayList();
    QTest::newRow("more than are stored") << 7 << QString() << QByteArrayList();
}

void tst_PlaylistFileTests::getImage()
{
    QFETCH(int, index);
    QFETCH(QString, found);
    QFETCH(QByteArrayList, expected);

    make({u"3"_s, u"4"_s, u"5"_s, u"6"_s});
    const QString path = m_model->getImage(1, index);
    const QByteArrayList tests = asked;
    QCOMPARE(path, found.isNull() ? QString() : QString::fromLatin1(folder) + found);
    QCOMPARE(tests, expected);
}

void tst_PlaylistFileTests::getImageOfAnUnknownPlaylist()
{
    QCOMPARE(m_model->getImage(2, 0), QString());
    QCOMPARE(asked, QByteArrayList());
}

void tst_PlaylistFileTests::hasExistsImage_data()
{
    QTest::addColumn<QStringList>("there");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QByteArrayList>("expected");

    const QByteArrayList all{"1", "2", "3", "4", "5", "6"};
    QTest::newRow("all") << QStringList({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s}) << true
                         << all.first(1);
    QTest::newRow("from the third on")
        << QStringList({u"3"_s, u"4"_s, u"5"_s, u"6"_s}) << true << all.first(3);
    QTest::newRow("the last") << QStringList(u"6"_s) << true << all;
    QTest::newRow("none") << QStringList() << false << all;
}

void tst_PlaylistFileTests::hasExistsImage()
{
    QFETCH(QStringList, there);
    QFETCH(bool, found);
    QFETCH(QByteArrayList, expected);

    make(there);
    QCOMPARE(m_model->hasExistsImage(1), found);
    QCOMPARE(asked, expected);
    asked.clear();
    QVERIFY(!m_model->hasExistsImage(2));
    QCOMPARE(asked, QByteArrayList());
}

void tst_PlaylistFileTests::countsAskForEachFile()
{
    make({u"2"_s});
    const QByteArrayList all{"1", "2", "3", "4", "5", "6"};
    const QModelIndex row = m_model->index(0, 0);
    QCOMPARE(m_model->data(row, PlaylistModel::CountExistsRole).toInt(), 1);
    QCOMPARE(asked, all);
    QCOMPARE(m_model->data(row, PlaylistModel::CountExistsRole).toInt(), 1); // nothing is cached
    QCOMPARE(asked, all + all);
}

void tst_PlaylistFileTests::nothingElseAsks()
{
    m_model->refreshData();
    QCOMPARE(m_model->data(m_model->index(0, 0), PlaylistModel::CountRole).toInt(), 6);
    QCOMPARE(m_model->getImagesById(1).size(), 6);
    QVERIFY(m_model->hasImage(1, u"/mnt/ext1/pictures/1"_s));
    m_model->setActiveId(1);
    m_model->addImagesToPlaylist({u"/mnt/ext1/pictures/7"_s});
    m_model->deleteImage(1, u"/mnt/ext1/pictures/7"_s);
    QCOMPARE(asked, QByteArrayList());
}

QTEST_GUILESS_MAIN(tst_PlaylistFileTests)
#include "tst_playlist_file_tests.moc"
