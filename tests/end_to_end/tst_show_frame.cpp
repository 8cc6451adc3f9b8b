// The show without a display on the frame itself: a new device, its two dialogs before the first show, and
// what the panel showed.

#include "launcher_run.h"

#include <QDir>
#include <QImage>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The value of one column of one row; null where it cannot be had.
QVariant stored(const QString &root, const QString &statement)
{
    QVariant value;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"witness"_s);
        database.setDatabaseName(root + u"/mnt/ext1/system/picture_stand.sqlite"_s);
        if (database.open()) {
            QSqlQuery query(statement, database);
            if (query.next())
                value = query.value(0);
        }
    }
    QSqlDatabase::removeDatabase(u"witness"_s);
    return value;
}

} // namespace

class tst_ShowFrame : public QObject
{
    Q_OBJECT

private slots:
    void newDevice();
    void nothingToPlay();
};

void tst_ShowFrame::newDevice()
{
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    LauncherPlace place(folder.path());
    const QString root = place.path(u"device"_s);
    const QString out = place.path(u"out"_s);
    const QStringList names{u"playlists"_s, u"first_run"_s, u"01"_s, u"02"_s, u"03"_s, u"04"_s, u"05"_s};
    for (const bool isNew : {true, false}) {
        QProcess show;
        show.setProcessEnvironment(place.environment());
        show.start(QStringLiteral(SOURCE_FOLDER "/tools/show"),
                   {QFileInfo(LauncherPlace::builtCommand(u"slate-run"_s)).path(), out, u"--root"_s, root});
        const LauncherEnd end = LauncherPlace::end(show);
        QCOMPARE(end.errors, QByteArray());
        QCOMPARE(end.status, 0);

        QByteArrayList paths;
        QSet<QByteArray> different;
        for (const QString &name : names) {
            const QString path = u"%1/%2.png"_s.arg(out, name);
            if (name == u"first_run"_s && !isNew) { // the dialogs come once
                QVERIFY(!QFileInfo::exists(path));
                continue;
            }
            paths.append(QFile::encodeName(path));
            QCOMPARE(QImage(path).size(), QSize(758, 1024));
            different.insert(fileContent(path));
        }
        QCOMPARE(end.output.trimmed().split('\n'), paths);
        QCOMPARE(different.size(), paths.size());
        QCOMPARE(stored(root, u"SELECT value FROM settings WHERE name = 'is_first_run'"_s), u"0"_s);
        QVERIFY(QDir(out).remove(u"first_run.png"_s) || !isNew);
    }
    QCOMPARE(stored(root, u"SELECT count(*) FROM playlist_images"_s), 10);
    QCOMPARE(place.leftovers(), QStringList());
}

void tst_ShowFrame::nothingToPlay()
{
    const QTemporaryDir folder;
    LauncherPlace place(folder.path());
    QProcess show;
    show.setProcessEnvironment(place.environment());
    show.start(QStringLiteral(SOURCE_FOLDER "/tools/show"),
               {QFileInfo(LauncherPlace::builtCommand(u"slate-run"_s)).path(), place.path(u"out"_s),
                u"--temporary"_s});
    const LauncherEnd end = LauncherPlace::end(show);
    QCOMPARE(end.errors,
             QByteArray("show: the first playlist has no pictures; on a fresh device --samples "
                        "makes some\n"));
    QCOMPARE(end.status, 1);
    QCOMPARE(place.leftovers(), QStringList());
}

QTEST_GUILESS_MAIN(tst_ShowFrame)
#include "tst_show_frame.moc"
