// What slate-run writes into a device before a start: kind of device, orientation, language.

#include "launcher_run.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

class tst_LauncherSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void profileStays();
    void profileThatDoesNotExist_data();
    void profileThatDoesNotExist();
    void recordedProfileThatDoesNotExist();
    void refusedProfileIsNotKept();
    void recordedProfileThatIsBroken();
    void profileOfTheUsersOwn();
    void refusedStartMakesNoDevice_data();
    void refusedStartMakesNoDevice();
    void damagedRecordIsRefused_data();
    void damagedRecordIsRefused();
    void foreignMembersStay();
    void orientationCountsForOneStart();
    void orientationOutOfRange_data();
    void orientationOutOfRange();
    void languageIsWritten_data();
    void languageIsWritten();
    void languageFileIsMade();
    void languageThatCannotBe_data();
    void languageThatCannotBe();
    void languageWithoutTexts_data();
    void languageWithoutTexts();
    void languageOfACountry();

private:
    LauncherEnd start(const QStringList &options) const;
    QJsonObject record() const;
    QString profile(const QString &name) const
    {
        return m_place->path(u"prefix/share/picture_stand/profiles/%1.json"_s.arg(name));
    }
    /// The usual profile, with another text in the place of one.
    QByteArray changed(const QByteArray &before, const QByteArray &after) const
    {
        return fileContent(profile(u"grey-6"_s)).replace(before, after);
    }
    QString configuration() const { return m_root + u"/mnt/ext1/system/config/global.cfg"_s; }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<LauncherPlace> m_place;
    QString m_root;
};

void tst_LauncherSettings::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_place = std::make_unique<LauncherPlace>(m_folder->path());
    QVERIFY(!m_place->useOwnPrefix().isEmpty());
    m_root = m_place->path(u"device"_s);
}

LauncherEnd tst_LauncherSettings::start(const QStringList &options) const
{
    return m_place->run(QStringList{u"--root"_s, m_root, u"--headless"_s} + options
                        + QStringList{u"--"_s, u"cat"_s, u"/devroot/device.json"_s});
}

QJsonObject tst_LauncherSettings::record() const
{
    return QJsonDocument::fromJson(fileContent(m_root + u"/devroot/device.json"_s)).object();
}

void tst_LauncherSettings::profileStays()
{
    const QJsonObject usual{{u"profile"_s, u"grey-6"_s}};
    const QJsonObject large{{u"profile"_s, u"grey-8"_s}};

    QCOMPARE(QJsonDocument::fromJson(start({}).output).object(), usual);
    QCOMPARE(QJsonDocument::fromJson(start({u"--profile"_s, u"grey-8"_s}).output).object(), large);
    QCOMPARE(QJsonDocument::fromJson(start({}).output).object(), large);
    QCOMPARE(record(), large);
}

void tst_LauncherSettings::profileThatDoesNotExist_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("unknown") << u"grey-99"_s;
    QTest::newRow("file name") << u"grey-6.json"_s;
}

void tst_LauncherSettings::profileThatDoesNotExist()
{
    QFETCH(QString, name);

    QCOMPARE(start({}).status, 0);
    const QByteArray before = fileContent(m_root + u"/devroot/device.json"_s);
    const LauncherEnd end = start({u"--profile"_s, name});
    QCOMPARE(end.errors,
             "slate-run: There is no profile \"" + name.toUtf8() + "\"; there are: grey-6, grey-8.\n");
    QCOMPARE(end.output, QByteArray());
    QCOMPARE(end.status, 2);
    QCOMPARE(fileContent(m_root + u"/devroot/device.json"_s), before);
}

void tst_LauncherSettings::recordedProfileThatDoesNotExist()
{
    QVERIFY(writeFile(m_root + u"/devroot/device.json"_s, "{\"profile\": \"grey-99\"}"));
    const LauncherEnd end = start({});
    QCOMPARE(end.errors,
             QByteArray(
                 "slate-run: There is no profile \"grey-99\"; there are: grey-6, grey-8. The device has kept "
                 "this profile since an earlier start; --profile gives it another.\n"));
    QCOMPARE(end.status, 2);
    QCOMPARE(start({u"--profile"_s, u"grey-8"_s}).status, 0);
}

void tst_LauncherSettings::refusedProfileIsNotKept()
{
    QVERIFY(writeFile(profile(u"flip"_s), changed("\"grey-6\"", "\"flip\"").replace("758", "0")));
    QCOMPARE(start({}).status, 0);
    const LauncherEnd end = start({u"--profile"_s, u"flip"_s});
    QCOMPARE(end.errors,
             "slate-run: The profile " + profile(u"flip"_s).toUtf8()
                 + " is not usable: \"width\" must be a whole number from 1 to 10000.\n");
    QCOMPARE(end.output, QByteArray());
    QCOMPARE(end.status, 2);
    QCOMPARE(record(), (QJsonObject{{u"profile"_s, u"grey-6"_s}}));
    QCOMPARE(start({}).status, 0);
}

void tst_LauncherSettings::recordedProfileThatIsBroken()
{
    QCOMPARE(start({u"--profile"_s, u"grey-8"_s}).status, 0);
    QVERIFY(writeFile(profile(u"grey-8"_s), "{\n{"));
    const LauncherEnd end = start({});
    QVERIFY2(isOneLine(end.errors) && end.errors.contains("/grey-8.json is no JSON object (line 2: ")
                 && end.errors.endsWith("--profile gives it another.\n"),
             end.errors.constData());
    QCOMPARE(end.output, QByteArray());
    QCOMPARE(end.status, 2);
    QCOMPARE(start({u"--profile"_s, u"grey-6"_s}).status, 0);
}

void tst_LauncherSettings::profileOfTheUsersOwn()
{
    QVERIFY(writeFile(profile(u"My_panel.2"_s), changed("\"grey-6\"", "\"My_panel.2\"")));
    const LauncherEnd end = start({u"--profile"_s, u"My_panel.2"_s});
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(record(), (QJsonObject{{u"profile"_s, u"My_panel.2"_s}}));
    QVERIFY(m_place->run({u"--help"_s}).output.contains("My_panel.2, grey-6, grey-8\n"));
}

void tst_LauncherSettings::refusedStartMakesNoDevice_data()
{
    QTest::addColumn<QStringList>("options");

    QTest::newRow("profile") << QStringList{u"--profile"_s, u"grey-99"_s};
    QTest::newRow("path as profile") << QStringList{u"--profile"_s, u"../profiles/grey-6"_s};
    QTest::newRow("language") << QStringList{u"--language"_s, u"tlh"_s};
}

void tst_LauncherSettings::refusedStartMakesNoDevice()
{
    QFETCH(QStringList, options);

    const LauncherEnd end = start(options);
    QVERIFY2(isOneLine(end.errors), end.errors.constData());
    QCOMPARE(end.status, 2);
    QVERIFY(!QDir(m_root).exists());
}

void tst_LauncherSettings::damagedRecordIsRefused_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("no JSON") << QByteArray("\x01\xff{");
    QTest::newRow("no object") << QByteArray("[1]");
    QTest::newRow("no profile") << QByteArray("{}");
    QTest::newRow("profile is no text") << QByteArray("{\"profile\": 6}");
}

void tst_LauncherSettings::damagedRecordIsRefused()
{
    QFETCH(QByteArray, content);

    QVERIFY(writeFile(m_root + u"/devroot/device.json"_s, content));
    const LauncherEnd end = start({});
    QVERIFY2(isOneLine(end.errors) && end.errors.contains("/devroot/device.json names no profile"),
             end.errors.constData());
    QCOMPARE(end.status, 2);
    QCOMPARE(fileContent(m_root + u"/devroot/device.json"_s), content);
    QCOMPARE(start({u"--profile"_s, u"grey-8"_s}).status, 0); // the way out
    QCOMPARE(record(), (QJsonObject{{u"profile"_s, u"grey-8"_s}}));
}

void tst_LauncherSettings::foreignMembersStay()
{
    QVERIFY(writeFile(m_root + u"/devroot/device.json"_s, "{\"profile\": \"grey-8\", \"owner\": \"me\"}"));
    QCOMPARE(start({u"--orientation"_s, u"1"_s}).status, 0);
    QCOMPARE(record(),
             (QJsonObject{{u"profile"_s, u"grey-8"_s}, {u"owner"_s, u"me"_s}, {u"orientation"_s, 1}}));
}

void tst_LauncherSettings::orientationCountsForOneStart()
{
    for (const int orientation : {0, 3}) {
        const LauncherEnd turned = start({u"--orientation"_s, QString::number(orientation)});
        QCOMPARE(QJsonDocument::fromJson(turned.output).object(),
                 (QJsonObject{{u"profile"_s, u"grey-6"_s}, {u"orientation"_s, orientation}}));
    }
    QCOMPARE(QJsonDocument::fromJson(start({}).output).object(), (QJsonObject{{u"profile"_s, u"grey-6"_s}}));
}

void tst_LauncherSettings::orientationOutOfRange_data()
{
    QTest::addColumn<QString>("value");

    QTest::newRow("below") << u"-1"_s;
    QTest::newRow("above") << u"4"_s;
    QTest::newRow("no number") << u"left"_s;
    QTest::newRow("nothing") << QString();
}

void tst_LauncherSettings::orientationOutOfRange()
{
    QFETCH(QString, value);

    const LauncherEnd end = start({u"--orientation="_s + value});
    QVERIFY2(isOneLine(end.errors), end.errors.constData());
    QCOMPARE(end.status, 2);
    QVERIFY(!QDir(m_root).exists());
}

void tst_LauncherSettings::languageIsWritten_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("empty file") << QByteArray("") << QByteArray("language=de\n");
    QTest::newRow("other lines") << QByteArray("a=1\n\n# note\n b = 2 \n")
                                 << QByteArray("a=1\n\n# note\n b = 2 \nlanguage=de\n");
    QTest::newRow("last line without end") << QByteArray("a=1") << QByteArray("a=1\nlanguage=de\n");
    QTest::newRow("replaced in its place")
        << QByteArray("a=1\nlanguage=en\nb=2\n") << QByteArray("a=1\nlanguage=de\nb=2\n");
    QTest::newRow("carriage returns stay")
        << QByteArray("a=1\r\nlanguage=en\r\nb=2\r\n") << QByteArray("a=1\r\nlanguage=de\r\nb=2\r\n");
    QTest::newRow("empty value") << QByteArray("language=\nb=2\n") << QByteArray("language=de\nb=2\n");
    QTest::newRow("longer value at the end")
        << QByteArray("a=1\nlanguage=pt_BR") << QByteArray("a=1\nlanguage=de");
    QTest::newRow("twice: the last counts")
        << QByteArray("language=en\na=1\nlanguage=fr\n") << QByteArray("language=en\na=1\nlanguage=de\n");
    QTest::newRow("keys like it") << QByteArray("languages=x\nmy.language=y\nlanguage.a=z\n")
                                  << QByteArray("languages=x\nmy.language=y\nlanguage.a=z\nlanguage=de\n");
    QTest::newRow("foreign bytes") << QByteArray("a=\xff\x00\x01\nlanguage=en\n\xfe", 20)
                                   << QByteArray("a=\xff\x00\x01\nlanguage=de\n\xfe", 20);
}

void tst_LauncherSettings::languageIsWritten()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);

    QVERIFY(writeFile(configuration(), before));
    QCOMPARE(start({u"--language"_s, u"de"_s}).errors, QByteArray());
    QCOMPARE(fileContent(configuration()), after);
    QCOMPARE(start({}).errors, QByteArray());
    QCOMPARE(fileContent(configuration()), after);
}

void tst_LauncherSettings::languageFileIsMade()
{
    QCOMPARE(start({u"--language"_s, u"zh_CN"_s}).status, 0);
    QCOMPARE(fileContent(configuration()), QByteArray("language=zh_CN\n"));
}

void tst_LauncherSettings::languageThatCannotBe_data()
{
    QTest::addColumn<QString>("language");

    QTest::newRow("another line") << u"de\nbtkeys.count=5"_s;
    QTest::newRow("blank") << u"d e"_s;
    QTest::newRow("empty") << QString();
}

void tst_LauncherSettings::languageThatCannotBe()
{
    QFETCH(QString, language);

    const LauncherEnd end = start({u"--language"_s, language});
    QVERIFY2(isOneLine(end.errors), end.errors.constData());
    QCOMPARE(end.status, 2);
    QVERIFY(!QFile::exists(configuration()));
}

void tst_LauncherSettings::languageWithoutTexts_data()
{
    QTest::addColumn<QString>("language");

    QTest::newRow("unknown") << u"tlh"_s;
    QTest::newRow("unknown, with a country") << u"xx_DE"_s;
    QTest::newRow("name of a locale") << u"de.UTF-8"_s;
    QTest::newRow("capitals") << u"DE"_s;
    QTest::newRow("out of the folder") << u"..de"_s;
    QTest::newRow("Chinese of no country") << u"zh"_s;
}

void tst_LauncherSettings::languageWithoutTexts()
{
    QFETCH(QString, language);

    const LauncherEnd end = start({u"--profile"_s, u"grey-8"_s, u"--language"_s, language});
    QCOMPARE(end.errors,
             "slate-run: there is no language \"" + language.toUtf8() + "\"; there are de, en, zh_CN\n");
    QCOMPARE(end.status, 2);
    QVERIFY(!QFile::exists(configuration()));
    QVERIFY(!QFile::exists(m_root + u"/devroot/device.json"_s)); // nothing of a refused start stays
}

void tst_LauncherSettings::languageOfACountry()
{
    QCOMPARE(start({u"--language"_s, u"de_AT"_s}).errors, QByteArray());
    QCOMPARE(fileContent(configuration()), QByteArray("language=de_AT\n"));
}

QTEST_GUILESS_MAIN(tst_LauncherSettings)
#include "tst_launcher_settings.moc"
