// How much text a PNG may hold.

#include "hostile_bombs.h"
#include "png_texts.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using lindenreed::picture_stand::hasBearableTexts;

class tst_PngTexts : public QObject
{
    Q_OBJECT

private slots:
    void texts_data();
    void texts();
};

void tst_PngTexts::texts_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<bool>("bearable");

    using namespace hostile;
    const auto with = [](const QByteArray &chunks) { return png(10, 10, 8, 2, 310, chunks); };
    const QByteArray plain("C\0", 2);
    const QByteArray packedText("C\0\0", 3);
    const QByteArray packedWithLanguage("C\0\1\0en\0Name\0", 12);
    const QByteArray megabyte = packed(QByteArray(1024 * 1024, 'A'));
    const QByteArray almostAll = packed(QByteArray(4'000'000, 'A'));

    QTest::newRow("no text") << with({}) << true;
    QTest::newRow("a plain text") << with(pngChunk("tEXt", plain + "a lake")) << true;
    QTest::newRow("plain texts of 5 MB")
        << with(pngChunk("tEXt", plain + QByteArray(1'000'000, 'A')).repeated(5)) << false;
    QTest::newRow("a packed text of 4 MB") << with(pngChunk("zTXt", packedText + almostAll)) << true;
    QTest::newRow("and one more") << with(pngChunk("zTXt", packedText + almostAll)
                                          + pngChunk("zTXt", packedText + megabyte))
                                  << false;
    QTest::newRow("packed texts with a language")
        << with(pngChunk("iTXt", packedWithLanguage + megabyte).repeated(4)) << false;
    QTest::newRow("three of them") << with(pngChunk("iTXt", packedWithLanguage + megabyte).repeated(3))
                                   << true;
    QTest::newRow("a text of 7 GB") << with(pngChunk("zTXt", packedText + megabyte).repeated(7000)) << false;
    QTest::newRow("behind the pixels")
        << with({}).chopped(12) + pngChunk("zTXt", packedText + megabyte).repeated(5) << false;
    QTest::newRow("behind the end") << with({}) + pngChunk("zTXt", packedText + megabyte).repeated(5) << true;
    QTest::newRow("a packed text that is damaged")
        << with(pngChunk("zTXt", packedText + "\xff\xff\xff")) << true;
    QTest::newRow("texts without a key")
        << with(pngChunk("zTXt", "C") + pngChunk("iTXt", "C") + pngChunk("iTXt", {})) << true;
    QTest::newRow("a key and nothing behind it")
        << with(pngChunk("zTXt", plain) + pngChunk("iTXt", QByteArray("C\0\1\0en", 6))) << true;
    QTest::newRow("cut off") << with(pngChunk("zTXt", packedText + megabyte)).first(60) << true;
    QTest::newRow("a chunk of 4 GB") << with(big32(0xffffffff) + "tEXt") << false;
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("another format") << QByteArray("BM") + with({}) << true;
}

void tst_PngTexts::texts()
{
    QFETCH(QByteArray, contents);
    QFETCH(bool, bearable);

    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.png")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size());
    file.close();
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(hasBearableTexts(file), bearable);
    QCOMPARE(file.pos(), 0); // where the decoder begins
}

QTEST_GUILESS_MAIN(tst_PngTexts)
#include "tst_png_texts.moc"
