// The SDK's operations on configuration files, and the wrapper around them.

#include <slateview.h>
#include <slateview_testing.h>

#include <shared_tools/cfg_wrapper.h>

#include <journal_lines.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;
using namespace lindenreed::utilities;

class tst_SdkConfiguration : public QObject
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

void tst_SdkConfiguration::readsConfiguration()
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

void tst_SdkConfiguration::missingConfiguration()
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

void tst_SdkConfiguration::nullConfiguration()
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

void tst_SdkConfiguration::longValuesAreCutInTheJournal()
{
    const QByteArray path = write("a=" + QByteArray(1 << 20, 'x') + "\n");
    DeviceForTest device;
    sv_config *const config = sv_config_open(path.constData(), 0);
    QCOMPARE(qstrlen(ReadString(config, "a", "")), std::size_t(1) << 20);
    sv_config_close(config);
    QCOMPARE(device.calls({"ReadString"}).constFirst().result, QByteArray(200, 'x'));
}

void tst_SdkConfiguration::wrapperReads()
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

void tst_SdkConfiguration::wrapperReadsIfExists()
{
    CfgWrapper config(write("zero=0\nn=7\nleast=-2147483648\nhuge=2147483648\ns=\n").toStdString(), 0);
    QVERIFY(config.readIfExists<int>("zero") == boost::optional<int>(0));
    QVERIFY(config.readIfExists<int>("n") == boost::optional<int>(7));
    QVERIFY(config.readIfExists<int>("least") == boost::optional<int>(std::numeric_limits<int>::min()));
    QVERIFY(!config.readIfExists<int>("huge"));
    QVERIFY(!config.readIfExists<int>("s"));
    QVERIFY(!config.readIfExists<int>("none"));
    QVERIFY(config.readIfExists<std::string>("s") == boost::optional<std::string>(""));
    QVERIFY(config.readIfExists<std::string>("n") == boost::optional<std::string>("7"));
    QVERIFY(!config.readIfExists<std::string>("none"));
}

void tst_SdkConfiguration::wrapperClosed()
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

void tst_SdkConfiguration::readFromConfigCloses()
{
    const QByteArray path = write("language=de\nn=3\n");
    DeviceForTest device;
    QCOMPARE(readFromConfig<std::string>(path.toStdString(), "language", "en"), std::string("de"));
    QCOMPARE(readFromConfig<int>(path.toStdString(), "n", 9), 3);
    QCOMPARE(readFromConfig<int>("/nowhere", "n", 9), 9);
    QCOMPARE(device.calls({"sv_config_open"}).size(), 3);
    QCOMPARE(device.calls({"sv_config_close"}).size(), 3);
}

QTEST_GUILESS_MAIN(tst_SdkConfiguration)
#include "tst_sdk_configuration.moc"
