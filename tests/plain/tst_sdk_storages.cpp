// Which storages are in, and sizes as text.

#include <shared_tools/filesystem.h>
#include <shared_tools/human_string_utility.h>
#include <slateview.h>
#include <slateview_testing.h>

#include <facts.h>
#include <texts.h>

#include <journal_lines.h>

#include <QCoreApplication>
#include <QTest>

#include <cstring>
#include <limits>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;
using lindenreed::system::filesystem::IsSDCardMounted;
using lindenreed::utilities::HumanStringUtility;

namespace {

constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();

QString sizeText(std::uint64_t count, std::uint64_t unit)
{
    char buffer[64];
    const int length = HumanStringUtility::HumanSizeWithPrecision(buffer, sizeof buffer, count, unit, false);
    return length == int(std::strlen(buffer)) ? QString::fromUtf8(buffer) : u"length %1"_s.arg(length);
}

} // namespace

class tst_SdkStorages : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { texts::load(u"en"_s); }
    void sizesWithoutDevice();
    void mounted();
    void mountedIsPutBack();
    void cardIsAtOnePath();
    void sizes_data();
    void sizes();
    void sizesInTheLanguage_data();
    void sizesInTheLanguage();
    void sizesAreCut_data();
    void sizesAreCut();
    void sizesWithoutABuffer();
};

void tst_SdkStorages::sizesWithoutDevice()
{
    QCOMPARE(texts::language(), QString()); // the first test: no table has been loaded
    QCOMPARE(sizeText(3, 1024 * 1024), u"3.0 MB"_s);
    QVERIFY(!isUsbStorMounted());
    QVERIFY(!IsSDCardMounted("/mnt/ext2"));
}

void tst_SdkStorages::mounted()
{
    DeviceForTest device;
    device.setMounted(true, false);
    QVERIFY(IsSDCardMounted("/mnt/ext2"));
    QVERIFY(!isUsbStorMounted());
    device.setMounted(false, true);
    QVERIFY(!IsSDCardMounted("/mnt/ext2"));
    QCOMPARE(isUsbStorMounted(), 1);
    QCOMPARE(journalLines(device),
             QByteArrayList({"IsSDCardMounted(/mnt/ext2) = 1", "isUsbStorMounted() = 0",
                             "IsSDCardMounted(/mnt/ext2) = 0", "isUsbStorMounted() = 1"}));
}

void tst_SdkStorages::mountedIsPutBack()
{
    const bool card = facts().cardPresent;
    const bool usb = facts().usbPresent;
    {
        DeviceForTest device;
        device.setMounted(!card, !usb);
        device.setMounted(!card, usb);
    }
    QCOMPARE(facts().cardPresent.load(), card);
    QCOMPARE(facts().usbPresent.load(), usb);
}

void tst_SdkStorages::cardIsAtOnePath()
{
    DeviceForTest device;
    device.setMounted(true, true);
    QVERIFY(!IsSDCardMounted("/mnt/ext1"));
    QVERIFY(!IsSDCardMounted("/mnt/ext3"));
    QVERIFY(!IsSDCardMounted("/mnt/ext2/Photo"));
    QVERIFY(!IsSDCardMounted(""));
}

void tst_SdkStorages::sizes_data()
{
    QTest::addColumn<quint64>("count");
    QTest::addColumn<quint64>("unit");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, std::uint64_t count, std::uint64_t unit, const QString &expected) {
        QTest::newRow(name) << quint64(count) << quint64(unit) << expected;
    };
    row("nothing", 0, 4096, u"0 B"_s);
    row("no unit", 4096, 0, u"0 B"_s);
    row("one byte", 1, 1, u"1 B"_s);
    row("just below the next unit", 1023, 1, u"1023 B"_s);
    row("one of the next unit", 1, 1024, u"1.0 KB"_s);
    row("a decimal", 3, 512, u"1.5 KB"_s);
    row("last with a decimal", 999, 102, u"99.5 KB"_s);
    row("would round to a hundred", 1023, 100, u"99.9 KB"_s);
    row("a hundred", 100, 1024, u"100 KB"_s);
    row("would be shown as 1024", 1048575, 1, u"1.0 MB"_s);
    row("card of sixteen", 15'931'539'456 / 4096, 4096, u"14.8 GB"_s);
    row("memory of thirty-two", 7'628'312, 4096, u"29.1 GB"_s);
    row("a large disk", 976'754'646, 4096, u"3.6 TB"_s);
    row("more than the largest unit counts", 1ULL << 60, 1024, u"1073741824 TB"_s);
    row("more than 64 bits", largest, largest, u"309485009821345068724781056 TB"_s);
}

void tst_SdkStorages::sizes()
{
    QFETCH(quint64, count);
    QFETCH(quint64, unit);
    QFETCH(QString, expected);

    const DeviceForTest device;
    QCOMPARE(sizeText(count, unit), expected);
}

void tst_SdkStorages::sizesInTheLanguage_data()
{
    QTest::addColumn<QString>("expected");

    QTest::newRow("en") << u"29.1 GB"_s;
    QTest::newRow("de") << u"29,1 GB"_s;
    QTest::newRow("fr") << u"29,1 Go"_s;
    QTest::newRow("ru") << u"29,1 ГБ"_s;
    QTest::newRow("ja") << u"29.1 GB"_s;
}

void tst_SdkStorages::sizesInTheLanguage()
{
    QFETCH(QString, expected);

    const DeviceForTest device;
    texts::load(QString::fromLatin1(QTest::currentDataTag()));
    QCOMPARE(sizeText(7'628'312, 4096), expected);
}

void tst_SdkStorages::sizesAreCut_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QString>("expected");

    QTest::newRow("just large enough") << 10 << u"29,1 ГБ"_s;
    QTest::newRow("one too small") << 9 << u"29,1 Г"_s;
    QTest::newRow("within a character") << 8 << u"29,1 Г"_s;
    QTest::newRow("within the one before") << 7 << u"29,1 "_s;
    QTest::newRow("only the end") << 1 << QString();
}

void tst_SdkStorages::sizesAreCut()
{
    QFETCH(int, size);
    QFETCH(QString, expected);

    const DeviceForTest device;
    texts::load(u"ru"_s);
    char buffer[16];
    std::memset(buffer, 'x', sizeof buffer);
    const int length = HumanStringUtility::HumanSizeWithPrecision(buffer, size, 7'628'312, 4096, true);
    QCOMPARE(QString::fromUtf8(buffer), expected);
    QCOMPARE(length, int(std::strlen(buffer)));
    QCOMPARE(buffer[size], 'x');
}

void tst_SdkStorages::sizesWithoutABuffer()
{
    const DeviceForTest device;
    char buffer[4] = "abc";
    QCOMPARE(HumanStringUtility::HumanSizeWithPrecision(nullptr, 64, 1, 1, false), 0);
    QCOMPARE(HumanStringUtility::HumanSizeWithPrecision(buffer, 0, 1, 1, false), 0);
    QCOMPARE(HumanStringUtility::HumanSizeWithPrecision(buffer, -1, 1, 1, false), 0);
    QCOMPARE(QByteArray(buffer), QByteArray("abc"));
    QCOMPARE(journalLines(device).constFirst(), QByteArray("HumanSizeWithPrecision(64, 1, 1, 0) = 0"));
}

QTEST_GUILESS_MAIN(tst_SdkStorages)
#include "tst_sdk_storages.moc"
