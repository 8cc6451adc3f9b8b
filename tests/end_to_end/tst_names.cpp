// Names of any characters on the real program: files, folders, playlists, language and font.

#include "show_device.h"
#include "stored_database.h"

#include <QDir>
#include <QSet>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString folder = u"/mnt/ext1/Photo/a\n\x1b[2J\t\x7f\u0085\u2028'\"%1 $(x)"_s;

/// Control characters, separators, what SQL, URLs, formats and rich text read, and what is no letter at all.
QStringList titles()
{
    QString controls;
    for (char16_t character = 1; character < 0x20; ++character)
        controls += QChar(character);
    QString more;
    for (char16_t character = 0x7f; character < 0xa1; ++character)
        more += QChar(character);
    return {u"first "_s + controls, u"second "_s + more,
            u"third '; DROP TABLE playlists; -- \"%1 %s %n <b>&amp;</b> \\ \u2028\u2029\u202e\ufeff\ufffd"_s};
}

QString hexText(const QString &text)
{
    return u"CAST(x'"_s + QString::fromLatin1(text.toUtf8().toHex()) + u"' AS TEXT)"_s;
}

bool write(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

} // namespace

class tst_Names : public QObject
{
    Q_OBJECT

private slots:
    void everyCharacter();

private:
    static bool isOneLine(const QByteArray &line);
};

/// Neither cut in two nor steering the terminal that it is shown on.
bool tst_Names::isOneLine(const QByteArray &line)
{
    for (const QChar character : QString::fromUtf8(line)) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator)
            return false;
    }
    return true;
}

void tst_Names::everyCharacter()
{
    QVERIFY(QDir().mkpath(folder));
    QStringList pictures;
    for (int byte = 1; byte < 128; ++byte) {
        if (byte == '/')
            continue;
        pictures.append(folder + u"/a"_s + QChar(byte) + u".jpg"_s);
        QVERIFY(write(pictures.last(), "P6 1 1 255 abc"));
    }
    QVERIFY(write(u"/mnt/ext1/system/config/global.cfg"_s, "language=x\x1b[2J\xff\r\r\n"));
    stored_database::remove();
    QVERIFY(ShowDevice().start()); // which makes the database
    QStringList statements{
        u"UPDATE settings SET value = '0' WHERE name = 'is_first_run'"_s,
        u"UPDATE settings SET value = %1 WHERE name LIKE '%_date_font'"_s.arg(hexText(titles().at(0))),
        u"DELETE FROM playlist_images"_s, u"DELETE FROM playlists"_s};
    for (int i = 0; i < 3; ++i)
        statements.append(u"INSERT INTO playlists VALUES(%1, %2)"_s.arg(i + 1).arg(hexText(titles().at(i))));
    for (const QString &path : std::as_const(pictures))
        statements.append(u"INSERT INTO playlist_images (url, playlist) VALUES (%1, 1)"_s.arg(hexText(path)));
    QVERIFY(stored_database::execute(statements));

    const QTemporaryDir said;
    ShowDevice device;
    device.program().setStandardErrorFile(said.filePath(u"said"_s));
    QVERIFY(device.start());
    QStringList names;
    for (const QJsonObject &item : device.items())
        names.append(item.value("name"_L1).toString());
    for (const QString &title : titles())
        QVERIFY2(
            std::ranges::any_of(names, [&](const QString &name) { return name.startsWith(title + u'.'); }),
            qPrintable(title));

    // The playlist's pictures, page by page.
    QVERIFY(device.tap(300, 200));
    QSet<QString> seen;
    const auto look = [&] {
        for (const QJsonObject &item : device.items())
            seen.insert(item.value("name"_L1).toString());
        return std::ranges::all_of(
            pictures, [&](const QString &path) { return seen.contains(path.section(u'/', -1)); });
    };
    for (int page = 0; page < 40 && !look(); ++page)
        device.does(u"press"_s, {{u"name"_s, u"Next page"_s}});
    QVERIFY(look());
    QVERIFY(device.press(u"Back"_s));

    QVERIFY(device.press(u"#play_button"_s));
    for (int i = 0; i < 126; ++i) {
        QVERIFY(device.does(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}}));
        QVERIFY(device.state().value("ok"_L1).toBool());
    }
    QVERIFY(!device.journal().isEmpty());
    QVERIFY(device.does(u"quit"_s));
    QTRY_COMPARE(device.program().state(), QProcess::NotRunning);
    QCOMPARE(device.program().exitCode(), 0);

    QFile file(said.filePath(u"said"_s));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArrayList lines = file.readAll().split('\n');
    QCOMPARE(std::ranges::count_if(lines,
                                   [](const QByteArray &line) {
                                       return line.startsWith("add image /mnt/ext1/Photo/a\\n\\x1b[2J");
                                   }),
             126);
    for (const QByteArray &line : lines) {
        if (!line.startsWith("FRONTLIGHT ")) // has a tab of its own
            QVERIFY2(isOneLine(line.endsWith('\r') ? line.chopped(1) : line), line.constData());
    }
}

QTEST_GUILESS_MAIN(tst_Names)
#include "tst_names.moc"
