// SVG files, which a process of their own draws: as a reader within the program would, or not at all.

#include "file_calls.h"
#include "hostile_bombs.h"
#include "panel_application.h"
#include "picture_cache.h"
#include "picture_fixture.h"
#include "regular_file.h"
#include "svg_reader.h"

#include <QImageReader>
#include <QLibraryInfo>
#include <QVersionNumber>

#include <memory>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace lindenreed::picture_stand;

class tst_SvgReader : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<PictureFixture>(); }
    void cleanup() { m_test.reset(); }
    void recognised_data();
    void recognised();
    void sameAsWithin_data();
    void sameAsWithin();
    void packed();
    void anotherByItsName_data();
    void anotherByItsName();
    void longText();
    void memoryOfTheMachine_data();
    void memoryOfTheMachine();
    void memoryIsAskedForAgain();
    void endsApart_data();
    void endsApart();

private:
    QString put(const QString &name, const QByteArray &contents)
    {
        QFile file(m_test->folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
            return {};
        return file.fileName();
    }

    static QImage drawn(const QString &path, SvgFit fit, QSize box)
    {
        PictureFile file(path);
        return openRegularFile(file) ? readSvg(file, fit, box) : QImage();
    }

    std::unique_ptr<PictureFixture> m_test;
};

/// <svg xmlns="http://www.w3.org/2000/svg" width="9" height="5"><rect width="4" height="5"/></svg>
static QByteArray packedSvg()
{
    return QByteArray::fromHex("1f8b0800000000000203b3292e4b57a8c8cdc92bb655ca282929b0d2d72f"
                               "2f2fd72b37d6cb2f4ad737323030d007aa505228cf4c29c9b055b25452c8"
                               "48cd4ccf28b1553255b2b3294a4d2e814999204be9dbd980f4d901003fa9"
                               "8bf85f000000");
}

void tst_SvgReader::recognised_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<bool>("expected");

    QTest::newRow("SVG") << u"a.svg"_s << hostile::svg({}) << true;
    QTest::newRow("SVG by another name") << u"a.jpg"_s << hostile::svg({}) << true;
    QTest::newRow("packed SVG") << u"a.png"_s << packedSvg() << true;
    QTest::newRow("PNG by the name of an SVG") << u"a.svg"_s << hostile::png(1, 1, 8, 0, 2) << false;
    QTest::newRow("no picture") << u"a.svg"_s << QByteArray("a lake") << false;
}

void tst_SvgReader::recognised()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, contents);
    QFETCH(bool, expected);

    QFile file(put(name, contents));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(isSvg(QImageReader(&file)), expected);
    QCOMPARE(file.pos(), 0); // where the decoder begins
}

void tst_SvgReader::sameAsWithin_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::addColumn<QSize>("box");

    QTest::newRow("smaller than the box") << QByteArray("90") << QSize(300, 200);
    QTest::newRow("larger") << QByteArray("5000") << QSize(300, 200);
    QTest::newRow("as wide as the box") << QByteArray("300") << QSize(300, 400);
    QTest::newRow("one pixel") << QByteArray("1") << QSize(300, 400);
}

void tst_SvgReader::sameAsWithin()
{
    QFETCH(QByteArray, size);
    QFETCH(QSize, box);

    const QString path = put(u"a.svg"_s,
                             hostile::svg("<rect x=\"9\" y=\"5\" width=\"50\" height=\"33\" fill=\"red\" "
                                          "opacity=\"0.5\"/><text x=\"9\" y=\"60\">Lake</text>",
                                          size));
    QImageReader reader(path);
    if (reader.size().width() > box.width() || reader.size().height() > box.height())
        reader.setScaledSize(reader.size().scaled(box, Qt::KeepAspectRatio));
    const QImage within = reader.read();
    QVERIFY(!within.isNull());
    QCOMPARE(drawn(path, SvgFit::Within, box), within);
    QCOMPARE(drawn(path, SvgFit::Cover, box),
             QImage(path).scaled(box, Qt::KeepAspectRatio, Qt::FastTransformation));
}

void tst_SvgReader::packed()
{
    const QString path = put(u"a.svg"_s, packedSvg());
    const QImage within(path);
    QCOMPARE(within.size(), QSize(9, 5));
    QCOMPARE(drawn(path, SvgFit::Within, {300, 200}).convertToFormat(within.format()), within);
}

void tst_SvgReader::anotherByItsName_data()
{
    QTest::addColumn<bool>("fifo");

    QTest::newRow("a FIFO") << true; // opening it would wait for ever
    QTest::newRow("nothing") << false;
}

void tst_SvgReader::anotherByItsName()
{
    QFETCH(bool, fifo);

    const QString path = put(u"a.svg"_s, hostile::svg("<rect width=\"50\" height=\"33\"/>"));
    const QImage expected = drawn(path, SvgFit::Within, {300, 200});
    QVERIFY(!expected.isNull());
    PictureFile file(path);
    QVERIFY(openRegularFile(file) && isSvg(QImageReader(&file)));
    QVERIFY(QFile::remove(path));
    if (fifo)
        QCOMPARE(::mkfifo(path.toLocal8Bit().constData(), 0600), 0);
    QCOMPARE(readSvg(file, SvgFit::Within, {300, 200}), expected);
}

void tst_SvgReader::longText()
{
    const qsizetype most = svgMemory(readTotalMemory("/proc/meminfo").value_or(0)) / 6;
    const QByteArray text = hostile::svg("<rect width=\"50\" height=\"33\"/>");
    for (const qsizetype size : {most, most + 1}) {
        const QString path = put(u"a.svg"_s, text + QByteArray(size - text.size(), ' '));
        QCOMPARE(drawn(path, SvgFit::Within, {300, 200}).isNull(), size > most);
    }
}

void tst_SvgReader::memoryOfTheMachine_data()
{
    QTest::addColumn<qint64>("machine");
    QTest::addColumn<qint64>("memory");

    constexpr qint64 mebibyte = 1024 * 1024;
    QTest::newRow("small") << 252 * mebibyte << 84 * mebibyte;
    QTest::newRow("enough") << 576 * mebibyte << 192 * mebibyte;
    QTest::newRow("large") << 64 * 1024 * mebibyte << 192 * mebibyte;
    QTest::newRow("unknown") << qint64(0) << 192 * mebibyte;
}

void tst_SvgReader::memoryOfTheMachine()
{
    QFETCH(qint64, machine);

    QTEST(svgMemory(machine), "memory");
}

void tst_SvgReader::memoryIsAskedForAgain()
{
    // Once there was no handle for it, which is no answer for good.
    int asked = 0;
    const FileCalls calls("/proc", [&asked](FileCall &call) {
        if (call.kind == FileCall::Open && qstrcmp(call.path, "/proc/meminfo") == 0 && asked++ == 0)
            call.error = EMFILE;
    });
    const QString path = put(u"a.svg"_s, hostile::svg({}));
    QVERIFY(!drawn(path, SvgFit::Within, {20, 20}).isNull());
    QVERIFY(!drawn(path, SvgFit::Within, {20, 20}).isNull());
    QCOMPARE(asked, 2);
}

void tst_SvgReader::endsApart_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<bool>("shown");

    const auto path = [](const QByteArray &name) {
        return "<image width=\"9\" height=\"9\" xlink:href=\"" + name + "\"/>";
    };
    const QByteArray self = QDir::tempPath().toUtf8() + "/self.svg";
    QTest::newRow("a picture within itself")
        << hostile::svg(path(self)) << (QLibraryInfo::version() >= QVersionNumber(6, 8)); // without it
    QTest::newRow("no end") << hostile::svg({}).chopped(6) + "<" << false;
    QTest::newRow("empty") << QByteArray() << false;
#ifndef __SANITIZE_ADDRESS__ // which knows no limit
    QTest::newRow("more elements than memory")
        << hostile::svg(QByteArray("<g/>").repeated(1'500'000)) << false;
#endif
}

void tst_SvgReader::endsApart()
{
    QFETCH(QByteArray, contents);
    QFETCH(bool, shown);

    QFile file(QDir::tempPath() + u"/self.svg"_s);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size());
    file.close();
    QCOMPARE(!drawn(file.fileName(), SvgFit::Within, {300, 200}).isNull(), shown);
    QCOMPARE(!drawn(file.fileName(), SvgFit::Cover, {300, 200}).isNull(), shown);
    file.remove();
    QVERIFY(drawn(file.fileName(), SvgFit::Within, {300, 200}).isNull());
}

PANEL_TEST_MAIN(tst_SvgReader)
#include "tst_svg_reader.moc"
