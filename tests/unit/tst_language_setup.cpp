// The language of the environment, each time in a process of its own, as the program sets it up before
// anything else.

#include "language_setup.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

const QString configPath = u"/mnt/ext1/system/config/global.cfg"_s;
const QString aliasPath = u"/devroot/share/locale/locale.alias"_s;

bool put(const QString &path, const QByteArray &contents)
{
    QFile::remove(path);
    if (contents == "missing")
        return true;
    QDir().mkpath(QFileInfo(path).path());
    if (contents == "a pipe")
        return ::mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
    QFile file(path);
    if (contents == "sparse") {
        constexpr qint64 moreThanMemory = 1LL << 42;
        return file.open(QIODevice::WriteOnly) && file.write("de de_DE\n") > 0 && file.resize(moreThanMemory);
    }
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

} // namespace

class tst_LanguageSetup : public QObject
{
    Q_OBJECT

private slots:
    void language_data();
    void language();
    void everyByte();
};

void tst_LanguageSetup::language_data()
{
    QTest::addColumn<QByteArray>("config");
    QTest::addColumn<QByteArray>("aliases");
    QTest::addColumn<QByteArray>("lang"); // "inherited" is what the child starts with

    const QByteArray german = "language=de\n";
    const QByteArray aliases = "en en_GB.UTF-8\nde de_DE.UTF-8\nder wrong\nde de_AT.UTF-8\n";
    QTest::newRow("an entry") << german << aliases << QByteArray("de_DE.UTF-8"); // of two the first
    QTest::newRow("no configuration: en") << QByteArray("missing") << aliases << QByteArray("en_GB.UTF-8");
    QTest::newRow("an empty configuration: en") << QByteArray() << aliases << QByteArray("en_GB.UTF-8");
    QTest::newRow("CR LF") << QByteArray("language=de\r\n") << aliases << QByteArray("de_DE.UTF-8");
    QTest::newRow("a key twice: the last")
        << QByteArray("language=en\nlanguage=de\n") << aliases << QByteArray("de_DE.UTF-8");
    QTest::newRow("no alias file") << german << QByteArray("missing") << QByteArray("inherited");
    QTest::newRow("an alias file that would block")
        << german << QByteArray("a pipe") << QByteArray("inherited");
    QTest::newRow("an empty alias file") << german << QByteArray() << QByteArray("inherited");
    QTest::newRow("no such language") << QByteArray("language=xx\n") << aliases << QByteArray("inherited");
    QTest::newRow("a longer name does not count")
        << QByteArray("language=d\n") << aliases << QByteArray("inherited");
    QTest::newRow("letters count") << QByteArray("language=DE\n") << aliases << QByteArray("inherited");
    QTest::newRow("one token: an empty LANG") << german << QByteArray("de\nde de_DE.UTF-8\n") << QByteArray();
    QTest::newRow("one token on the line before")
        << german << QByteArray("en\nde de_DE\n") << QByteArray("de_DE");
    QTest::newRow("further tokens, blanks and tabs")
        << german << QByteArray("\n  \t de \t de_CH.UTF-8 # Swiss\n") << QByteArray("de_CH.UTF-8");
    QTest::newRow("an empty language is that of a blank line: an empty LANG")
        << QByteArray("language=\n") << QByteArray("de de_DE\n\nen en_GB\n") << QByteArray();
    QTest::newRow("an empty language without a blank line")
        << QByteArray("language=\n") << QByteArray("de de_DE\nen en_GB\n") << QByteArray("inherited");
    QTest::newRow("a last line without end") << german << QByteArray("de de_LU") << QByteArray("de_LU");
    QTest::newRow("a line of a megabyte, and bytes that are no text")
        << german << "\xff\xfe " + QByteArray(1 << 20, 'x') + "\nde de_DE\n"
        << QByteArray("de_DE");
    QTest::newRow("a line that does not end in memory: found before")
        << german << QByteArray("sparse") << QByteArray("de_DE");
    QTest::newRow("a line that does not end in memory: not found")
        << QByteArray("language=fr\n") << QByteArray("sparse") << QByteArray("inherited");
    QTest::newRow("behind 4 MiB") << german << QByteArray(4 << 20, '\n') + "de de_DE\n"
                                  << QByteArray("inherited");
    QTest::newRow("cut off by that") << german << QByteArray((4 << 20) - 5, '\n') + "de de_DE\n"
                                     << QByteArray("inherited");
}

void tst_LanguageSetup::language()
{
    QFETCH(QByteArray, config);
    QFETCH(QByteArray, aliases);
    QFETCH(QByteArray, lang);

    QVERIFY(put(configPath, config) && put(aliasPath, aliases));
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LANG"_s, u"inherited"_s);
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), {u"--set-up"_s});
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitCode(), 0);
    QCOMPARE(child.readAllStandardOutput(), lang);
}

/// In the middle of a language. Here, as a program of its own for each would take a while.
void tst_LanguageSetup::everyByte()
{
    QByteArray aliases;
    for (int byte = 1; byte < 256; ++byte)
        aliases += "a" + QByteArray(1, char(byte)) + "b locale_" + QByteArray::number(byte) + '\n';
    for (int byte = 1; byte < 256; ++byte) {
        if (byte == '\n') // ends the line
            continue;
        QVERIFY(put(configPath, "language=a" + QByteArray(1, char(byte)) + "b\n") && put(aliasPath, aliases));
        QVERIFY(qputenv("LANG", "inherited"));
        lindenreed::picture_stand::setUpLanguage();
        // Blanks end the words of an alias: no language has one.
        const bool isBlank = std::isspace(static_cast<unsigned char>(byte));
        const QByteArray expected = isBlank ? QByteArray("inherited") : "locale_" + QByteArray::number(byte);
        QVERIFY2(qgetenv("LANG") == expected, QByteArray::number(byte) + ": " + qgetenv("LANG"));
    }
}

int main(int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--set-up") == 0) {
        lindenreed::picture_stand::setUpLanguage();
        const char *lang = std::getenv("LANG");
        return lang && std::fputs(lang, stdout) >= 0 ? 0 : 1;
    }
    QCoreApplication application(argc, argv);
    tst_LanguageSetup test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_language_setup.moc"
