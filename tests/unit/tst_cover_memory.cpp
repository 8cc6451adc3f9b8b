// Which thumbnails are remembered, for how long, and how they are handed over again.

#include "finished_cover.h"
#include "panel_application.h"
#include "picture_fixture.h"

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::AsyncImageResponse;

class tst_CoverMemory : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<PictureFixture>(); }
    void cleanup() { m_test.reset(); }

    void secondRequestReadsNothing();
    void twoSizesAreTwoEntries();
    void longPathGivesTheFirstSize();
    void pathWithACutLetter();
    void hitIsAUse();
    void missIsAUse();
    void inversionIsOfTheHandOver();
    void remembersWhatCannotBeShown();
    void whatIsNotThereMayCome();

private:
    std::unique_ptr<PictureFixture> m_test;
};

void tst_CoverMemory::secondRequestReadsNothing()
{
    const QString path = m_test->save(gradient({64, 64}), u"a.png"_s);
    const QImage first = cover(path, {32, 32});
    QVERIFY(QFile::remove(path));
    m_test->device.forgetCalls();
    QCOMPARE(cover(path, {32, 32}), first);
    QVERIFY(m_test->device.calls({"adjustAreaDefault", "QuickFloyd16Dither"}).isEmpty());
}

void tst_CoverMemory::twoSizesAreTwoEntries()
{
    const QString path = m_test->save(gradient({64, 64}), u"a.png"_s);
    QCOMPARE(cover(path, {32, 32}).size(), QSize(32, 32));
    QCOMPARE(cover(path, {16, 16}).size(), QSize(16, 16));
    QVERIFY(cached(path, {32, 32}) && cached(path, {16, 16}));
}

void tst_CoverMemory::longPathGivesTheFirstSize()
{
    const QString path = m_test->save(gradient({64, 64}), QString(70, u'n') + u".png"_s);
    QVERIFY(path.size() >= 70);
    QCOMPARE(cover(path, {32, 32}).size(), QSize(32, 32));
    QCOMPARE(cover(path, {16, 16}).size(), QSize(32, 32));
    // Another file, of which the name does not tell the first 62 bytes apart.
    QCOMPARE(cover(path + u"x"_s, {16, 16}).size(), QSize(32, 32));
}

void tst_CoverMemory::pathWithACutLetter()
{
    const QString start = m_test->folder.path() + u'/';
    const QString filler(61 - start.toUtf8().size(), u'n');
    const QString first = m_test->save(gradient({40, 20}), filler + u"ü.png"_s);
    const QString second = m_test->save(gradient({20, 20}), filler + u"ö.png"_s);
    QCOMPARE(cover(first, {10, 10}).size(), QSize(10, 5));
    QCOMPARE(cover(second, {10, 10}).size(), QSize(10, 5)); // the first one's
}

void tst_CoverMemory::hitIsAUse()
{
    const QString path = m_test->save(gradient({8, 8}), u"a.png"_s);
    cover(path, {1, 1});
    for (int i = 2; i <= 50; ++i)
        cover(path, {i, i});
    cover(path, {1, 1});
    cover(path, {51, 51});
    QVERIFY(cached(path, {1, 1}));
    QVERIFY(!cached(path, {2, 2}));
    QVERIFY(cached(path, {3, 3}));
}

void tst_CoverMemory::missIsAUse()
{
    // Fifty-one files that are not there: their entries count like any other.
    const QString path = m_test->save(gradient({8, 8}), u"a.png"_s);
    cover(path, {4, 4});
    for (int i = 0; i < 50; ++i) {
        QVERIFY(cached(path, {4, 4}));
        cover(m_test->folder.filePath(QString::number(i)), {4, 4});
    }
    QVERIFY(!cached(path, {4, 4}));
}

void tst_CoverMemory::inversionIsOfTheHandOver()
{
    const QString path = m_test->save(gradient({64, 64}), u"a.png"_s);
    AsyncImageResponse response(path, {32, 32});
    lindenreed::device::facts().inverted = true;
    const QImage inverted = handedOver(response);
    const QImage kept = *cached(path, {32, 32});
    QImage expected = kept.convertToFormat(inverted.format());
    expected.invertPixels(QImage::InvertRgb);
    QCOMPARE(inverted, expected);

    // The same response, and the same entry, after the screen was switched; and again.
    lindenreed::device::facts().inverted = false;
    QCOMPARE(std::unique_ptr<QQuickTextureFactory>(response.textureFactory())->image(),
             kept.convertToFormat(inverted.format()));
    QVERIFY(QFile::remove(path));
    QCOMPARE(cover(path, {32, 32}), kept.convertToFormat(inverted.format()));
    lindenreed::device::facts().inverted = true;
    QCOMPARE(cover(path, {32, 32}), inverted);
    QCOMPARE(*cached(path, {32, 32}), kept);
}

void tst_CoverMemory::remembersWhatCannotBeShown()
{
    const QString path = m_test->folder.filePath(u"late.png"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("no picture") > 0);
    file.close();
    QVERIFY(cover(path, {32, 32}).isNull());
    QVERIFY(gradient({8, 8}).save(path));
    QVERIFY(cover(path, {32, 32}).isNull());
    for (int i = 1; i <= 50; ++i) // until its place is taken
        cover(path, {i, 1});
    QVERIFY(!cover(path, {32, 32}).isNull());
}

void tst_CoverMemory::whatIsNotThereMayCome()
{
    const QString path = m_test->folder.filePath(u"away.png"_s);
    QVERIFY(cover(path, {32, 32}).isNull());
    QVERIFY(cached(path, {32, 32})->isNull()); // takes a place like any other
    m_test->device.forgetCalls();
    QVERIFY(cover(path, {32, 32}).isNull());
    QVERIFY(m_test->device.calls({"adjustAreaDefault"}).isEmpty()); // nothing is tried meanwhile
    QVERIFY(gradient({8, 8}).save(path));
    QCOMPARE(cover(path, {32, 32}).size(), QSize(32, 32));
    m_test->device.forgetCalls();
    QCOMPARE(cover(path, {32, 32}).size(), QSize(32, 32));
    QVERIFY(m_test->device.calls({"adjustAreaDefault"}).isEmpty()); // it has come, and is kept as any other
    QVERIFY(QFile::remove(path));
    QCOMPARE(cover(path, {32, 32}).size(), QSize(32, 32));
}

PANEL_TEST_MAIN(tst_CoverMemory)
#include "tst_cover_memory.moc"
