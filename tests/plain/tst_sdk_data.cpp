// The SDK's operations on configuration files, pictures and the log.

#include <slateview.h>
#include <slateview_testing.h>

#include <shared_tools/cfg_wrapper.h>

#include <captured_error.h>
#include <journal_lines.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <vector>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;
using namespace lindenreed::utilities;

namespace {

constexpr int largest = std::numeric_limits<int>::max();
constexpr int smallest = std::numeric_limits<int>::min();
constexpr unsigned char untouched = 0xa7; ///< no multiple of 17: no panel grey

/// 5 rows of 20 bytes, 12 of which belong to the picture: 12 grey or 4 coloured pixels.
std::vector<unsigned char> canvas()
{
    std::vector<unsigned char> bytes(100, untouched);
    for (int y = 0; y < 5; ++y) {
        for (int x = 0; x < 12; ++x)
            bytes[std::size_t(y * 20 + x)] = static_cast<unsigned char>(5 + x * 20 + y);
    }
    return bytes;
}

bool paddingIsUntouched(const std::vector<unsigned char> &bytes)
{
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % 20 >= 12 && bytes[i] != untouched)
            return false;
    }
    return true;
}

} // namespace

class tst_SdkData : public QObject
{
    Q_OBJECT

private slots:
    void readsConfiguration();
    void missingConfiguration();
    void nullConfiguration();
    void longValuesAreCutInTheJournal();
    void wrapperReads();
    void wrapperReadsIfExists();
    void wrapperClosed();
    void readFromConfigCloses();

    void tone_data();
    void tone();
    void defaultTone();
    void toneOfColour();
    void refusedAreas_data();
    void refusedAreas();
    void refusedFactors_data();
    void refusedFactors();
    void dither();
    void ditherRectangle_data();
    void ditherRectangle();

    void log();
    void logWithoutArguments();
    void longLogLine();

private:
    QByteArray write(const QByteArray &content)
    {
        const QString path = m_folder.filePath(u"global.cfg"_s);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("The test's file cannot be written.");
        return QFile::encodeName(path);
    }

    QTemporaryDir m_folder;
};

void tst_SdkData::readsConfiguration()
{
    const QByteArray path = write("n=7\ns=text\nhuge=99999999999\n");
    DeviceForTest device;
    sv_config *const config = sv_config_open(path.constData(), 0);
    QVERIFY(config);
    QCOMPARE(ReadInt(config, "n", -1), 7);
    QCOMPARE(ReadInt(config, "s", -1), -1);
    QCOMPARE(ReadInt(config, "huge", -1), -1);
    QCOMPARE(ReadInt(config, "none", -1), -1);
    const char *const text = ReadString(config, "s", "f");
    const char fallback[] = "f";
    QVERIFY(ReadString(config, "none", fallback) == fallback);
    QVERIFY(!ReadString(config, "none", nullptr));
    QCOMPARE(QByteArray(text), QByteArray("text")); // lives until the configuration is closed
    sv_config_close(config);
    QCOMPARE(journalLines(device),
             QByteArrayList({"sv_config_open(" + path.left(200) + ", 0)", "ReadInt(n, -1) = 7",
                             "ReadInt(s, -1) = -1", "ReadInt(huge, -1) = -1", "ReadInt(none, -1) = -1",
                             "ReadString(s, f) = text", "ReadString(none, f) = f",
                             "ReadString(none, null) = null", "sv_config_close(config)"}));
}

void tst_SdkData::missingConfiguration()
{
    DeviceForTest device;
    sv_config *const missing = sv_config_open("/nowhere/global.cfg", 1);
    QVERIFY(missing);
    QCOMPARE(ReadInt(missing, "a", 3), 3);
    sv_config_close(missing);
    sv_config *const unnamed = sv_config_open(nullptr, 0);
    QVERIFY(unnamed);
    QCOMPARE(ReadInt(unnamed, "a", 3), 3);
    sv_config_close(unnamed);
}

void tst_SdkData::nullConfiguration()
{
    DeviceForTest device;
    const char fallback[] = "f";
    QCOMPARE(ReadInt(nullptr, "a", 3), 3);
    QVERIFY(ReadString(nullptr, "a", fallback) == fallback);
    sv_config_close(nullptr);
    sv_config *const config = sv_config_open("/nowhere", 0);
    QCOMPARE(ReadInt(config, nullptr, 3), 3);
    QVERIFY(ReadString(config, nullptr, fallback) == fallback);
    sv_config_close(config);
    QCOMPARE(journalLines(device, {"sv_config_close"}),
             QByteArrayList({"sv_config_close(null)", "sv_config_close(config)"}));
}

void tst_SdkData::longValuesAreCutInTheJournal()
{
    const QByteArray path = write("a=" + QByteArray(1 << 20, 'x') + "\n");
    DeviceForTest device;
    sv_config *const config = sv_config_open(path.constData(), 0);
    QCOMPARE(qstrlen(ReadString(config, "a", "")), std::size_t(1) << 20);
    sv_config_close(config);
    QCOMPARE(device.calls({"ReadString"}).constFirst().result, QByteArray(200, 'x'));
}

void tst_SdkData::wrapperReads()
{
    CfgWrapper config(write("n=7\r\ns=text\r\nn=8\r\n").toStdString(), 0);
    QCOMPARE(config.read<int>("n", -1), 8);
    QCOMPARE(config.read<int>("s", -1), -1);
    QCOMPARE(config.read<std::string>("s", "f"), std::string("text"));
    QCOMPARE(config.read<std::string>("n", "f"), std::string("8"));
    QCOMPARE(config.read<std::string>("none", "f"), std::string("f"));
    CfgWrapper missing("/nowhere/global.cfg", 1);
    QCOMPARE(missing.read<std::string>("s", "f"), std::string("f"));
}

void tst_SdkData::wrapperReadsIfExists()
{
    CfgWrapper config(write("zero=0\nn=7\nleast=-2147483648\nhuge=2147483648\ns=\n").toStdString(), 0);
    QVERIFY(config.readIfExists<int>("zero") == boost::optional<int>(0));
    QVERIFY(config.readIfExists<int>("n") == boost::optional<int>(7));
    QVERIFY(config.readIfExists<int>("least") == boost::optional<int>(smallest));
    QVERIFY(!config.readIfExists<int>("huge"));
    QVERIFY(!config.readIfExists<int>("s"));
    QVERIFY(!config.readIfExists<int>("none"));
    QVERIFY(config.readIfExists<std::string>("s") == boost::optional<std::string>(""));
    QVERIFY(config.readIfExists<std::string>("n") == boost::optional<std::string>("7"));
    QVERIFY(!config.readIfExists<std::string>("none"));
}

void tst_SdkData::wrapperClosed()
{
    DeviceForTest device;
    {
        CfgWrapper config(write("n=7\n").toStdString(), 0);
        config.closeNoSave();
        config.closeNoSave();
        QCOMPARE(config.read<int>("n", -1), -1);
        QVERIFY(!config.readIfExists<int>("n"));
        QVERIFY(!config.readIfExists<std::string>("n"));
        QCOMPARE(config.read<std::string>("n", "f"), std::string("f"));
    }
    QCOMPARE(device.calls({"sv_config_close"}).size(), 1);
}

void tst_SdkData::readFromConfigCloses()
{
    const QByteArray path = write("language=de\nn=3\n");
    DeviceForTest device;
    QCOMPARE(readFromConfig<std::string>(path.toStdString(), "language", "en"), std::string("de"));
    QCOMPARE(readFromConfig<int>(path.toStdString(), "n", 9), 3);
    QCOMPARE(readFromConfig<int>("/nowhere", "n", 9), 9);
    QCOMPARE(device.calls({"sv_config_open"}).size(), 3);
    QCOMPARE(device.calls({"sv_config_close"}).size(), 3);
}

void tst_SdkData::tone_data()
{
    QTest::addColumn<double>("brightness");
    QTest::addColumn<double>("contrast");
    QTest::addColumn<double>("gamma");
    QTest::addColumn<bool>("changes");

    QTest::newRow("ones change nothing") << 1.0 << 1.0 << 1.0 << false;
    QTest::newRow("brightness") << 1.5 << 1.0 << 1.0 << true;
    QTest::newRow("contrast") << 1.0 << 1.5 << 1.0 << true;
    QTest::newRow("gamma") << 1.0 << 1.0 << 1.5 << true;
    QTest::newRow("zeros are passed on") << 0.0 << 0.0 << 0.0 << true;
}

void tst_SdkData::tone()
{
    QFETCH(double, brightness);
    QFETCH(double, contrast);
    QFETCH(double, gamma);
    QFETCH(bool, changes);

    DeviceForTest device;
    std::vector<unsigned char> bytes = canvas();
    adjustAreaWithBrightnessContrastGamma(bytes.data(), 20, 12, 5, brightness, contrast, gamma);
    QCOMPARE(bytes != canvas(), changes);
    QVERIFY(paddingIsUntouched(bytes));
    QCOMPARE(
        journalLines(device),
        QByteArrayList({"adjustAreaWithBrightnessContrastGamma(20, 12, 5, " + QByteArray::number(brightness)
                        + ", " + QByteArray::number(contrast) + ", " + QByteArray::number(gamma) + ")"}));
}

void tst_SdkData::defaultTone()
{
    DeviceForTest device;
    std::vector<unsigned char> bytes = canvas();
    adjustAreaDefault(bytes.data(), 20, 12, 5);
    QVERIFY(bytes != canvas());
    QVERIFY(paddingIsUntouched(bytes));
    QCOMPARE(journalLines(device), QByteArrayList({"adjustAreaDefault(20, 12, 5)"}));
}

void tst_SdkData::toneOfColour()
{
    DeviceForTest device;
    // 4 pixels are 4 bytes of a grey row and 12 of a coloured one: how far the change reaches tells which it
    // was.
    std::vector<unsigned char> grey = canvas();
    adjustAreaWithBrightnessContrastGamma(grey.data(), 20, 4, 5, 1.5, 1.0, 1.0);
    QCOMPARE(grey[11], canvas()[11]);
    device.setColourMask(1);
    std::vector<unsigned char> coloured = canvas();
    adjustAreaWithBrightnessContrastGamma(coloured.data(), 20, 4, 5, 0.5, 1.0, 1.0);
    QVERIFY(coloured[11] != canvas()[11]);
    QVERIFY(paddingIsUntouched(coloured));
    // Seven pixels of three bytes do not fit a row of twenty.
    coloured = canvas();
    adjustAreaWithBrightnessContrastGamma(coloured.data(), 20, 7, 5, 0.5, 1.0, 1.0);
    QVERIFY(coloured == canvas());
}

void tst_SdkData::refusedAreas_data()
{
    QTest::addColumn<int>("bytesPerLine");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");

    QTest::newRow("no width") << 20 << 0 << 5;
    QTest::newRow("no height") << 20 << 12 << 0;
    QTest::newRow("negative width") << 20 << -12 << 5;
    QTest::newRow("negative height") << 20 << 12 << -5;
    QTest::newRow("smallest numbers") << smallest << smallest << smallest;
    QTest::newRow("rows that overlap") << 11 << 12 << 5;
    QTest::newRow("no row length") << 0 << 12 << 5;
    QTest::newRow("negative row length") << -20 << 12 << 5;
    QTest::newRow("width beyond all rows") << 20 << largest << 5;
}

void tst_SdkData::refusedAreas()
{
    QFETCH(int, bytesPerLine);
    QFETCH(int, width);
    QFETCH(int, height);

    DeviceForTest device;
    for (const int mask : {0, 1}) {
        device.setColourMask(mask);
        std::vector<unsigned char> bytes = canvas();
        adjustAreaDefault(bytes.data(), bytesPerLine, width, height);
        adjustAreaWithBrightnessContrastGamma(bytes.data(), bytesPerLine, width, height, 0.5, 0.5, 0.5);
        QVERIFY(bytes == canvas());
    }
    adjustAreaDefault(nullptr, 20, 12, 5);
    adjustAreaWithBrightnessContrastGamma(nullptr, 20, 12, 5, 0.5, 0.5, 0.5);
    adjustAreaDefault(nullptr, 0, 0, 0);
    QCOMPARE(device.calls().size(), 7); // all in the journal
}

void tst_SdkData::refusedFactors_data()
{
    QTest::addColumn<double>("factor");
    QTest::newRow("no number") << std::nan("");
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    QTest::newRow("infinite below") << -std::numeric_limits<double>::infinity();
}

void tst_SdkData::refusedFactors()
{
    QFETCH(double, factor);
    DeviceForTest device;
    std::vector<unsigned char> bytes = canvas();
    adjustAreaWithBrightnessContrastGamma(bytes.data(), 20, 12, 5, factor, 0.5, 0.5);
    adjustAreaWithBrightnessContrastGamma(bytes.data(), 20, 12, 5, 0.5, factor, 0.5);
    adjustAreaWithBrightnessContrastGamma(bytes.data(), 20, 12, 5, 0.5, 0.5, factor);
    QVERIFY(bytes == canvas());
}

void tst_SdkData::dither()
{
    DeviceForTest device;
    std::vector<unsigned char> bytes = canvas();
    QuickFloyd16Dither(bytes.data(), 20, 0, 0, 12, 5);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % 20 < 12)
            QCOMPARE(bytes[i] % 17, 0);
    }
    QVERIFY(paddingIsUntouched(bytes));
    QCOMPARE(journalLines(device), QByteArrayList({"QuickFloyd16Dither(20, 0, 0, 12, 5)"}));
}

void tst_SdkData::ditherRectangle_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<QRect>("touched");

    QTest::newRow("inside") << 2 << 1 << 3 << 2 << QRect(2, 1, 3, 2);
    QTest::newRow("reaching out to the left and above") << -3 << -2 << 6 << 4 << QRect(0, 0, 3, 2);
    QTest::newRow("reaching beyond the row") << 15 << 0 << 50 << 2 << QRect(15, 0, 5, 2);
    QTest::newRow("widest") << 0 << 0 << largest << 1 << QRect(0, 0, 20, 1);
    QTest::newRow("outside to the left") << -9 << 0 << 9 << 5 << QRect();
    QTest::newRow("outside above") << 0 << -5 << 12 << 5 << QRect();
    QTest::newRow("outside to the right") << 20 << 0 << 4 << 5 << QRect();
    QTest::newRow("no width") << 0 << 0 << 0 << 5 << QRect();
    QTest::newRow("no height") << 0 << 0 << 12 << 0 << QRect();
    QTest::newRow("negative width") << 4 << 0 << -2 << 5 << QRect();
    QTest::newRow("negative height") << 4 << 4 << 2 << -3 << QRect();
    QTest::newRow("smallest numbers") << smallest << smallest << smallest << smallest << QRect();
    QTest::newRow("sums beyond an int") << largest << 0 << largest << 5 << QRect();
}

void tst_SdkData::ditherRectangle()
{
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(QRect, touched);

    DeviceForTest device;
    std::vector<unsigned char> bytes(100, untouched);
    QuickFloyd16Dither(bytes.data(), 20, x, y, width, height);
    for (int row = 0; row < 5; ++row) {
        for (int column = 0; column < 20; ++column) {
            const int value = bytes[std::size_t(row * 20 + column)];
            if (touched.contains(column, row))
                QCOMPARE(value % 17, 0);
            else
                QCOMPARE(value, int(untouched));
        }
    }
    QuickFloyd16Dither(nullptr, 20, 0, 0, 12, 5);
    QuickFloyd16Dither(bytes.data(), 0, 0, 0, 12, 5);
    QuickFloyd16Dither(bytes.data(), -20, 0, 0, 12, 5);
    QCOMPARE(device.calls({"QuickFloyd16Dither"}).size(), 4);
}

void tst_SdkData::log()
{
    DeviceForTest device;
    CapturedError error;
    lr_print_log2(2, "picture_stand/src/datastorage", 12, "bool open()", "%s: %d\n", "no such table", 1);
    QCOMPARE(error.finish(),
             QByteArrayList({"2 picture_stand/src/datastorage:12 bool open(): no such table: 1\\n\n"}));
    QCOMPARE(journalLines(device), // without the line's own text
             QByteArrayList({"lr_print_log2(2, picture_stand/src/datastorage, 12, bool open())"}));
}

void tst_SdkData::logWithoutArguments()
{
    CapturedError error;
    const char *const none = nullptr;
    lr_print_log2(4, none, 0, none, "%s", "");
    lr_print_log2(4, "f", 0, "g", none);
    QCOMPARE(error.finish(), QByteArrayList({"4 :0 : \n", "4 f:0 g: \n"}));
}

void tst_SdkData::longLogLine()
{
    CapturedError error;
    const std::string text(60'000, 'x');
    lr_print_log2(4, "f", 0, "g", "<%s>", text.c_str());
    const QByteArrayList writes = error.finish();
    QCOMPARE(writes.size(), 1);
    QCOMPARE(writes.constFirst(), "4 f:0 g: <" + QByteArray::fromStdString(text) + ">\n");
}

QTEST_GUILESS_MAIN(tst_SdkData)
#include "tst_sdk_data.moc"
