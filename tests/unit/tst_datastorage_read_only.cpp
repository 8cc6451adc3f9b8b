// A database, or its folder, that cannot be written, and a file that cannot grow.

#include "file_size_limit.h"
#include "obeyed_permissions.h"
#include "storage_fixture.h"

class tst_DataStorageReadOnly : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<StorageFixture>(); }
    void cleanup() { m_test.reset(); }

    void anEmptyReadOnlyFile();
    void aReadOnlyDatabaseIsStillRead();
    void aReadOnlyFolderIsStillRead();
    void aFileThatCannotGrowAtTheFirstStart();
    void aFileThatCannotGrowLater();

private:
    std::unique_ptr<StorageFixture> m_test;
};

void tst_DataStorageReadOnly::anEmptyReadOnlyFile()
{
    writeBytes({});
    QVERIFY(QFile::setPermissions(stored_database::path, QFile::ReadOwner));
    const ObeyedPermissions permissions;
    m_test->start();
    QStringList lines = failedScheme(u"attempt to write a readonly database"_s);
    QCOMPARE(m_test->output.logLines(logSource), lines);
    QVERIFY(m_test->store->getPlaylists().empty());
    QCOMPARE(bytesOf(stored_database::path), QByteArray());
}

void tst_DataStorageReadOnly::aReadOnlyDatabaseIsStillRead()
{
    m_test->start();
    m_test->stop();
    const QByteArray bytes = bytesOf(stored_database::path);
    QVERIFY(QFile::setPermissions(stored_database::path, QFile::ReadOwner));
    const ObeyedPermissions permissions;

    m_test->start();
    QCOMPARE(m_test->output.logLines(logSource), QStringList());
    QCOMPARE(m_test->store->getPlaylists().size(), 1U);
    QCOMPARE(m_test->store->getSetting(u"change_picture_time"_s, -1), u"30"_s);
    m_test->store->setSetting(u"change_picture_time"_s, u"60"_s, -1);
    QCOMPARE(m_test->store->addPlaylist(u"Lake"_s), -1LL);
    QVERIFY(m_test->store->addImageToPlayList(1, u"/a.jpg"_s));
    QCOMPARE(m_test->output.logLines(logSource), withError({setSetting, addPlaylist, addImage}, QString()));
    QCOMPARE(m_test->store->getSetting(u"change_picture_time"_s, -1), u"30"_s);
    m_test->stop();
    QCOMPARE(bytesOf(stored_database::path), bytes);
}

void tst_DataStorageReadOnly::aReadOnlyFolderIsStillRead()
{
    m_test->start();
    m_test->stop();
    const QFile::Permissions usual = QFile::permissions(stored_database::folder);
    QVERIFY(QFile::setPermissions(stored_database::folder, QFile::ReadOwner | QFile::ExeOwner));
    {
        const ObeyedPermissions permissions;
        m_test->start();
        m_test->store->setSetting(u"change_picture_time"_s, u"60"_s, -1);
    }
    QVERIFY(QFile::setPermissions(stored_database::folder, usual));
    QCOMPARE(m_test->output.logLines(logSource), withError({setSetting}, QString()));
    QCOMPARE(m_test->store->getSetting(u"change_picture_time"_s, -1), u"30"_s);
}

void tst_DataStorageReadOnly::aFileThatCannotGrowAtTheFirstStart()
{
    {
        const FileSizeLimit limit(4096);
        m_test->start();
        const QString error = u"disk I/O error"_s;
        const QStringList lines = m_test->output.logLines(logSource);
        QCOMPARE(lines.mid(0, 3), failedScheme(error).mid(0, 3));
        QCOMPARE(lines.at(3), scheme + u"Error performing select settings request. [disk I/O error]"_s);
        QVERIFY(m_test->store->getPlaylists().empty());
    }
    // With room again the next start makes everything.
    m_test->start();
    QCOMPARE(m_test->store->getPlaylists().size(), 1U);
    QCOMPARE(m_test->store->getSetting(u"change_picture_time"_s, -1), u"30"_s);
}

void tst_DataStorageReadOnly::aFileThatCannotGrowLater()
{
    m_test->start();
    const QString longTitle(20'000, u'x');
    QSignalSpy changed(m_test->store.get(), &DataStorage::changed);
    {
        const FileSizeLimit limit(static_cast<rlim_t>(QFileInfo(stored_database::path).size()));
        QCOMPARE(m_test->store->addPlaylist(longTitle), -1LL);
        QCOMPARE(changed.count(), 0);
        m_test->store->updatePlaylist(1, longTitle);
        QCOMPARE(changed.count(), 1);
        QVERIFY(m_test->store->addImageToPlayList(1, longTitle));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(m_test->output.logLines(logSource),
                 withError({addPlaylist, updatePlaylist, addImage}, QString()));
    }
    // Nothing that was stored is lost, and writing goes on when there is room.
    QCOMPARE(m_test->store->getPlaylists().size(), 1U);
    QCOMPARE(m_test->store->getPlaylists().front().title, u"@DefaultPlaylist"_s);
    QCOMPARE(m_test->store->getPlaylists().front().images.size(), 10);
    QCOMPARE(m_test->store->addPlaylist(longTitle), 2LL);
    QCOMPARE(stored_database::rows(u"PRAGMA integrity_check"_s), QStringList(u"ok"_s));
}

QTEST_GUILESS_MAIN(tst_DataStorageReadOnly)
#include "tst_datastorage_read_only.moc"
