// How the program ends on the ways of the playlist workflow: by the home button, and where nothing can be
// stored.

#include "named_screen.h"
#include "stored_database.h"

#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

class tst_WorkflowEnds : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void homeButton_data();
    void homeButton();
    void pictureForAPlaylistThatCouldNotBeStored();

private:
    bool hasEnded()
    {
        return m_device->program().state() == QProcess::NotRunning || m_device->program().waitForFinished();
    }
    static QStringList stored()
    {
        return stored_database::rows(u"SELECT id, title, '' FROM playlists UNION ALL "
                                     "SELECT id, url, playlist FROM playlist_images UNION ALL "
                                     "SELECT name, value, playlist FROM settings"_s);
    }
    /// The database as it is after a first run, which nobody can write any more.
    bool makeReadOnlyDatabase();

    std::unique_ptr<NamedScreen> m_device;
};

void tst_WorkflowEnds::init()
{
    stored_database::remove();
    m_device = std::make_unique<NamedScreen>();
}

void tst_WorkflowEnds::cleanup()
{
    m_device.reset();
}

void tst_WorkflowEnds::homeButton_data()
{
    QTest::addColumn<bool>("byTouch");

    QTest::newRow("touch") << true;
    QTest::newRow("assistive press") << false;
}

void tst_WorkflowEnds::homeButton()
{
    QFETCH(bool, byTouch);

    QVERIFY(m_device->start());
    const QRect home = m_device->place(u"Close"_s);
    QVERIFY(!home.isEmpty());
    if (byTouch)
        m_device->ask(u"tap"_s, {{u"x"_s, home.center().x()}, {u"y"_s, home.center().y()}});
    else
        m_device->ask(u"press"_s, {{u"name"_s, u"Close"_s}});
    QVERIFY(hasEnded());
    QCOMPARE(m_device->program().exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_device->program().exitCode(), 0);
    QCOMPARE(m_device->unexpectedErrors(), QByteArrayList());
}

bool tst_WorkflowEnds::makeReadOnlyDatabase()
{
    if (!m_device->start() || !m_device->does(u"quit"_s) || !hasEnded())
        return false;
    m_device = std::make_unique<NamedScreen>();
    QFile file(stored_database::path);
    return file.setPermissions(QFile::ReadOwner) && !file.open(QIODevice::ReadWrite);
}

void tst_WorkflowEnds::pictureForAPlaylistThatCouldNotBeStored()
{
    QVERIFY(makeReadOnlyDatabase());
    const QStringList before = stored();
    QVERIFY(before.contains(u"1|@DefaultPlaylist|"_s));
    QVERIFY(m_device->start());
    QVERIFY(m_device->walk({u"touch New playlist"_s, u"touch Continue"_s}));
    QVERIFY(m_device->names().contains(u"Create playlist"_s)); // the picker, all the same
    QVERIFY(m_device->walk({u"touch 01.jpg"_s, u"touch 02.jpg"_s}));
    QVERIFY(m_device->names().contains(u"2 / 10"_s));
    QVERIFY(m_device->program().state() == QProcess::Running);

    // The message names the playlist that pictures were added to, and there is none.
    m_device->ask(u"press"_s, {{u"name"_s, u"Create playlist"_s}});
    QVERIFY(hasEnded());
    QCOMPARE(m_device->program().exitStatus(), QProcess::CrashExit);
    const QByteArray errors = m_device->errors();
    QVERIFY2(errors.contains("vector::_M_range_check"), errors.constData());
    for (const char *refused : {"addPlaylistItem", "addImageToPlayList"})
        QVERIFY2(errors.contains(QByteArray("Error performing ") + refused), errors.constData());

    QVERIFY(QFile::setPermissions(stored_database::path, QFile::ReadOwner | QFile::WriteOwner));
    QCOMPARE(stored(), before);
    QCOMPARE(stored_database::rows(u"SELECT url FROM playlist_images WHERE playlist = -1"_s), QStringList());
    QCOMPARE(stored_database::rows(u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
    m_device = std::make_unique<NamedScreen>();
    QVERIFY(m_device->start());
    QVERIFY(m_device->names().contains(u"Photos. 10"_s));
}

QTEST_GUILESS_MAIN(tst_WorkflowEnds)
#include "tst_workflow_ends.moc"
