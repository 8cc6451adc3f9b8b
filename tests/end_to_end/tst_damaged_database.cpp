// The real program over a database that is damaged beyond recovery: it runs without one, and leaves the file
// alone.

#include "named_screen.h"
#include "stored_database.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype settingCount = 15; // all but the light's
const QString noPlaylists = u"There are no playlists yet. Tap New playlist to make one."_s;

/// What a function of the store logs, with the rest of its words.
QString failed(const QString &function, const QString &what)
{
    return function + u": Error "_s + what;
}

const QString request = u"performing %1 request. "_s;
const QString createTable = failed(u"void DataStorage::createScheme()"_s, u"creating tables "_s);
const QString countSettings
    = failed(u"void DataStorage::createScheme()"_s, request.arg(u"select settings"_s));
const QString getPlaylists = failed(u"std::vector<DataStorage::Playlists> DataStorage::getPlaylists()"_s,
                                    request.arg(u"getPlaylistItems"_s));
const QString getSetting
    = failed(u"QString DataStorage::getSetting(QString, int)"_s, request.arg(u"getPlaylistItems"_s));
const QString setSetting
    = failed(u"void DataStorage::setSetting(QString, QString, int)"_s, request.arg(u"setSetting"_s));
const QString addPlaylist
    = failed(u"long long DataStorage::addPlaylist(const QString &)"_s, request.arg(u"addPlaylistItem"_s));
const QString deletePlaylist
    = failed(u"void DataStorage::deletePlaylist(long long)"_s, request.arg(u"deletePlaylistItem"_s));
const QString deletePictures
    = failed(u"void DataStorage::deletePlaylist(long long)"_s, request.arg(u"removeImageFromPlayList"_s));

QByteArray contents()
{
    QFile file(stored_database::path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

bool write(const QByteArray &bytes)
{
    stored_database::remove();
    QFile file(stored_database::path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace

class tst_DamagedDatabase : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { m_device = std::make_unique<NamedScreen>(); }
    void cleanup() { m_device.reset(); }

    void everyScreen_data();
    void everyScreen();

private:
    bool ends();
    /// What the store has logged since the last call, without the lines' numbers; all else goes to m_others.
    QStringList logged();

    std::unique_ptr<NamedScreen> m_device;
    QByteArray m_sound;
    QByteArrayList m_others;
};

bool tst_DamagedDatabase::ends()
{
    return m_device->does(u"quit"_s)
        && (m_device->program().state() == QProcess::NotRunning || m_device->program().waitForFinished())
        && m_device->program().exitStatus() == QProcess::NormalExit && m_device->program().exitCode() == 0;
}

QStringList tst_DamagedDatabase::logged()
{
    static const QRegularExpression form(u"^2 picture_stand/src/datastorage:[1-9]\\d* (.*)$"_s);
    QStringList lines;
    for (const QByteArray &line : m_device->unexpectedErrors()) {
        const QRegularExpressionMatch match = form.match(QString::fromUtf8(line));
        if (match.hasMatch())
            lines.append(match.captured(1));
        else
            m_others.append(line);
    }
    return lines;
}

/// A database as the first start leaves it.
void tst_DamagedDatabase::initTestCase()
{
    stored_database::remove();
    init();
    QVERIFY(m_device->start() && ends());
    m_sound = contents();
    QVERIFY(m_sound.startsWith("SQLite format 3"));
}

void tst_DamagedDatabase::everyScreen_data()
{
    QTest::addColumn<bool>("header");
    QTest::addColumn<QString>("error");

    QTest::newRow("random bytes") << false << u"file is not a database"_s;
    QTest::newRow("damaged pages behind a header") << true << u"database disk image is malformed"_s;
}

void tst_DamagedDatabase::everyScreen()
{
    QFETCH(bool, header);
    QFETCH(QString, error);

    QRandomGenerator random(20240607);
    QByteArray damaged = m_sound;
    for (qsizetype i = header ? 100 : 0; i < damaged.size(); ++i)
        damaged[i] = static_cast<char>(random.bounded(256));
    QVERIFY(write(damaged));
    m_others.clear();

    const auto hasLogged = [&](QStringList lines) {
        for (QString &line : lines)
            line += u'[' + error + u']';
        const QStringList found = logged();
        return QTest::qCompare(found, lines, "found", "lines", __FILE__, __LINE__);
    };

    QVERIFY(m_device->start());
    QVERIFY(hasLogged(QStringList{createTable, createTable, createTable, countSettings, getPlaylists}
                      + QStringList(settingCount, getSetting)));
    QVERIFY(m_device->names().contains(noPlaylists));
    QVERIFY(!m_device->names().contains(u"Start playback"_s));

    // Settings are nothing, and hold until the end.
    QVERIFY(m_device->act(u"press Slideshow settings"_s));
    QVERIFY(m_device->names().contains(u"Custom (0 seconds)"_s));
    QVERIFY(hasLogged({}));
    QVERIFY(m_device->walk({u"touch Change picture every"_s, u"touch 5 seconds"_s}));
    QVERIFY(hasLogged({setSetting, setSetting})); // the number, and the choice
    QVERIFY(m_device->act(u"press Back"_s));
    QVERIFY(m_device->act(u"press Slideshow settings"_s));
    QVERIFY(m_device->names().contains(u"5 seconds"_s));

    QVERIFY(m_device->walk({u"press Back"_s, u"touch New playlist"_s, u"touch Continue"_s}));
    QVERIFY(hasLogged({addPlaylist}));
    QVERIFY(m_device->walk({u"touch 01.jpg"_s, u"touch 02.jpg"_s}));
    QVERIFY(m_device->names().contains(u"2 / 10"_s));
    QVERIFY(m_device->act(u"touch Cancel"_s));
    QVERIFY(hasLogged({deletePlaylist, deletePictures, getPlaylists}));
    QVERIFY(m_device->names().contains(noPlaylists));

    QVERIFY(ends());
    QVERIFY(hasLogged({}));
    QCOMPARE(m_others, QByteArrayList());
    QCOMPARE(contents(), damaged);
    QVERIFY(!QFile::exists(stored_database::path + u"-journal"_s));
}

QTEST_GUILESS_MAIN(tst_DamagedDatabase)
#include "tst_damaged_database.moc"
