// Media and light on the default device: commands, events, state and the signs of the status panel.

#include "panel_application.h"
#include "panel_remote.h"
#include "panel_view.h"
#include "recorded_events.h"

#include <device.h>

#include <QDir>
#include <QJsonArray>

#include <optional>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;

class tst_PanelMedia : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void inAndOut_data();
    void inAndOut();
    void fromOutside();
    void refused_data();
    void refused();
    void otherThingsInTheWay();
    void nothingToPlug();
    void lightWithoutColour();

private:
    bool stateSays(const QString &medium)
    {
        return m_remote->ask(u"state"_s).value(u"media"_s).toObject().value(medium).toBool();
    }
    QString code(const QString &command, const QJsonObject &members)
    {
        m_answer = m_remote->ask(command, members);
        return ::code(m_answer);
    }
    static QImage statusPanel()
    {
        const QImage screen = panel_view::upright();
        // Without the clock on the left.
        return screen.copy(screen.width() / 2, 0, screen.width() / 2, 45);
    }

    std::unique_ptr<PanelRemote> m_remote;
    QJsonObject m_answer;
    std::optional<RecordedEvents> m_events;
};

void tst_PanelMedia::init()
{
    m_remote = std::make_unique<PanelRemote>();
    m_events.emplace();
    QVERIFY(QFileInfo(u"/mnt/.unplugged/sd"_s).isDir() && QFileInfo(u"/mnt/.unplugged/usb"_s).isDir());
}

void tst_PanelMedia::cleanup()
{
    m_events.reset();
    m_remote.reset();
}

void tst_PanelMedia::inAndOut_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("inState");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("eventIn");
    QTest::addColumn<QString>("eventOut");

    QTest::newRow("card") << u"card"_s << u"sd"_s << u"/mnt/ext2"_s << u"161 0 0"_s << u"162 0 0"_s;
    QTest::newRow("USB") << u"usb"_s << u"usb"_s << u"/mnt/ext3"_s << u"163 0 0"_s << u"164 0 0"_s;
}

void tst_PanelMedia::inAndOut()
{
    QFETCH(QString, command);
    QFETCH(QString, inState);
    QFETCH(QString, folder);
    QFETCH(QString, eventIn);
    QFETCH(QString, eventOut);

    PanelRemote listener;
    QVERIFY(listener.ask(u"follow"_s).value(u"ok"_s).toBool());
    QVERIFY(panel_view::waitUntilStill());
    const QImage without = statusPanel();

    QCOMPARE(code(command, {{u"in"_s, true}}), u"ok"_s);
    QCOMPARE(m_events->texts(),
             QStringList{eventIn}); // the application has heard of it when the answer comes
    QVERIFY(QFileInfo(folder).isDir());
    QVERIFY(stateSays(inState));
    QTRY_VERIFY(statusPanel() != without);
    QStringList announced;
    QTRY_VERIFY((announced.append(listener.nextLine(1000).value(u"event"_s).toString()),
                 announced.contains(u"changed"_s) && announced.contains(u"refresh"_s)));

    QCOMPARE(code(command, {{u"in"_s, false}}), u"ok"_s);
    QCOMPARE(m_events->texts(), QStringList({eventIn, eventOut}));
    QVERIFY(!QFileInfo::exists(folder));
    QVERIFY(!stateSays(inState));
    QTRY_COMPARE(statusPanel(), without);
    // The watchers look as well, and find nothing new.
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(m_events->texts(), QStringList({eventIn, eventOut}));
}

void tst_PanelMedia::fromOutside()
{
    QVERIFY(QDir().rename(u"/mnt/.unplugged/sd"_s, u"/mnt/ext2"_s));
    QTRY_COMPARE(m_events->texts(), QStringList{u"161 0 0"_s});
    QVERIFY(stateSays(u"sd"_s));
    QVERIFY(QDir(u"/mnt/ext2"_s).removeRecursively()); // not pulled out, gone
    QTRY_COMPARE(m_events->texts(), QStringList({u"161 0 0"_s, u"162 0 0"_s}));
    QVERIFY(!stateSays(u"sd"_s));
    QCOMPARE(code(u"card"_s, {{u"in"_s, true}}), u"no-such-item"_s);
    QVERIFY(QDir().mkpath(u"/mnt/.unplugged/sd"_s));
}

void tst_PanelMedia::refused_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QJsonObject>("members");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("message");

    QTest::newRow("card is out") << u"card"_s << QJsonObject{{u"in"_s, false}} << u"not-possible"_s
                                 << u"The card is out already."_s;
    QTest::newRow("USB is out") << u"usb"_s << QJsonObject{{u"in"_s, false}} << u"not-possible"_s
                                << u"The USB storage is out already."_s;
    QTest::newRow("neither in nor out")
        << u"card"_s << QJsonObject() << u"bad-argument"_s << u"\"in\" is missing."_s;
    QTest::newRow("in by a word") << u"usb"_s << QJsonObject{{u"in"_s, u"in"_s}} << u"bad-argument"_s
                                  << u"\"in\" is neither true nor false."_s;
    QTest::newRow("unknown member") << u"usb"_s << QJsonObject{{u"in"_s, true}, {u"out"_s, true}}
                                    << u"bad-argument"_s << QString();
}

void tst_PanelMedia::refused()
{
    QFETCH(QString, command);
    QFETCH(QJsonObject, members);
    QFETCH(QString, error);
    QFETCH(QString, message);

    QCOMPARE(code(command, members), error);
    if (!message.isEmpty())
        QCOMPARE(m_answer.value(u"message"_s).toString(), message);
    QCOMPARE(m_events->texts(), QStringList());
}

void tst_PanelMedia::otherThingsInTheWay()
{
    QVERIFY(QDir().mkpath(u"/mnt/ext2/other"_s));
    QCOMPARE(code(u"card"_s, {{u"in"_s, true}}), u"failed"_s);
    QVERIFY(m_answer.value(u"message"_s).toString().startsWith(u"The card cannot be moved: "_s));
    QVERIFY(QFileInfo::exists(u"/mnt/.unplugged/sd"_s));
    QVERIFY(QDir(u"/mnt/ext2"_s).removeRecursively());
}

void tst_PanelMedia::nothingToPlug()
{
    QVERIFY(QDir().rmdir(u"/mnt/.unplugged/usb"_s));
    QCOMPARE(code(u"usb"_s, {{u"in"_s, true}}), u"no-such-item"_s);
    QCOMPARE(m_answer.value(u"message"_s).toString(), u"There is no simulated USB storage."_s);
    QVERIFY(QDir().mkpath(u"/mnt/.unplugged/usb"_s));
    QCOMPARE(code(u"usb"_s, {{u"in"_s, true}}), u"ok"_s);
    QCOMPARE(code(u"usb"_s, {{u"in"_s, true}}), u"not-possible"_s);
    QCOMPARE(m_answer.value(u"message"_s).toString(), u"The USB storage is in already."_s);
    QCOMPARE(code(u"usb"_s, {{u"in"_s, false}}), u"ok"_s);
}

void tst_PanelMedia::lightWithoutColour()
{
    const QJsonObject light = m_remote->ask(u"state"_s).value(u"light"_s).toObject();
    QCOMPARE(light.keys(), QStringList({u"brightness"_s, u"brightness_auto"_s, u"enabled"_s}));
    for (const QJsonObject &members : {QJsonObject{{u"color"_s, 50}}, {{u"color_auto"_s, true}}})
        QCOMPARE(code(u"light"_s, members), u"not-supported"_s);
    QCOMPARE(code(u"light"_s, {{u"brightness"_s, 50}}), u"ok"_s);
}

PANEL_TEST_MAIN(tst_PanelMedia)
#include "tst_panel_media.moc"
