// Media that come and go while a show is on.

#include "growth_limit.h"
#include "show_device.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 mostGrowthKb = growthLimit(1024);

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

private:
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

QTEST_GUILESS_MAIN(tst_MediaShow)
#include "tst_media_show.moc"
