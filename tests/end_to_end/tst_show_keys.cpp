// The device's keys in the real program: what they do to the panel and what they ask of the device, by
// situation.

#include "device_calls.h"
#include "show_device.h"

#include <QDir>
#include <QFile>
#include <QImage>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString stepped = u"ClearTimerByName nextImageEvent"_s;
const QString armed = u"SetHardTimerEx nextImageEvent callback context 30000"_s;
const QString awake = u"BanSleep 1"_s;

constexpr int nextCode = 101;
constexpr int previousCode = 102;
constexpr int menuCode = 103;
constexpr int deletedCode = 104;

} // namespace

class tst_ShowKeys : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_device.reset(); }

    void runningShow();
    void intervalStartsAnew();
    void showInTheBackground();
    void overviewAfterAShow();
    void overviewBeforeAnyShow();
    void bindingsAreThoseOfTheStart();

private:
    bool key(const QString &name)
    {
        return m_device->does(u"key"_s, {{u"name"_s, name}}) && m_device->idle();
    }
    bool scanCode(int code) { return event(40, code); }
    bool event(int type, int par1)
    {
        return m_device->does(u"event"_s, {{u"type"_s, type}, {u"par1"_s, par1}}) && m_device->idle();
    }
    bool isOverview() { return panelType() == 1; }
    int panelType() { return m_device->state().value("panel"_L1).toObject().value("type"_L1).toInt(); }
    bool isAwake()
    {
        return !m_device->state().value("power"_L1).toObject().value("auto_power_off"_L1).toBool();
    }
    /// Nothing is drawn on it by the program between two minutes but what a test asks for.
    QImage panel() const { return m_device->screenshot().copy(0, 60, 758, 964); }
    QStringList newCalls();

    std::unique_ptr<ShowDevice> m_device;
    qint64 m_lastCall = 0;
};

void tst_ShowKeys::initTestCase()
{
    QVERIFY(QDir().mkpath(u"/mnt/ext1/system/config"_s));
    QFile file(u"/mnt/ext1/system/config/global.cfg"_s);
    QVERIFY(file.open(QIODevice::Append));
    file.write("\nbtkeys.count=6\n"
               "btkeys.bt1.name=__DELETED__\nbtkeys.bt1.scanCode=104\ntkey.bt1.0=@KA_next\n"
               "btkeys.bt2.name=forward\nbtkeys.bt2.scanCode=101\ntkey.bt2.0=@KA_next\n"
               "btkeys.bt3.name=back\nbtkeys.bt3.scanCode=102\ntkey.bt3.0=@KA_prev\n"
               "btkeys.bt4.name=menu\nbtkeys.bt4.scanCode=103\ntkey.bt4.0=@KA_menu\n"
               "btkeys.bt5.name=forward again\nbtkeys.bt5.scanCode=101\ntkey.bt5.0=@KA_prev\n"
               "btkeys.bt6.name=no code\ntkey.bt6.0=@KA_next\n");
}

void tst_ShowKeys::init()
{
    m_lastCall = 0;
    m_device = std::make_unique<ShowDevice>();
    QVERIFY(m_device->start());
    newCalls();
}

QStringList tst_ShowKeys::newCalls()
{
    QStringList lines;
    for (const QJsonValue &value : m_device->journal()) {
        const QJsonObject call = value.toObject();
        if (call.value("number"_L1).toInteger() <= m_lastCall)
            continue;
        m_lastCall = call.value("number"_L1).toInteger();
        const QString name = call.value("name"_L1).toString();
        const QStringList arguments = call.value("arguments"_L1).toVariant().toStringList();
        // The minute may turn at any time.
        if (call.value("thread"_L1).toString() == "main"_L1 && !isQueryOrState(name.toLatin1())
            && arguments.value(0) != "updateDateTimeEvent"_L1)
            lines.append((QStringList{name} + arguments).join(u' '));
    }
    return lines;
}

void tst_ShowKeys::runningShow()
{
    QVERIFY(m_device->play());
    newCalls();
    const QImage first = panel();
    const QStringList forward{stepped, armed, awake};
    const QStringList back{stepped, armed};

    QVERIFY(key(u"next"_s));
    QCOMPARE(newCalls(), forward);
    const QImage second = panel();
    QVERIFY(second != first);
    QVERIFY(key(u"prev"_s));
    QCOMPARE(newCalls(), back);
    QCOMPARE(panel(), first);

    // The same by the configured keys; of two with one code the first counts, a deleted one does not.
    QVERIFY(scanCode(nextCode));
    QCOMPARE(newCalls(), forward);
    QCOMPARE(panel(), second);
    QVERIFY(scanCode(previousCode));
    QCOMPARE(newCalls(), back);
    QCOMPARE(panel(), first);
    QVERIFY(scanCode(0)); // where keys without a code are
    QCOMPARE(newCalls(), forward);
    QCOMPARE(panel(), second);
    for (const int code : {deletedCode, 105, -1}) {
        QVERIFY(scanCode(code));
        QCOMPARE(newCalls(), QStringList());
        QCOMPARE(panel(), second);
    }
    QVERIFY(event(25, 26));
    QVERIFY(event(165, 25));
    QCOMPARE(newCalls(), QStringList());
    QVERIFY(isAwake());
}

void tst_ShowKeys::intervalStartsAnew()
{
    const auto remaining = [this] {
        const QJsonArray timers = m_device->ask(u"timers"_s).value("timers"_L1).toArray();
        for (const QJsonValue &timer : timers) {
            if (timer.toObject().value("name"_L1) == "nextImageEvent"_L1)
                return timer.toObject().value("remaining_ms"_L1).toInt();
        }
        return -1;
    };
    QVERIFY(m_device->play());
    for (const QString &name : {u"next"_s, u"prev"_s}) {
        int before = 0;
        QTRY_VERIFY((before = remaining()) < 29'900);
        QVERIFY(m_device->does(u"key"_s, {{u"name"_s, name}}));
        QVERIFY(remaining() > before);
    }
}

void tst_ShowKeys::showInTheBackground()
{
    QVERIFY(m_device->play());
    const QImage first = panel();
    QVERIFY(m_device->does(u"background"_s));
    newCalls();
    // The keys are another task's then.
    QCOMPARE(m_device->ask(u"key"_s, {{u"name"_s, u"next"_s}}).value("error"_L1).toString(),
             u"not-possible"_s);
    QCOMPARE(newCalls(), QStringList());
    // A key's event that comes all the same steps the list.
    QVERIFY(event(25, 25));
    QCOMPARE(newCalls(), (QStringList{stepped, awake})); // and stays paused
    QVERIFY(!isAwake());
    QCOMPARE(panel(), first); // unseen
    QVERIFY(m_device->does(u"foreground"_s) && m_device->idle());
    QVERIFY(newCalls().endsWith(armed)); // the whole interval
    const QImage second = panel();
    QVERIFY(second != first);
    QVERIFY(m_device->does(u"background"_s));
    QVERIFY(event(25, 24));
    QVERIFY(newCalls().endsWith(stepped));
    QCOMPARE(panel(), second);
    QVERIFY(m_device->does(u"foreground"_s) && m_device->idle());
    QCOMPARE(panel(), first);
    QVERIFY(isAwake());
}

void tst_ShowKeys::overviewAfterAShow()
{
    QVERIFY(m_device->play());
    QVERIFY(m_device->tap(10, 10));
    QVERIFY(isOverview());
    const QImage overview = panel();
    newCalls();
    for (const QString &name : {u"next"_s, u"prev"_s, u"next"_s}) {
        QVERIFY(key(name));
        QCOMPARE(newCalls(), name == u"next"_s ? QStringList({stepped, awake}) : QStringList{stepped});
    }
    QVERIFY(scanCode(nextCode));
    QCOMPARE(newCalls(), (QStringList{stepped, awake}));
    QVERIFY(key(u"menu"_s));
    QVERIFY(scanCode(menuCode));
    QCOMPARE(newCalls(), QStringList());
    QCOMPARE(panel(), overview); // all of it unseen
    QVERIFY(!isAwake());

    QVERIFY(m_device->does(u"foreground"_s)); // the show that was not running stays stopped
    QVERIFY(!isAwake());
}

void tst_ShowKeys::overviewBeforeAnyShow()
{
    const QImage overview = panel();
    QVERIFY(key(u"next"_s));
    QCOMPARE(newCalls(), (QStringList{stepped, awake}));
    QVERIFY(key(u"prev"_s));
    QVERIFY(key(u"prev"_s));
    QCOMPARE(newCalls(), (QStringList{stepped, stepped}));
    QVERIFY(scanCode(previousCode));
    QCOMPARE(newCalls(), QStringList{stepped});
    QVERIFY(key(u"menu"_s));
    QCOMPARE(newCalls(), QStringList());
    QVERIFY(!m_device->errors().contains("add image")); // an empty list loads nothing ahead
    QCOMPARE(panel(), overview);

    // The first show begins at its first picture all the same.
    QVERIFY(m_device->play());
    const QImage first = panel();
    QVERIFY(key(u"next"_s));
    QVERIFY(panel() != first);
    QVERIFY(key(u"prev"_s));
    QCOMPARE(panel(), first);
}

void tst_ShowKeys::bindingsAreThoseOfTheStart()
{
    const QString path = u"/mnt/ext1/system/config/global.cfg"_s;
    QVERIFY(m_device->play());
    const QImage first = panel();
    QVERIFY(QFile::rename(path, path + u".kept"_s));
    QVERIFY(scanCode(nextCode));
    QVERIFY(panel() != first);
    QVERIFY(QFile::rename(path + u".kept"_s, path));
}

QTEST_GUILESS_MAIN(tst_ShowKeys)
#include "tst_show_keys.moc"
