// Writing a panel file: its layout, its shapes, and places that take none.

#include "file_size_limit.h"
#include "panel_bytes.h"
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

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

template <typename T>
T at(const QByteArray &bytes, qsizetype offset)
{
    T value{};
    std::memcpy(&value, bytes.constData() + offset, sizeof(value));
    return value;
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
    QCOMPARE(bytesOf(path()), goodPanelFile());
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
