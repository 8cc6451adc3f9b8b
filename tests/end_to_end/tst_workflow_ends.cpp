// How the program ends on the ways of the playlist workflow: by the home button, and where nothing can be
// stored.

#include "show_device.h"
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
    /// Empty where nothing has this name.
    QRect place(const QString &name)
    {
        const QList<QJsonObject> items = m_device->items();
        for (const QJsonObject &item : items) {
            if (item.value("name"_L1) == name)
                return ShowDevice::rectangleOf(item);
        }
        return {};
    }
    bool isShown(const QString &name) { return !place(name).isEmpty(); }
    bool touch(const QString &name)
    {
        const QPoint middle = place(name).center();
        return isShown(name) && m_device->tap(middle.x(), middle.y());
    }
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

    std::unique_ptr<ShowDevice> m_device;
};

void tst_WorkflowEnds::init()
{
    stored_database::remove();
    m_device = std::make_unique<ShowDevice>();
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
    const QRect home = place(u"Close"_s);
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
    m_device = std::make_unique<ShowDevice>();
    QFile file(stored_database::path);
    return file.setPermissions(QFile::ReadOwner) && !file.open(QIODevice::ReadWrite);
}

void tst_WorkflowEnds::pictureForAPlaylistThatCouldNotBeStored()
{
    QVERIFY(makeReadOnlyDatabase());
    const QStringList before = stored();
    QVERIFY(before.contains(u"1|@DefaultPlaylist|"_s));
    QVERIFY(m_device->start());
    QVERIFY(touch(u"New playlist"_s));
    QVERIFY(touch(u"Continue"_s));
    QVERIFY(isShown(u"Create playlist"_s)); // the picker, all the same
    QVERIFY(touch(u"01.jpg"_s));
    QVERIFY(touch(u"02.jpg"_s));
    QVERIFY(isShown(u"2 / 10"_s));
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
    m_device = std::make_unique<ShowDevice>();
    QVERIFY(m_device->start());
    QVERIFY(isShown(u"Photos. 10"_s));
}

QTEST_GUILESS_MAIN(tst_WorkflowEnds)
#include "tst_workflow_ends.moc"
