// What is read from the configuration about the device's configurable keys.

#include "key_map.h"
#include "stderr_capture.h"

#include <slateview_testing.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::KeyMap;
using lindenreed::picture_stand::readKeyMap;

Q_DECLARE_METATYPE(KeyMap)

class tst_KeyMap : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_device.reset(); }

    void keys_data();
    void keys();
    void orderOfReading();
    void nothingIsLogged();

private:
    /// Writes the device's configuration.
    static void configure(const QByteArray &contents);

    std::unique_ptr<DeviceForTest> m_device;
};

void tst_KeyMap::init()
{
    QTest::failOnWarning(QRegularExpression(u".?"_s));
    m_device = std::make_unique<DeviceForTest>();
}

void tst_KeyMap::configure(const QByteArray &contents)
{
    QVERIFY(QDir().mkpath(u"/mnt/ext1/system/config"_s));
    QFile file(u"/mnt/ext1/system/config/global.cfg"_s);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(contents), contents.size());
}

void tst_KeyMap::keys_data()
{
    QTest::addColumn<QByteArray>("config");
    QTest::addColumn<KeyMap>("expected");

    QTest::newRow("empty configuration") << QByteArray() << KeyMap();
    QTest::newRow("count of zero") << QByteArray("btkeys.count=0\nbtkeys.bt1.scanCode=7\n") << KeyMap();
    QTest::newRow("count in words") << QByteArray("btkeys.count=one\nbtkeys.bt1.scanCode=7\n") << KeyMap();
    QTest::newRow("a key of which nothing is known") << QByteArray("btkeys.count=1\n") << KeyMap{{0, ""}};
    QTest::newRow("a whole key") << QByteArray("btkeys.count=1\nbtkeys.bt1.name=Left\nbtkeys.bt1.scanCode=7\n"
                                               "tkey.bt1.0=@KA_prev\n")
                                 << KeyMap{{7, "@KA_prev"}};
    QTest::newRow("an action that nobody knows is kept")
        << QByteArray("btkeys.count=1\nbtkeys.bt1.scanCode=7\ntkey.bt1.0=@KA_dictionary\n")
        << KeyMap{{7, "@KA_dictionary"}};
    QTest::newRow("only the action at 0 counts")
        << QByteArray("btkeys.count=1\nbtkeys.bt1.scanCode=7\ntkey.bt1.1=@KA_next\n") << KeyMap{{7, ""}};
    QTest::newRow("a scan code below zero")
        << QByteArray("btkeys.count=1\nbtkeys.bt1.scanCode=-7\ntkey.bt1.0=@KA_next\n")
        << KeyMap{{-7, "@KA_next"}};
    QTest::newRow("several, in the order of their codes") << QByteArray(
        "btkeys.count=3\nbtkeys.bt1.scanCode=9\ntkey.bt1.0=a\nbtkeys.bt2.scanCode=3\ntkey.bt2.0=b\n"
        "btkeys.bt3.scanCode=5\ntkey.bt3.0=c\n") << KeyMap{{3, "b"}, {5, "c"}, {9, "a"}};
    QTest::newRow("a deleted one in the middle ends nothing")
        << QByteArray("btkeys.count=3\nbtkeys.bt1.scanCode=1\nbtkeys.bt2.name=__DELETED__\n"
                      "btkeys.bt2.scanCode=2\nbtkeys.bt3.scanCode=3\n")
        << KeyMap{{1, ""}, {3, ""}};
    QTest::newRow("all deleted") << QByteArray(
        "btkeys.count=2\nbtkeys.bt1.name=__DELETED__\nbtkeys.bt2.name=__DELETED__\n")
                                 << KeyMap();
    QTest::newRow("deleted in other letters is a name")
        << QByteArray("btkeys.count=1\nbtkeys.bt1.name=__deleted__\nbtkeys.bt1.scanCode=7\n")
        << KeyMap{{7, ""}};
    QTest::newRow("deleted with more behind it is a name")
        << QByteArray("btkeys.count=1\nbtkeys.bt1.name=__DELETED__2\nbtkeys.bt1.scanCode=7\n")
        << KeyMap{{7, ""}};
    QTest::newRow("the first of three with one code, the first of all deleted")
        << QByteArray("btkeys.count=3\nbtkeys.bt1.name=__DELETED__\nbtkeys.bt1.scanCode=7\ntkey.bt1.0=a\n"
                      "btkeys.bt2.scanCode=7\ntkey.bt2.0=b\nbtkeys.bt3.scanCode=7\ntkey.bt3.0=c\n")
        << KeyMap{{7, "b"}};
    QTest::newRow("numbers without leading zeros")
        << QByteArray("btkeys.count=1\nbtkeys.bt01.scanCode=7\ntkey.bt01.0=@KA_next\n") << KeyMap{{0, ""}};
}

void tst_KeyMap::keys()
{
    QFETCH(QByteArray, config);
    QFETCH(KeyMap, expected);

    configure(config);
    QVERIFY(readKeyMap() == expected);
}

void tst_KeyMap::orderOfReading()
{
    configure("btkeys.count=2\nbtkeys.bt1.name=__DELETED__\n");
    m_device->forgetCalls();
    readKeyMap();
    QByteArrayList calls;
    for (const SdkCall &call : m_device->calls())
        calls.append(call.name + ' ' + call.arguments.value(0)
                     + (call.name == "sv_config_open" ? ' ' + call.arguments.at(1) : QByteArray()));
    calls.removeAll(
        "ReadInt btkeys.bt2.scanCode"); // asked for twice: a missing number has no value of its own
    QCOMPARE(calls,
             (QByteArrayList{"sv_config_open /mnt/ext1/system/config/global.cfg 1", "ReadInt btkeys.count",
                             "ReadString btkeys.bt1.name", "ReadString btkeys.bt2.name",
                             "ReadString tkey.bt2.0", "sv_config_close config"}));
}

void tst_KeyMap::nothingIsLogged()
{
    const StderrCapture errors;
    configure("btkeys.count=many\n\x01\xff=\n");
    readKeyMap();
    QVERIFY(QFile::remove(u"/mnt/ext1/system/config/global.cfg"_s));
    QVERIFY(readKeyMap().empty());
    QCOMPARE(errors.text(), QByteArray());
    QVERIFY(m_device->calls({"lr_print_log2"}).isEmpty());
}

QTEST_GUILESS_MAIN(tst_KeyMap)
#include "tst_key_map.moc"
