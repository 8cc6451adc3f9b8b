// Configuration files: what counts as a line, and what never does harm.

#include <configuration.h>

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace lindenreed::device;

class tst_Configuration : public QObject
{
    Q_OBJECT

private slots:
    void missingFile();
    void neverOpenedNames();
    void text_data();
    void text();
    void integer_data();
    void integer();
    void longLine();
    void linesWithoutEqualsSign();
    void sparseFile();
    void valueThatIsCutOff();
    void readOnceOnly();

private:
    QByteArray write(const QByteArray &content)
    {
        const QString path = m_folder.filePath(QStringLiteral("global.cfg"));
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("The test's file cannot be written.");
        return QFile::encodeName(path);
    }

    QTemporaryDir m_folder;
};

void tst_Configuration::missingFile()
{
    const Configuration configuration = Configuration::read("/nowhere/global.cfg");
    QVERIFY(!configuration.text("language"));
    QVERIFY(!configuration.integer("language"));
}

void tst_Configuration::neverOpenedNames()
{
    const QByteArray pipe = QFile::encodeName(m_folder.filePath(QStringLiteral("pipe")));
    QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
    QVERIFY(!Configuration::read(pipe).text("a")); // would wait for a writer for ever
    QVERIFY(!Configuration::read("/dev/zero").text("a")); // would never end
    QVERIFY(!Configuration::read(QFile::encodeName(m_folder.path())).text("a"));
    QVERIFY(!Configuration::read("").text("a"));
}

void tst_Configuration::text_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<bool>("found");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray none;
    QTest::newRow("empty file") << none << QByteArray("a") << false << none;
    QTest::newRow("one line") << QByteArray("a=b\n") << QByteArray("a") << true << QByteArray("b");
    QTest::newRow("no line end") << QByteArray("a=b") << QByteArray("a") << true << QByteArray("b");
    QTest::newRow("CR LF") << QByteArray("a=b\r\nc=d\r\n") << QByteArray("a") << true << QByteArray("b");
    QTest::newRow("CR LF on the second line")
        << QByteArray("a=b\r\nc=d\r\n") << QByteArray("c") << true << QByteArray("d");
    QTest::newRow("CR at the very end") << QByteArray("a=b\r") << QByteArray("a") << true << QByteArray("b");
    QTest::newRow("CR alone is part of a value")
        << QByteArray("a=b\rc\n") << QByteArray("a") << true << QByteArray("b\rc");
    QTest::newRow("key twice, the last wins")
        << QByteArray("a=b\na=c\n") << QByteArray("a") << true << QByteArray("c");
    QTest::newRow("empty value") << QByteArray("a=\n") << QByteArray("a") << true << none;
    QTest::newRow("value with equals sign")
        << QByteArray("a=b=c\n") << QByteArray("a") << true << QByteArray("b=c");
    QTest::newRow("blanks are kept") << QByteArray("a= b \n") << QByteArray("a") << true << QByteArray(" b ");
    QTest::newRow("blank before the equals sign belongs to the key")
        << QByteArray("a =b\n") << QByteArray("a") << false << none;
    QTest::newRow("other case is another key") << QByteArray("A=b\n") << QByteArray("a") << false << none;
    QTest::newRow("no equals sign") << QByteArray("a\nb=c\n") << QByteArray("a") << false << none;
    QTest::newRow("line after one without equals sign")
        << QByteArray("a\nb=c\n") << QByteArray("b") << true << QByteArray("c");
    QTest::newRow("no key") << QByteArray("=b\n") << none << false << none;
    QTest::newRow("binary bytes around") << QByteArray("\x00\xff\xfe\n\n\xc3=\x80\na=b\n\x01", 15)
                                         << QByteArray("a") << true << QByteArray("b");
    QTest::newRow("value of bytes that are no UTF-8")
        << QByteArray("a=\xff\xfe\n") << QByteArray("a") << true << QByteArray("\xff\xfe");
    QTest::newRow("comment") << QByteArray("# a\na=b\n") << QByteArray("a") << true << QByteArray("b");
}

void tst_Configuration::text()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, key);
    QFETCH(bool, found);
    QFETCH(QByteArray, expected);

    const auto value = Configuration::read(write(content)).text(key);
    QCOMPARE(value.has_value(), found);
    QCOMPARE(value.value_or(QByteArray()), expected);
}

void tst_Configuration::integer_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("found");
    QTest::addColumn<int>("expected");

    QTest::newRow("zero") << QByteArray("0") << true << 0;
    QTest::newRow("negative") << QByteArray("-17") << true << -17;
    QTest::newRow("leading zeros are decimal") << QByteArray("0150") << true << 150;
    QTest::newRow("largest") << QByteArray("2147483647") << true << 2147483647;
    QTest::newRow("smallest") << QByteArray("-2147483648") << true << int(-2147483648LL);
    QTest::newRow("one above the largest") << QByteArray("2147483648") << false << 0;
    QTest::newRow("one below the smallest") << QByteArray("-2147483649") << false << 0;
    QTest::newRow("forty digits") << QByteArray(40, '9') << false << 0;
    QTest::newRow("empty") << QByteArray() << false << 0;
    QTest::newRow("letters") << QByteArray("abc") << false << 0;
    QTest::newRow("number and letters") << QByteArray("12px") << false << 0;
    QTest::newRow("number and blank") << QByteArray("12 ") << false << 0;
    QTest::newRow("blank and number") << QByteArray(" 12") << false << 0;
    QTest::newRow("fraction") << QByteArray("1.5") << false << 0;
    QTest::newRow("hexadecimal") << QByteArray("0x10") << false << 0;
}

void tst_Configuration::integer()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, found);
    QFETCH(int, expected);

    const auto number = Configuration::read(write("n=" + value + "\n")).integer("n");
    QCOMPARE(number.has_value(), found);
    QCOMPARE(number.value_or(0), expected);
}

void tst_Configuration::longLine()
{
    const QByteArray megabyte(1 << 20, 'x');
    const Configuration configuration = Configuration::read(write(megabyte + "\na=" + megabyte + "\nb=1\n"));
    QCOMPARE(configuration.text("a"), std::optional(megabyte));
    QCOMPARE(configuration.integer("b"), std::optional(1));
}

void tst_Configuration::linesWithoutEqualsSign()
{
    // Each is looked through once; all of the rest for each of them would take an hour.
    const Configuration configuration = Configuration::read(write(QByteArray(3 << 20, '\n') + "a=1\n"));
    QCOMPARE(configuration.integer("a"), std::optional(1));
    QCOMPARE(configuration.keys(), QByteArrayList{"a"});
}

void tst_Configuration::sparseFile()
{
    const QByteArray path = write("a=1\nb=");
    constexpr qint64 moreThanMemory = 1LL << 42;
    if (::truncate(path.constData(), moreThanMemory) != 0)
        QSKIP("this file system does not hold such files");
    const Configuration configuration = Configuration::read(path);
    QCOMPARE(configuration.integer("a"), std::optional(1));
    QCOMPARE(configuration.keys(), QByteArrayList{"a"});
}

void tst_Configuration::valueThatIsCutOff()
{
    constexpr qsizetype most = 4 << 20;
    const QByteArray before = QByteArray(most - 5, '\n') + "a=1\n";
    QCOMPARE(Configuration::read(write(before + "b=17")).keys(), QByteArrayList{"a"});
    const QByteArray filled = QByteArray(most - 8, '\n') + "a=1\nb=17"; // up to the last byte
    QCOMPARE(Configuration::read(write(filled + "00\n")).keys(), QByteArrayList{"a"});
}

void tst_Configuration::readOnceOnly()
{
    const Configuration configuration = Configuration::read(write("a=1\n"));
    write("a=2\n");
    QCOMPARE(configuration.integer("a"), std::optional(1));
}

QTEST_APPLESS_MAIN(tst_Configuration)
#include "tst_configuration.moc"
