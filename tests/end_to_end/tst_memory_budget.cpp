// The pictures in memory on a small machine with a large panel: the launcher says how much memory there is,
// and the kernel gives no more.

#include "jpeg_files.h"
#include "process_memory.h"
#include "stored_show.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QTest>
#include <QThread>

#include <cstdio>
#include <memory>

#include <sys/resource.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mebibyte = 1024 * 1024;
constexpr QSize camera(3000, 4000);
constexpr QSize panel(1404, 1872);
constexpr qint64 pictureBytes = qint64(panel.width()) * panel.height();

/// Of the machine, in bytes.
qint64 totalMemory()
{
    QFile file(u"/proc/meminfo"_s);
    const bool open = file.open(QIODevice::ReadOnly);
    return open ? file.readAll().simplified().split(' ').value(1).toLongLong() * 1024 : 0;
}

} // namespace

class tst_MemoryBudget : public QObject
{
    Q_OBJECT

private slots:
    void isKept();
    void progressivePictures();
    void drawings();

private:
    bool storePictures(int count);
    bool isAlight() const;
    void readLines();
    qint64 memoryOf(const QByteArray &name) const
    {
        return processMemory(name, m_device->program().processId());
    }

    std::unique_ptr<ShowDevice> m_device;
    qint64 m_limit = 0;
    qint64 m_used = 0;
    qint64 m_mostUsed = 0;
    QByteArrayList m_unexpected;
};

/// A camera's pictures, as hard links of one file.
bool tst_MemoryBudget::storePictures(int count)
{
    const QString folder = u"/mnt/ext1/Camera/"_s;
    QImage picture(camera, QImage::Format_RGB32);
    picture.fill(qRgb(200, 190, 180));
    if (!QDir().mkpath(folder) || !picture.save(folder + u"0.jpg"_s))
        return false;
    QStringList paths{folder + u"0.jpg"_s};
    for (int i = 1; i < count; ++i) {
        paths.append(folder + u"%1.jpg"_s.arg(i));
        if (link(QFile::encodeName(paths.constFirst()).constData(),
                 QFile::encodeName(paths.constLast()).constData())
            != 0)
            return false;
    }
    return stored_show::store(paths, {{u"change_picture_time"_s, u"3600"_s}});
}

bool tst_MemoryBudget::isAlight() const
{
    const QImage screen = m_device->screenshot();
    return qGray(screen.pixel(screen.width() / 2, screen.height() / 2)) > 100;
}

/// Follows what the program tells of its pictures.
void tst_MemoryBudget::readLines()
{
    for (const QByteArray &line : m_device->errors().split('\n')) {
        const qsizetype at = line.indexOf(" ram(");
        if (at < 0) {
            if (!ShowDevice::isDiagnostic(line) && !line.trimmed().isEmpty())
                m_unexpected.append(line.trimmed());
            continue;
        }
        const QByteArrayList numbers = line.sliced(at + 5).split(')').constFirst().split('/');
        m_used = numbers.constFirst().toLongLong();
        m_limit = numbers.constLast().toLongLong();
        m_mostUsed = std::max(m_mostUsed, m_used);
    }
}

void tst_MemoryBudget::isKept()
{
    const qint64 memory = totalMemory();
    const qint64 budget = memory / 10;
    const int fitting = int(budget / pictureBytes);
    QVERIFY2(memory <= 1024 * mebibyte, "This test wants a small machine: slate-run --meminfo.");
    QVERIFY(storePictures(fitting + 12));

    QFile record(u"/devroot/device.json"_s);
    QVERIFY(record.open(QIODevice::WriteOnly));
    QVERIFY(record.write("{\"profile\":\"grey-8\"}") > 0);
    record.close();
    m_device = std::make_unique<ShowDevice>();
    m_device->program().setChildProcessModifier([memory] {
        // Half is for the rest of the machine. What a thread may need as its stack counts as a whole.
        const rlimit data{rlim_t(memory / 2), rlim_t(memory / 2)};
        const rlimit stack{rlim_t(mebibyte), rlim_t(mebibyte)};
        if (setrlimit(RLIMIT_DATA, &data) != 0 || setrlimit(RLIMIT_STACK, &stack) != 0)
            _exit(1);
    });
    QVERIFY(m_device->start());
    QVERIFY(m_device->play());
    QVERIFY(m_device->idle());
    readLines();
    QCOMPARE(m_limit, budget);
    // The picture that met the budget stays.
    QVERIFY2(m_used > budget && m_used <= budget + pictureBytes, qPrintable(QString::number(m_used)));

    for (int i = 0; i < 6; ++i) {
        QVERIFY(m_device->fire(u"nextImageEvent"_s));
        QVERIFY(isAlight());
        readLines();
        QVERIFY2(m_used <= budget + pictureBytes, qPrintable(QString::number(m_used)));
    }
    // What is being added: one picture for each processor, and that of the show.
    QVERIFY2(m_mostUsed <= budget + (QThread::idealThreadCount() + 1) * pictureBytes,
             qPrintable(QString::number(m_mostUsed)));
    std::printf("%lld MiB: budget %lld, used %lld, at most %lld KiB; resident at most %lld, data %lld KiB\n",
                memory / mebibyte, budget / 1024, m_used / 1024, m_mostUsed / 1024, memoryOf("VmHWM"),
                memoryOf("VmData"));
    QVERIFY(memoryOf("VmHWM") * 1024 < memory);
    QCOMPARE(m_unexpected, QByteArrayList());
    QVERIFY(m_device->does(u"quit"_s));
    QVERIFY(m_device->program().state() == QProcess::NotRunning || m_device->program().waitForFinished());
    QCOMPARE(m_device->program().exitCode(), 0);
}

void tst_MemoryBudget::progressivePictures()
{
    // Of headers that claim just below a third of the machine, and just above: the first is shown, and grey.
    const QString folder = u"/mnt/ext1/Progressive/"_s;
    QVERIFY(QDir().mkpath(folder));
    const QByteArray small = jpegFile({64, 64}, {.progressive = true});
    for (const auto &[name, percent] : {std::pair(u"a.jpg"_s, 98), std::pair(u"b.jpg"_s, 101)}) {
        constexpr int width = 8000;
        constexpr int bytesPerPixel = 3;
        const QSize size(width, int(totalMemory() / 3 * percent / 100 / bytesPerPixel / width));
        QFile file(folder + name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(claiming(small, size, "\xff\xc2")) > 0);
    }
    QVERIFY(stored_show::store({folder + u"a.jpg"_s, folder + u"b.jpg"_s},
                               {{u"change_picture_time"_s, u"3600"_s}}));
    m_device = std::make_unique<ShowDevice>();
    QVERIFY(m_device->start());
    QVERIFY(m_device->play());
    QVERIFY(m_device->idle());
    for (const bool alight : {true, false, true}) {
        QCOMPARE(isAlight(), alight);
        QVERIFY(m_device->fire(u"nextImageEvent"_s));
    }
    for (const QByteArray &line : m_device->unexpectedErrors()) { // of the black one, and of thumbnails
        QVERIFY2(line.contains("Failed to get image") || line.contains("Rejecting image"), line.constData());
    }
    QVERIFY(m_device->does(u"quit"_s));
    QVERIFY(m_device->program().state() == QProcess::NotRunning || m_device->program().waitForFinished());
    QCOMPARE(m_device->program().exitCode(), 0);
}

void tst_MemoryBudget::drawings()
{
    // Of white pictures, all but the last too small to be seen. One drawing goes into a third of the machine,
    // at most 192 MiB, and the other does not.
    constexpr QSize size(3000, 2048);
    constexpr qint64 each = qint64(size.width()) * size.height() * 4;
    constexpr qint64 rest = 48 * mebibyte; // what every drawing takes, and one of the panel's size
    QImage white(size, QImage::Format_RGB32);
    white.fill(Qt::white);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::WriteOnly) && white.save(&buffer, "png"));
    const auto image = [&](const QByteArray &side) {
        return "<image width=\"" + side + "\" height=\"" + side + "\" xlink:href=\"data:image/png;base64,"
            + bytes.toBase64() + "\"/>";
    };
    const QString folder = u"/mnt/ext1/Drawings/"_s;
    QVERIFY(QDir().mkpath(folder));
    const qint64 memory = std::min(totalMemory() / 3, 192 * mebibyte);
    for (const auto &[name, count] :
         {std::pair(u"a.svg"_s, (memory - rest) / each), std::pair(u"b.svg"_s, memory / each + 1)}) {
        QFile file(folder + name);
        QVERIFY(file.open(QIODevice::WriteOnly)
                && file.write("<svg xmlns=\"http://www.w3.org/2000/svg\" "
                              "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"1000\" height=\"1000\">"
                              + image("1").repeated(qsizetype(count) - 1) + image("1000") + "</svg>")
                    > 0);
    }
    QVERIFY(stored_show::store({folder + u"a.svg"_s, folder + u"b.svg"_s},
                               {{u"change_picture_time"_s, u"3600"_s}, {u"shuffle"_s, u"0"_s}}));
    m_device = std::make_unique<ShowDevice>();
    QVERIFY(m_device->start());
    QVERIFY(m_device->play());
    for (const bool alight : {true, false, true}) {
        QCOMPARE(isAlight(), alight);
        QVERIFY(m_device->fire(u"nextImageEvent"_s));
    }
    QVERIFY(m_device->does(u"quit"_s));
    QVERIFY(m_device->program().state() == QProcess::NotRunning || m_device->program().waitForFinished());
    QCOMPARE(m_device->program().exitCode(), 0);
}

QTEST_GUILESS_MAIN(tst_MemoryBudget)
#include "tst_memory_budget.moc"
