// Several threads that read JPEG files at once, as the show's and the thumbnails' do.

#include "jpeg_files.h"

#include <facts.h>
#include <paths.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QImageReader>
#include <QTest>

#include <array>
#include <atomic>
#include <thread>
#include <vector>

using lindenreed::device::facts;

namespace {

struct Task
{
    QByteArray file;
    QSize size; ///< none: the file's own
};

QImage readPicture(const Task &task)
{
    QBuffer buffer;
    buffer.setData(task.file);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    if (!task.size.isEmpty())
        reader.setScaledSize(task.size);
    return reader.read();
}

/// Baseline and progressive, whole and reduced, in colour and damaged.
std::vector<Task> tasks()
{
    const QByteArray turned("Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0\0\0\0\0", 32);
    const QByteArray file = jpegFile({203, 157}, {.app1 = turned});
    const QByteArray progressive = jpegFile({203, 157}, {.progressive = true});
    const QByteArray inks = jpegFile({203, 157}, {.colours = JCS_YCCK});
    return {{file, {}},
            {file, {90, 70}},
            {progressive, {90, 70}},
            {inks, {90, 70}},
            {file.first(file.size() / 2), {}},
            {progressive.first(progressive.size() / 2), {90, 70}},
            {file.first(100), {}}};
}

} // namespace

class tst_JpegThreads : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::addLibraryPath(lindenreed::device::pluginFolder());
        // Loads the plug-in. Threads may do that too, but the sanitizer does not see Qt's lock around it.
        QVERIFY(QImageReader::supportedImageFormats().contains("jpeg"));
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".?")));
    }
    void cleanup() { facts().running = false; }
    void pictures_data();
    void pictures();
};

void tst_JpegThreads::pictures_data()
{
    QTest::addColumn<bool>("grey");

    // Nothing has been read before: all threads come at once to what the first one sets up.
    QTest::newRow("on a grey panel") << true;
    QTest::newRow("in colour") << false;
}

void tst_JpegThreads::pictures()
{
    QFETCH(bool, grey);

    facts().running = grey;
    constexpr std::size_t rounds = 3;
    const std::vector<Task> all = tasks();
    std::array<std::vector<QImage>, 4> pictures;
    std::atomic_int waiting = pictures.size();
    std::vector<std::thread> threads;
    for (std::vector<QImage> &mine : pictures) {
        threads.emplace_back([&] {
            for (--waiting; waiting > 0;)
                std::this_thread::yield();
            for (std::size_t i = 0; i < rounds * all.size(); ++i)
                mine.push_back(readPicture(all[i % all.size()]));
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    for (std::size_t i = 0; i < all.size(); ++i) {
        const QImage expected = readPicture(all[i]);
        QCOMPARE(expected.isNull(), i == all.size() - 1);
        if (!expected.isNull())
            QCOMPARE(expected.format(), grey ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
        for (const std::vector<QImage> &mine : pictures) {
            for (std::size_t round = 0; round < rounds; ++round)
                QCOMPARE(mine[round * all.size() + i], expected);
        }
    }
}

QTEST_GUILESS_MAIN(tst_JpegThreads)
#include "tst_jpeg_threads.moc"
