// Media that come and go while a show is on.

#include "growth_limit.h"
#include "show_device.h"
#include "stored_show.h"

#include <QDir>
#include <QImage>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mostGrowthKb = growthLimit(1024);

/// A FIFO, held open for whoever reads from it.
class HeldReader
{
public:
    explicit HeldReader(const char *fifo)
        : m_writer(::open(fifo, O_WRONLY | O_NONBLOCK | O_CLOEXEC))
    {
    }
    ~HeldReader()
    {
        if (m_writer >= 0)
            ::close(m_writer); // the end of what he reads
    }
    HeldReader(const HeldReader &) = delete;
    HeldReader &operator=(const HeldReader &) = delete;

    bool isThere() const { return m_writer >= 0; }

private:
    int m_writer;
};

} // namespace

class tst_MediaShow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void twoHundredTimes();
    void folderVanishes();
    void endsDuringALook();
    void picturesOfACardComeBack();

private:
    bool isGrey(int grey) const;
    QList<qsizetype> leftovers() const;
    qint64 residentKb() const;
    bool isIn(const QString &medium)
    {
        return m_device->state().value("media"_L1).toObject().value(medium).toBool();
    }
    bool plug(const QString &medium, bool in) { return m_device->does(medium, {{u"in"_s, in}}); }

    std::unique_ptr<ShowDevice> m_device;
};

void tst_MediaShow::init()
{
    m_device = std::make_unique<ShowDevice>();
    QVERIFY(QDir().mkpath(u"/mnt/.unplugged/sd"_s) && QDir().mkpath(u"/mnt/.unplugged/usb"_s));
    QFile::copy(u"/mnt/ext1/Photo/01.jpg"_s, u"/mnt/.unplugged/sd/card.jpg"_s);
    QVERIFY(m_device->start());
    QVERIFY(m_device->play());
}

void tst_MediaShow::cleanup()
{
    m_device.reset();
}

/// Descriptors, threads and watched folders of the program.
QList<qsizetype> tst_MediaShow::leftovers() const
{
    const QString folder = u"/proc/%1/"_s.arg(m_device->program().processId());
    const QDir::Filters all = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;
    qsizetype watched = 0;
    const QStringList descriptors = QDir(folder + u"fd"_s).entryList(all);
    for (const QString &descriptor : descriptors) {
        QFile information(folder + u"fdinfo/"_s + descriptor);
        if (information.open(QIODevice::ReadOnly))
            watched += information.readAll().count("inotify wd:");
    }
    return {descriptors.size(), QDir(folder + u"task"_s).entryList(all).size(), watched};
}

qint64 tst_MediaShow::residentKb() const
{
    QFile status(u"/proc/%1/status"_s.arg(m_device->program().processId()));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    return text.sliced(text.indexOf("VmRSS:") + 6).trimmed().split(' ').constFirst().toLongLong();
}

void tst_MediaShow::twoHundredTimes()
{
    const auto round = [this] {
        return plug(u"card"_s, true) && isIn(u"sd"_s) && QFile::exists(u"/mnt/ext2/card.jpg"_s)
            && plug(u"usb"_s, true) && plug(u"card"_s, false) && !isIn(u"sd"_s) && isIn(u"usb"_s)
            && plug(u"usb"_s, false);
    };
    for (int i = 0; i < 10; ++i)
        QVERIFY(round());
    QVERIFY(m_device->fire(u"nextImageEvent"_s));
    const QList<qsizetype> early = leftovers();
    QVERIFY(early.at(2) >= 2); // it does watch
    for (int i = 0; i < 20; ++i) // every cache has what it will have
        QVERIFY(m_device->fire(u"nextImageEvent"_s));
    const qint64 residentEarly = residentKb();
    QVERIFY(residentEarly > 0);

    for (int i = 10; i < 200; ++i) {
        QVERIFY2(round(), qPrintable(u"round %1"_s.arg(i)));
        if (i % 20 == 0)
            QVERIFY(m_device->fire(u"nextImageEvent"_s)); // the show goes on
    }
    QVERIFY(m_device->idle());
    const QList<qsizetype> late = leftovers();
    // Idle workers may have gone home, and a thumbnail of the overview may have been open still.
    QVERIFY(late.at(0) <= early.at(0));
    QVERIFY(late.at(1) <= early.at(1));
    QCOMPARE(late.at(2), early.at(2));
    const qint64 grown = residentKb() - residentEarly;
    QVERIFY2(grown < mostGrowthKb, qPrintable(u"%1 KB"_s.arg(grown)));
}

void tst_MediaShow::folderVanishes()
{
    QVERIFY(plug(u"card"_s, true));
    QVERIFY(QDir(u"/mnt/ext2"_s).removeRecursively());
    QTRY_VERIFY(!isIn(u"sd"_s));
    QVERIFY(m_device->fire(u"nextImageEvent"_s));
    QCOMPARE(m_device->ask(u"card"_s, {{u"in"_s, true}}).value("error"_L1).toString(), u"no-such-item"_s);
    QVERIFY(QDir().mkpath(u"/mnt/.unplugged/sd"_s));
    QVERIFY(plug(u"card"_s, true));
    QVERIFY(plug(u"card"_s, false));
}

void tst_MediaShow::endsDuringALook()
{
    // Nobody waits for those who look at the storages; the end of the program must not meet them badly.
    for (int i = 0; i < 10; ++i) {
        if (i > 0) {
            m_device = std::make_unique<ShowDevice>();
            QVERIFY(m_device->start());
        }
        QCOMPARE(m_device->unexpectedErrors(), QByteArrayList());
        const QString medium = i % 2 == 0 ? u"card"_s : u"usb"_s;
        QVERIFY(plug(medium, true));
        QVERIFY(plug(medium, false));
        QVERIFY(m_device->does(u"event"_s, {{u"type"_s, 161 + i % 4}, {u"par1"_s, 0}, {u"par2"_s, 0}}));
        QVERIFY(m_device->does(u"quit"_s));
        QVERIFY(m_device->program().state() == QProcess::NotRunning || m_device->program().waitForFinished());
        QCOMPARE(m_device->program().exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_device->program().exitCode(), 0);
        QCOMPARE(m_device->unexpectedErrors(), QByteArrayList());
    }
}

/// In the middle of the panel, give or take what dithering does.
bool tst_MediaShow::isGrey(int grey) const
{
    const QImage panel = m_device->screenshot();
    constexpr int side = 32;
    int sum = 0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            sum += qGray(panel.pixel(panel.width() / 2 + x, panel.height() / 2 + y));
    }
    return std::abs(sum / (side * side) - grey) < 10;
}

void tst_MediaShow::picturesOfACardComeBack()
{
    m_device.reset();
    const QString folder = u"/mnt/ext1/Photo"_s;
    constexpr const char *fifo = "/mnt/ext1/Photo/fifo";
    QCOMPARE(::mkfifo(fifo, 0600), 0);
    // Holds those who read ahead, until the card is out.
    QFile holding(folder + u"/holding.svg"_s);
    QVERIFY(holding.open(QIODevice::WriteOnly)
            && holding.write("<svg xmlns=\"http://www.w3.org/2000/svg\" "
                             "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"9\" height=\"9\">"
                             "<image width=\"9\" height=\"9\" xlink:href=\"/mnt/ext1/Photo/fifo\"/></svg>")
                > 0);
    holding.close();
    QVERIFY(QDir().rename(u"/mnt/.unplugged/sd"_s, u"/mnt/ext2"_s));
    const QList<int> greys{255, 170, 255, 170};
    QStringList paths{folder + u"/first.png"_s, holding.fileName()};
    for (int i = 1; i < greys.size(); ++i)
        paths.append(u"/mnt/ext2/%1.png"_s.arg(i));
    for (int i = 0; i < greys.size(); ++i) {
        QImage picture(60, 60, QImage::Format_Grayscale8);
        picture.fill(uint(greys.at(i)));
        QVERIFY(picture.save(paths.at(i == 0 ? 0 : i + 1)));
    }
    QVERIFY(stored_show::store(paths, {{u"shuffle"_s, u"0"_s}, {u"is_first_run"_s, u"0"_s}}));

    m_device = std::make_unique<ShowDevice>();
    QVERIFY(m_device->start());
    QVERIFY(m_device->play());
    QVERIFY(isGrey(255));
    std::optional<HeldReader> held;
    QTRY_VERIFY(held.emplace(fifo).isThere());
    QVERIFY(plug(u"card"_s, false));
    QByteArray told;
    const auto isReadAhead = [&] {
        held.emplace(fifo); // lets go of one, and waits for the next
        told += m_device->errors();
        return told.contains("add image /mnt/ext2/3.png size(0)")
            && told.contains("add image /mnt/ext2/1.png size(0)");
    };
    QTRY_VERIFY_WITH_TIMEOUT(isReadAhead(), 20'000);
    held.reset();
    QVERIFY(m_device->fire(u"nextImageEvent"_s));
    QVERIFY(m_device->fire(u"nextImageEvent"_s));
    QVERIFY(isGrey(0));

    QVERIFY(plug(u"card"_s, true));
    for (const int behind : {2, 3}) {
        QVERIFY(m_device->fire(u"nextImageEvent"_s));
        QTRY_VERIFY(isGrey(greys.at(behind)));
    }
    for (int i = 0; i < 3; ++i) // once around
        QVERIFY(m_device->fire(u"nextImageEvent"_s));
    QTRY_VERIFY(isGrey(greys.at(1)));
}

QTEST_GUILESS_MAIN(tst_MediaShow)
#include "tst_media_show.moc"
