#include "file_size_limit.h"
#include "panel_file.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

constexpr qsizetype pixelsOffset = 4096;

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(bytes), bytes.size());
}

template <typename T>
T at(const QByteArray &bytes, qsizetype offset)
{
    T value{};
    std::memcpy(&value, bytes.constData() + offset, sizeof(value));
    return value;
}

void put(QByteArray &bytes, qsizetype offset, std::uint32_t value)
{
    std::memcpy(bytes.data() + offset, &value, sizeof(value));
}

/// What a writer leaves for a grey panel of 70 by 3 pixels.
QByteArray goodFile()
{
    QByteArray bytes(pixelsOffset + 128 * 3, '\0');
    std::memcpy(bytes.data(), "SLATEPNL", 8);
    const std::uint32_t fields[] = {1, 1, 70, 3, 128, 16, 212};
    std::memcpy(bytes.data() + 8, fields, sizeof(fields));
    std::memset(bytes.data() + pixelsOffset, 255, 128 * 3);
    return bytes;
}

} // namespace

class tst_PanelFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void newFileByteForByte();
    void layoutByteForByte();
    void shapes_data();
    void shapes();
    void privateAndAlone();
    void impossibleShapes_data();
    void impossibleShapes();
    void folderThatIsMissing();
    void limitOfTheFileSize();
    void fullDisk();
    void inMemory();
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
    void writerGone();
    void newerFileIsKept();

private:
    QString path() const { return m_folder->filePath(u"panel"_s); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_PanelFile::newFileByteForByte()
{
    QString error;
    const auto writer = PanelWriter::create({.size = {70, 3}}, path(), &error);
    QVERIFY2(writer, qPrintable(error));
    QCOMPARE(bytesOf(path()), goodFile());
}

void tst_PanelFile::layoutByteForByte()
{
    const auto writer
        = PanelWriter::create({.size = {70, 3}, .colour = true, .levels = 256, .dpi = 300}, path(), nullptr);
    QVERIFY(writer);
    writer->beginWrite();
    PanelHeader &header = writer->header();
    header.orientation = 3;
    header.flags = 7;
    header.brightness = 40;
    header.colour = 60;
    header.refreshMode = 2;
    header.refreshNumber = 0x1122334455667788;
    header.x = -1;
    header.y = 2;
    header.refreshWidth = 30;
    header.refreshHeight = 4;
    writer->pixels()[writer->stride() * 2 + 69 * 3 + 1] = 17; // green of the last pixel
    QCOMPARE(at<std::uint32_t>(bytesOf(path()), 52), 1u);
    writer->endWrite();

    const QByteArray bytes = bytesOf(path());
    QCOMPARE(bytes.first(8), QByteArray("SLATEPNL"));
    const QList<std::uint32_t> expected = {1, 2, 70, 3, 256, 256, 300, 3, 7, 40, 60, 2, 2, 0};
    for (qsizetype i = 0; i < expected.size(); ++i)
        QCOMPARE(at<std::uint32_t>(bytes, 8 + 4 * i), expected.at(i));
    QCOMPARE(at<std::uint64_t>(bytes, 64), 0x1122334455667788u);
    QCOMPARE(at<std::int32_t>(bytes, 72), -1);
    QCOMPARE(at<std::int32_t>(bytes, 76), 2);
    QCOMPARE(at<std::int32_t>(bytes, 80), 30);
    QCOMPARE(at<std::int32_t>(bytes, 84), 4);
    QCOMPARE(bytes.sliced(88, pixelsOffset - 88), QByteArray(pixelsOffset - 88, '\0'));
    QCOMPARE(bytes.size(), pixelsOffset + 256 * 3);
    QCOMPARE(bytes.at(pixelsOffset + 256 * 2 + 69 * 3 + 1), char(17));
    QCOMPARE(bytes.sliced(pixelsOffset).count(char(17)), 1);
}

void tst_PanelFile::shapes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("colour");
    QTest::addColumn<int>("stride");

    QTest::newRow("one grey pixel") << QSize(1, 1) << false << 64;
    QTest::newRow("just below a unit") << QSize(63, 2) << false << 64;
    QTest::newRow("a unit") << QSize(64, 2) << false << 64;
    QTest::newRow("just above a unit") << QSize(65, 2) << false << 128;
    QTest::newRow("six inch grey") << QSize(758, 1024) << false << 768;
    QTest::newRow("eight inch grey") << QSize(1404, 1872) << false << 1408;
    QTest::newRow("six inch colour") << QSize(1072, 1448) << true << 3264;
}

void tst_PanelFile::shapes()
{
    QFETCH(QSize, size);
    QFETCH(bool, colour);
    QFETCH(int, stride);

    const auto writer = PanelWriter::create({.size = size, .colour = colour}, path(), nullptr);
    QVERIFY(writer);
    QCOMPARE(writer->stride(), std::size_t(stride));
    QCOMPARE(writer->bytesPerPixel(), colour ? 3 : 1);
    QCOMPARE(QFileInfo(path()).size(), pixelsOffset + qint64(stride) * size.height());

    struct stat status = {};
    QVERIFY(::stat(QFile::encodeName(path()).constData(), &status) == 0);
    QVERIFY2(status.st_blocks * 512 >= status.st_size, "not allocated to its full length");

    const auto panel = readPanel(path(), nullptr);
    QVERIFY(panel);
    QCOMPARE(panel->glass.size(), size);
    QCOMPARE(panel->glass.format(), colour ? QImage::Format_RGB888 : QImage::Format_Grayscale8);
    QCOMPARE(panel->glass.pixel(size.width() - 1, size.height() - 1), 0xffffffffu);
}

void tst_PanelFile::privateAndAlone()
{
    const auto writer = PanelWriter::create({.size = {8, 8}}, path(), nullptr);
    QVERIFY(writer);
    struct stat status = {};
    QVERIFY(::stat(QFile::encodeName(path()).constData(), &status) == 0);
    QCOMPARE(status.st_mode & 0777, 0600u);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"panel"_s});
}

void tst_PanelFile::impossibleShapes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("levels");

    QTest::newRow("no width") << QSize(0, 10) << 16;
    QTest::newRow("no height") << QSize(10, 0) << 16;
    QTest::newRow("negative") << QSize(-5, 10) << 16;
    QTest::newRow("far too wide") << QSize(16'385, 1) << 16;
    QTest::newRow("far too high") << QSize(1, 16'385) << 16;
    QTest::newRow("other levels") << QSize(10, 10) << 17;
}

void tst_PanelFile::impossibleShapes()
{
    QFETCH(QSize, size);
    QFETCH(int, levels);

    QString error;
    QVERIFY(!PanelWriter::create({.size = size, .levels = levels}, path(), &error));
    QVERIFY(error.endsWith(u'.'));
    QVERIFY(!QFile::exists(path()));
}

void tst_PanelFile::folderThatIsMissing()
{
    QString error;
    QVERIFY(!PanelWriter::create({.size = {8, 8}}, m_folder->filePath(u"none/panel"_s), &error));
    QVERIFY2(error.contains(u"none/panel"_s), qPrintable(error));
}

void tst_PanelFile::limitOfTheFileSize()
{
    QString error;
    {
        const FileSizeLimit limit(64 * 1024);
        QVERIFY(!PanelWriter::create({.size = {758, 1024}}, path(), &error));
    }
    QVERIFY2(error.contains(path()) && error.count(u'\n') == 0, qPrintable(error));
    QVERIFY(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden).isEmpty());
}

void tst_PanelFile::fullDisk()
{
    // A file system of this process alone.
    if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        QSKIP("only root can mount a small file system");
    const QByteArray folder = QFile::encodeName(m_folder->path());
    QVERIFY(::mount("tmpfs", folder.constData(), "tmpfs", 0, "size=128k") == 0);

    QString error;
    const bool made = PanelWriter::create({.size = {758, 1024}}, path(), &error) != nullptr;
    const QStringList left = QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden);
    const auto small = PanelWriter::create({.size = {64, 64}}, path(), nullptr);
    QVERIFY(::umount2(folder.constData(), MNT_DETACH) == 0);
    QVERIFY(!made);
    QVERIFY2(error.contains(path()) && error.count(u'\n') == 0, qPrintable(error));
    QCOMPARE(left, QStringList());
    QVERIFY(small);
}

void tst_PanelFile::inMemory()
{
    const auto writer = PanelWriter::create({.size = {70, 3}}, {}, nullptr);
    QVERIFY(writer);
    writer->beginWrite();
    QCOMPARE(writer->pixels()[0], 255);
    std::memset(writer->pixels(), 0, writer->stride() * 3);
    writer->endWrite();
    QCOMPARE(writer->header().width, 70u);
    QCOMPARE(writer->header().sequence, 2u);
}

void tst_PanelFile::snapshot()
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

void tst_PanelFile::snapshotKeepsItsMoment()
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

void tst_PanelFile::upright_data()
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

void tst_PanelFile::upright()
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

void tst_PanelFile::uprightInColour()
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

void tst_PanelFile::unreadable_data()
{
    QTest::addColumn<QByteArray>("bytes");

    const auto changed = [](qsizetype offset, std::uint32_t value) {
        QByteArray bytes = goodFile();
        put(bytes, offset, value);
        return bytes;
    };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a few bytes") << QByteArray("SLATEPNL");
    QTest::newRow("the header alone") << goodFile().first(88);
    QTest::newRow("no pixels") << goodFile().first(pixelsOffset);
    QTest::newRow("one byte short") << goodFile().chopped(1);
    QTest::newRow("one byte more") << goodFile() + '\0';
    QTest::newRow("a text") << QByteArray(8192, 'x');
    QTest::newRow("magic in lower case") << goodFile().replace("SLATEPNL", "slatepnl");
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

void tst_PanelFile::unreadable()
{
    QFETCH(QByteArray, bytes);

    writeBytes(path(), bytes);
    QString error;
    QVERIFY(!readPanel(path(), &error));
    QVERIFY2(error.contains(path()) && error.endsWith(u'.') && !error.contains(u'\n'), qPrintable(error));
    QVERIFY(!readPanel(path(), nullptr));
    writeBytes(path(), goodFile());
    QVERIFY(readPanel(path(), nullptr));
}

void tst_PanelFile::missing()
{
    QString error;
    QVERIFY(!readPanel(path(), &error));
    QVERIFY2(error.contains(path()), qPrintable(error));
}

void tst_PanelFile::notAFile()
{
    QString error;
    QVERIFY(!readPanel(m_folder->path(), &error));
    QVERIFY2(error.contains(u"is not a panel file"_s), qPrintable(error));
}

void tst_PanelFile::pipe()
{
    QVERIFY(::mkfifo(QFile::encodeName(path()).constData(), 0600) == 0);
    QString error;
    QVERIFY(!readPanel(path(), &error));
    QVERIFY2(error.contains(u"is not a panel file"_s), qPrintable(error));
}

void tst_PanelFile::busy()
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

void tst_PanelFile::oddOrientationInTheMiddleOfAWrite()
{
    // A write that never ends may leave anything in its fields; that is a busy device, not a foreign file.
    QByteArray bytes = goodFile();
    put(bytes, 36, 77);
    put(bytes, 52, 1);
    writeBytes(path(), bytes);
    QString error;
    QVERIFY(!readPanel(path(), &error));
    QVERIFY2(error.contains(u"busy"_s), qPrintable(error));
}

void tst_PanelFile::writerGone()
{
    auto writer = PanelWriter::create({.size = {70, 3}}, path(), nullptr);
    QVERIFY(writer);
    const auto panel = readPanel(path(), nullptr);
    writer.reset();
    QVERIFY(!QFile::exists(path()));
    QString error;
    QVERIFY(!readPanel(path(), &error));
    QVERIFY(!error.isEmpty());
    QCOMPARE(qGray(panel->glass.pixel(69, 2)), 255);
}

void tst_PanelFile::newerFileIsKept()
{
    auto first = PanelWriter::create({.size = {70, 3}}, path(), nullptr);
    const auto second = PanelWriter::create({.size = {30, 2}}, path(), nullptr);
    QVERIFY(first && second);
    first.reset();
    const auto panel = readPanel(path(), nullptr);
    QVERIFY(panel);
    QCOMPARE(panel->glass.size(), QSize(30, 2));
}

QTEST_GUILESS_MAIN(tst_PanelFile)
#include "tst_panel_file.moc"
