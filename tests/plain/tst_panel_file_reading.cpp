// Reading a panel file: the picture of one moment, upright, and files that are none.

#include "panel_bytes.h"
#include "panel_file.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(bytes), bytes.size());
}

void put(QByteArray &bytes, qsizetype offset, std::uint32_t value)
{
    std::memcpy(bytes.data() + offset, &value, sizeof(value));
}

} // namespace

class tst_PanelFileReading : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void snapshot();
    void snapshotKeepsItsMoment();
    void upright_data();
    void upright();
    void uprightInColour();
    void unreadable_data();
    void unreadable();
    void missing();
    void notAFile();
    void pipe();
    void busy();
    void oddOrientationInTheMiddleOfAWrite();

private:
    QString path() const { return m_folder->filePath(u"panel"_s); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_PanelFileReading::snapshot()
{
    const auto writer = PanelWriter::create({.size = {70, 3}, .dpi = 300}, path(), nullptr);
    QVERIFY(writer);
    writer->beginWrite();
    writer->header().refreshNumber = 9;
    writer->header().flags = 5;
    writer->pixels()[writer->stride() + 69] = 34;
    writer->endWrite();

    const auto panel = readPanel(path(), nullptr);
    QVERIFY(panel);
    QCOMPARE(panel->header.refreshNumber, 9u);
    QCOMPARE(panel->header.flags, 5u);
    QCOMPARE(panel->header.dpi, 300u);
    QCOMPARE(qGray(panel->glass.pixel(69, 1)), 34);
    QCOMPARE(qGray(panel->glass.pixel(69, 0)), 255);
}

void tst_PanelFileReading::snapshotKeepsItsMoment()
{
    const auto writer = PanelWriter::create({.size = {70, 3}}, path(), nullptr);
    QVERIFY(writer);
    const auto panel = readPanel(path(), nullptr);
    QVERIFY(panel);
    writer->beginWrite();
    std::memset(writer->pixels(), 0, writer->stride() * 3);
    writer->endWrite();
    QCOMPARE(qGray(panel->glass.pixel(0, 0)), 255);
    QCOMPARE(qGray(readPanel(path(), nullptr)->glass.pixel(0, 0)), 0);
}

void tst_PanelFileReading::upright_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QByteArray>("pixels"); ///< of the upright picture, row by row

    // The glass shows, row by row, 1 2 3 and 4 5 6.
    QTest::newRow("not turned") << 0 << QSize(3, 2) << QByteArray("\1\2\3\4\5\6");
    QTest::newRow("turned by 90 degrees") << 1 << QSize(2, 3) << QByteArray("\3\6\2\5\1\4");
    QTest::newRow("turned by 270 degrees") << 2 << QSize(2, 3) << QByteArray("\4\1\5\2\6\3");
    QTest::newRow("turned by 180 degrees") << 3 << QSize(3, 2) << QByteArray("\6\5\4\3\2\1");
}

void tst_PanelFileReading::upright()
{
    QFETCH(int, orientation);
    QFETCH(QSize, size);
    QFETCH(QByteArray, pixels);

    const auto writer = PanelWriter::create({.size = {3, 2}}, path(), nullptr);
    QVERIFY(writer);
    writer->beginWrite();
    writer->header().orientation = std::uint32_t(orientation);
    std::memcpy(writer->pixels(), "\1\2\3", 3);
    std::memcpy(writer->pixels() + writer->stride(), "\4\5\6", 3);
    writer->endWrite();

    const QImage picture = readPanel(path(), nullptr)->upright();
    QCOMPARE(picture.size(), size);
    QCOMPARE(picture.format(), QImage::Format_Grayscale8);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            QCOMPARE(qGray(picture.pixel(x, y)), int(pixels.at(y * size.width() + x)));
    }
}

void tst_PanelFileReading::uprightInColour()
{
    const auto writer = PanelWriter::create({.size = {2, 1}, .colour = true}, path(), nullptr);
    QVERIFY(writer);
    writer->beginWrite();
    writer->header().orientation = 1;
    std::memcpy(writer->pixels(), "\x10\x20\x30\x40\x50\x60", 6);
    writer->endWrite();
    const QImage picture = readPanel(path(), nullptr)->upright();
    QCOMPARE(picture.size(), QSize(1, 2));
    QCOMPARE(picture.pixel(0, 0), qRgb(0x40, 0x50, 0x60));
    QCOMPARE(picture.pixel(0, 1), qRgb(0x10, 0x20, 0x30));
}

void tst_PanelFileReading::unreadable_data()
{
    QTest::addColumn<QByteArray>("bytes");

    const auto changed = [](qsizetype offset, std::uint32_t value) {
        QByteArray bytes = goodPanelFile();
        put(bytes, offset, value);
        return bytes;
    };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a few bytes") << QByteArray("SLATEPNL");
    QTest::newRow("the header alone") << goodPanelFile().first(88);
    QTest::newRow("no pixels") << goodPanelFile().first(pixelsOffset);
    QTest::newRow("one byte short") << goodPanelFile().chopped(1);
    QTest::newRow("one byte more") << goodPanelFile() + '\0';
    QTest::newRow("a text") << QByteArray(8192, 'x');
    QTest::newRow("magic in lower case") << goodPanelFile().replace("SLATEPNL", "slatepnl");
    QTest::newRow("version 0") << changed(8, 0);
    QTest::newRow("version 2") << changed(8, 2);
    QTest::newRow("format 0") << changed(12, 0);
    QTest::newRow("format 3") << changed(12, 3);
    QTest::newRow("colour in the space of grey") << changed(12, 2);
    QTest::newRow("no width") << changed(16, 0);
    QTest::newRow("width beyond the stride") << changed(16, 129);
    QTest::newRow("width of all ones") << changed(16, 0xffffffff);
    QTest::newRow("no height") << changed(20, 0);
    QTest::newRow("height beyond the file") << changed(20, 4);
    QTest::newRow("height of all ones") << changed(20, 0xffffffff);
    QTest::newRow("stride that is no multiple") << changed(24, 127);
    QTest::newRow("no stride") << changed(24, 0);
    QTest::newRow("17 levels") << changed(28, 17);
    QTest::newRow("orientation 4") << changed(36, 4);
}

void tst_PanelFileReading::unreadable()
{
    QFETCH(QByteArray, bytes);

    writeBytes(path(), bytes);
    QString error;
    QVERIFY(!readPanel(path(), &error));
    QVERIFY2(error.contains(path()) && error.endsWith(u'.') && !error.contains(u'\n'), qPrintable(error));
    QVERIFY(!readPanel(path(), nullptr));
    writeBytes(path(), goodPanelFile());
    QVERIFY(readPanel(path(), nullptr));
}

void tst_PanelFileReading::missing()
{
    QString error;
    QVERIFY(!readPanel(path(), &error));
    QVERIFY2(error.contains(path()), qPrintable(error));
}

void tst_PanelFileReading::notAFile()
{
    QString error;
    QVERIFY(!readPanel(m_folder->path(), &error));
    QVERIFY2(error.contains(u"is not a panel file"_s), qPrintable(error));
}

void tst_PanelFileReading::pipe()
{
    QVERIFY(::mkfifo(QFile::encodeName(path()).constData(), 0600) == 0);
    QString error;
    QVERIFY(!readPanel(path(), &error));
    QVERIFY2(error.contains(u"is not a panel file"_s), qPrintable(error));
}

void tst_PanelFileReading::busy()
{
    const auto writer = PanelWriter::create({.size = {70, 3}}, path(), nullptr);
    QVERIFY(writer);
    writer->beginWrite();
    QString error;
    QVERIFY(!readPanel(path(), &error));
    QVERIFY2(error.contains(u"busy"_s), qPrintable(error));
    writer->endWrite();
    QVERIFY(readPanel(path(), &error));
}

void tst_PanelFileReading::oddOrientationInTheMiddleOfAWrite()
{
    // A write that never ends may leave anything in its fields; that is a busy device, not a foreign file.
    QByteArray bytes = goodPanelFile();
    put(bytes, 36, 77);
    put(bytes, 52, 1);
    writeBytes(path(), bytes);
    QString error;
    QVERIFY(!readPanel(path(), &error));
    QVERIFY2(error.contains(u"busy"_s), qPrintable(error));
}

QTEST_GUILESS_MAIN(tst_PanelFileReading)
#include "tst_panel_file_reading.moc"
