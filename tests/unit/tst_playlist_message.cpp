#include <datastorage.h>
#include <playlist_model.h>
#include <slateview.h>
#include <stderr_capture.h>
#include <stored_database.h>

#include <QProcess>
#include <QtTest>

#include <cstring>
#include <memory>
#include <stdexcept>

#include <csignal>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr char singularKey[] = "@PhotoWasAddedToPlaylist";
constexpr char pluralKey[] = "@PhotosWereAddedToPlaylist";

/// The device's language table, as a test wants it. A missing text is its key.
struct Table
{
    QByteArray singular;
    QByteArray plural;
    QByteArray title; ///< of "@DefaultPlaylist"
    QList<double> pluralCounts; ///< that were asked for
};

Table table;

const char *textOrKey(const QByteArray &text, const char *key)
{
    return text.isNull() ? key : text.constData();
}

} // namespace

// These two stand before the device's own, which know only complete tables.
const char *GetLangText(const char *key)
{
    if (std::strcmp(key, singularKey) == 0)
        return textOrKey(table.singular, key);
    if (std::strcmp(key, "@DefaultPlaylist") == 0)
        return textOrKey(table.title, key);
    return key;
}

const char *GetLangTextPlural(const char *key, double count)
{
    table.pluralCounts.append(count);
    return std::strcmp(key, pluralKey) == 0 ? textOrKey(table.plural, key) : key;
}

class tst_PlaylistMessage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theFormFollowsTheCount_data();
    void theFormFollowsTheCount();
    void whatWasThereAlreadyDoesNotCount();
    void deletingDoesNotChangeTheCount();
    void aFailedInsertCounts();
    void titlesAreTranslated();
    void titlesAreNoFormats_data();
    void titlesAreNoFormats();
    void formatsAreChecked_data();
    void formatsAreChecked();
    void longMessagesAreCut_data();
    void longMessagesAreCut();
    void anUnknownPlaylistIsOutOfRange_data();
    void anUnknownPlaylistIsOutOfRange();
    void anUnknownPlaylistEndsTheProcess();

private:
    void usePlaylist(const QString &title);
    void add(int count, int from = 0);

    std::unique_ptr<PlaylistModel> m_model;
};

void tst_PlaylistMessage::init()
{
    table = {"%s picture: %s", "%s pictures: %s", "Default", {}};
    DataStorage::instance();
    stored_database::hurry();
    QVERIFY(stored_database::execute({u"DELETE FROM playlists"_s, u"DELETE FROM playlist_images"_s}));
    m_model = std::make_unique<PlaylistModel>();
}

void tst_PlaylistMessage::cleanup()
{
    m_model.reset();
}

void tst_PlaylistMessage::usePlaylist(const QString &title)
{
    m_model->setActiveId(m_model->addItem(title));
}

void tst_PlaylistMessage::add(int count, int from)
{
    QStringList paths;
    for (int i = from; i < from + count; ++i)
        paths.append(u"/p/%1.jpg"_s.arg(i));
    m_model->addImagesToPlaylist(paths);
}

void tst_PlaylistMessage::theFormFollowsTheCount_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QList<double>>("asked");

    QTest::newRow("none") << 0 << u"0 pictures: Lake"_s << QList<double>{0};
    QTest::newRow("one") << 1 << u"1 picture: Lake"_s << QList<double>();
    QTest::newRow("two") << 2 << u"2 pictures: Lake"_s << QList<double>{2};
    QTest::newRow("twenty-one") << 21 << u"21 pictures: Lake"_s << QList<double>{21};
}

void tst_PlaylistMessage::theFormFollowsTheCount()
{
    QFETCH(int, count);
    QFETCH(QString, message);
    QFETCH(QList<double>, asked);

    usePlaylist(u"Lake"_s);
    add(count);
    QCOMPARE(m_model->getImagesAddedMessage(), message);
    QCOMPARE(table.pluralCounts, asked);
}

void tst_PlaylistMessage::whatWasThereAlreadyDoesNotCount()
{
    usePlaylist(u"Lake"_s);
    QCOMPARE(m_model->getImagesAddedMessage(), u"0 pictures: Lake"_s); // nothing has been added yet
    add(3);
    QCOMPARE(m_model->getImagesAddedMessage(), u"3 pictures: Lake"_s);
    add(4); // three of them are there
    QCOMPARE(m_model->getImagesAddedMessage(), u"1 picture: Lake"_s);
    add(4);
    QCOMPARE(m_model->getImagesAddedMessage(), u"0 pictures: Lake"_s);
    QCOMPARE(table.pluralCounts, QList<double>({0, 3, 0}));
}

void tst_PlaylistMessage::deletingDoesNotChangeTheCount()
{
    usePlaylist(u"Lake"_s);
    add(3);
    m_model->deleteImages(m_model->activeId(), {u"/p/0.jpg"_s, u"/p/1.jpg"_s});
    m_model->deleteImage(m_model->activeId(), u"/p/2.jpg"_s);
    QCOMPARE(m_model->getImagesAddedMessage(), u"3 pictures: Lake"_s);
    m_model->addImagesToPlaylist({});
    QCOMPARE(m_model->getImagesAddedMessage(), u"0 pictures: Lake"_s);
}

void tst_PlaylistMessage::aFailedInsertCounts()
{
    usePlaylist(u"Lake"_s);
    QVERIFY(stored_database::execute(
        {u"CREATE TRIGGER refuse BEFORE INSERT ON playlist_images BEGIN SELECT RAISE(ABORT, 'refused'); END"_s}));
    {
        const StderrCapture output;
        add(2);
        QCOMPARE(output.logLines(u"picture_stand/src/datastorage"_s).size(), 2);
    }
    QVERIFY(stored_database::execute({u"DROP TRIGGER refuse"_s}));
    QCOMPARE(m_model->getImagesAddedMessage(), u"2 pictures: Lake"_s);
}

void tst_PlaylistMessage::titlesAreTranslated()
{
    usePlaylist(u"@DefaultPlaylist"_s);
    add(1);
    QCOMPARE(m_model->getImagesAddedMessage(), u"1 picture: Default"_s);
    table.title = "Vorgabe \xc3\xa4";
    QCOMPARE(m_model->getImagesAddedMessage(), u"1 picture: Vorgabe \u00e4"_s);
    table.title = QByteArray();
    QCOMPARE(m_model->getImagesAddedMessage(), u"1 picture: @DefaultPlaylist"_s);
}

void tst_PlaylistMessage::titlesAreNoFormats_data()
{
    QTest::addColumn<QString>("title");

    QTest::newRow("conversions") << u"%s %n %d %% %"_s;
    QTest::newRow("markup") << u"<b>Lake</b> & \"more\""_s;
    QTest::newRow("places") << u"%1 %2"_s;
    QTest::newRow("outside the first plane") << u"\U0001F3D6\u00df"_s;
    QTest::newRow("another key") << u"@NoSuchText"_s;
    QTest::newRow("empty") << u""_s;
}

void tst_PlaylistMessage::titlesAreNoFormats()
{
    QFETCH(QString, title);

    usePlaylist(title);
    add(2);
    QCOMPARE(m_model->getImagesAddedMessage(), u"2 pictures: "_s + title);
}

void tst_PlaylistMessage::formatsAreChecked_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QString>("tail"); // behind the count, empty for the default

    QTest::newRow("beside one another") << QByteArray("%s%s") << u"Lake"_s;
    QTest::newRow("with a percent sign") << QByteArray("%s (100%%): %s %%") << u" (100%): Lake %"_s;
    QTest::newRow("with words of another script") << QByteArray("%s \xe2\x86\x92 %s") << u" \u2192 Lake"_s;
    QTest::newRow("no text") << QByteArray() << QString();
    QTest::newRow("empty") << QByteArray("") << QString();
    QTest::newRow("no conversion") << QByteArray("added") << QString();
    QTest::newRow("one conversion") << QByteArray("%s added") << QString();
    QTest::newRow("three conversions") << QByteArray("%s %s %s") << QString();
    QTest::newRow("a number") << QByteArray("%d to %s") << QString();
    QTest::newRow("a write") << QByteArray("%s %s %n") << QString();
    QTest::newRow("a width") << QByteArray("%9999999s %s") << QString();
    QTest::newRow("a place") << QByteArray("%2$s %1$s") << QString();
    QTest::newRow("a length") << QByteArray("%ls %s") << QString();
    QTest::newRow("a percent sign at the end") << QByteArray("%s %s %") << QString();
    QTest::newRow("a percent sign before a blank") << QByteArray("%s % s %s") << QString();
}

void tst_PlaylistMessage::formatsAreChecked()
{
    QFETCH(QByteArray, format);
    QFETCH(QString, tail);

    usePlaylist(u"Lake"_s);
    table.singular = format;
    table.plural = format;
    const auto prefix
        = [&](int count) { return format.startsWith("%s") ? QString::number(count) : QString(); };
    add(1);
    QCOMPARE(m_model->getImagesAddedMessage(),
             tail.isEmpty() ? u"1 picture was added to Lake"_s : prefix(1) + tail);
    add(2, 1);
    QCOMPARE(m_model->getImagesAddedMessage(),
             tail.isEmpty() ? u"2 pictures were added to Lake"_s : prefix(2) + tail);
}

void tst_PlaylistMessage::longMessagesAreCut_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("message");

    const QString front = u"2 pictures: "_s; // 12 bytes
    const QString replacement(QChar::ReplacementCharacter);
    QTest::newRow("just fits") << QString(243, u'x') << front + QString(243, u'x');
    QTest::newRow("one byte too many") << QString(244, u'x') << front + QString(243, u'x');
    QTest::newRow("very long") << QString(100'000, u'x') << front + QString(243, u'x');
    QTest::newRow("a two-byte character that just fits")
        << QString(241, u'x') + u"\u00e4\u00e4"_s << front + QString(241, u'x') + u"\u00e4"_s;
    QTest::newRow("a two-byte character split")
        << QString(242, u'x') + u"\u00e4y"_s << front + QString(242, u'x') + replacement;
    QTest::newRow("all behind the cut is gone")
        << QString(243, u'x') + u"\u00e4"_s << front + QString(243, u'x');
}

void tst_PlaylistMessage::longMessagesAreCut()
{
    QFETCH(QString, title);
    QFETCH(QString, message);

    usePlaylist(title);
    add(2);
    QCOMPARE(m_model->getImagesAddedMessage(), message);
}

void tst_PlaylistMessage::anUnknownPlaylistIsOutOfRange_data()
{
    QTest::addColumn<int>("playlists");
    QTest::addColumn<qlonglong>("active");

    QTest::newRow("no playlists") << 0 << -1LL;
    QTest::newRow("none active") << 2 << -1LL;
    QTest::newRow("an unknown one active") << 3 << 99LL;
}

void tst_PlaylistMessage::anUnknownPlaylistIsOutOfRange()
{
    QFETCH(int, playlists);
    QFETCH(qlonglong, active);

    for (int i = 0; i < playlists; ++i)
        m_model->addItem(u"Lake"_s);
    m_model->setActiveId(active);
    QByteArray what;
    try {
        m_model->getImagesAddedMessage();
    } catch (const std::out_of_range &error) {
        what = error.what();
    }
    const QByteArray row = QByteArray::number(qulonglong(std::size_t(-1)));
    QCOMPARE(what,
             "vector::_M_range_check: __n (which is " + row + ") >= this->size() (which is "
                 + QByteArray::number(playlists) + ")");
}

void tst_PlaylistMessage::anUnknownPlaylistEndsTheProcess()
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {u"message-without-playlist"_s});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitStatus(), QProcess::CrashExit);
    QCOMPARE(child.exitCode(), SIGABRT);
    const QByteArray error = child.readAllStandardError();
    QVERIFY2(error.contains("vector::_M_range_check: __n (which is "), error.constData());
    QVERIFY2(child.readAllStandardOutput().isEmpty(), "the process went on");
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().value(1) == "message-without-playlist"_L1) {
        const rlimit noCore{0, 0};
        ::setrlimit(RLIMIT_CORE, &noCore);
        PlaylistModel model;
        std::puts(qPrintable(model.getImagesAddedMessage()));
        return 0;
    }
    tst_PlaylistMessage test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_playlist_message.moc"
