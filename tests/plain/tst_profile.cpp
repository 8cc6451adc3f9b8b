// Profile files: every value is checked, and the shipped ones are what they promise.

#include <paths.h>
#include <profile.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

/// What a usable profile file holds.
QJsonObject complete()
{
    return {{u"name"_s, u"mine"_s},  {u"width"_s, 400},          {u"height"_s, 600},
            {u"dpi"_s, 200},         {u"colour"_s, 0},           {u"platform"_s, 0},
            {u"touch"_s, false},     {u"upside_down"_s, false},  {u"status_height"_s, 30},
            {u"frontlight"_s, true}, {u"colour_light"_s, false}, {u"levels"_s, 16}};
}

} // namespace

class tst_Profile : public QObject
{
    Q_OBJECT

private slots:
    void dataFolderIsAbsolute();
    void shipped_data();
    void shipped();
    void defaultIsGrey6();
    void missingMembers_data();
    void missingMembers();
    void backlightMayBeNamed();
    void luminanceMayBeMeasured();
    void refused_data();
    void refused();
    void limitsAreAccepted();
    void missingFile();

private:
    QString write(const QByteArray &content)
    {
        const QString path = m_folder.filePath(u"profile.json"_s);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("The test's file cannot be written.");
        return path;
    }

    QTemporaryDir m_folder;
};

void tst_Profile::dataFolderIsAbsolute()
{
    const QString folder = dataFolder();
    QVERIFY2(folder.startsWith(u'/') && folder.endsWith(u"/share/picture_stand"_s), qPrintable(folder));
    QVERIFY(QDir(profilesFolder()).exists());
}

void tst_Profile::shipped_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("dpi");
    QTest::addColumn<bool>("colour");
    QTest::addColumn<int>("levels");
    QTest::addColumn<bool>("touch");

    QTest::newRow("grey-6") << QSize(758, 1024) << 212 << false << 16 << true;
    QTest::newRow("grey-6-hd") << QSize(1072, 1448) << 300 << false << 16 << true;
    QTest::newRow("grey-8") << QSize(1404, 1872) << 300 << false << 16 << true;
    QTest::newRow("colour-6") << QSize(1072, 1448) << 300 << true << 256 << true;
    QTest::newRow("keys-6") << QSize(758, 1024) << 212 << false << 16 << false;
}

void tst_Profile::shipped()
{
    QFETCH(QSize, size);
    QFETCH(int, dpi);
    QFETCH(bool, colour);
    QFETCH(int, levels);
    QFETCH(bool, touch);

    QString error;
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const auto profile = Profile::named(profilesFolder(), name, &error);
    QVERIFY2(profile, qPrintable(error));
    QCOMPARE(profile->name, name);
    QCOMPARE(profile->panelSize, size);
    QCOMPARE(profile->dpi, dpi);
    QCOMPARE(profile->colourMask != 0, colour);
    QCOMPARE(profile->levels, levels);
    QCOMPARE(profile->touch, touch);
    QCOMPARE(profile->backlight, QString());
    QVERIFY(profile->statusHeight > 0);
}

void tst_Profile::defaultIsGrey6()
{
    const auto grey = Profile::named(profilesFolder(), u"grey-6"_s, nullptr);
    const Profile standard;
    QVERIFY(grey);
    QCOMPARE(grey->name, standard.name);
    QCOMPARE(grey->panelSize, standard.panelSize);
    QCOMPARE(grey->dpi, standard.dpi);
    QCOMPARE(grey->colourMask, standard.colourMask);
    QCOMPARE(grey->platformNumber, standard.platformNumber);
    QCOMPARE(grey->touch, standard.touch);
    QCOMPARE(grey->upsideDown, standard.upsideDown);
    QCOMPARE(grey->statusHeight, standard.statusHeight);
    QCOMPARE(grey->frontlight, standard.frontlight);
    QCOMPARE(grey->colourLight, standard.colourLight);
    QCOMPARE(grey->levels, standard.levels);
}

void tst_Profile::missingMembers_data()
{
    QTest::addColumn<QString>("member");

    for (const QString &member : complete().keys())
        QTest::newRow(qPrintable(member)) << member;
}

void tst_Profile::missingMembers()
{
    QFETCH(QString, member);

    QJsonObject object = complete();
    QVERIFY(Profile::read(write(QJsonDocument(object).toJson()), nullptr));
    object.remove(member);
    QString error;
    QVERIFY(!Profile::read(write(QJsonDocument(object).toJson()), &error));
    QVERIFY2(error.contains(u"\"%1\" is missing"_s.arg(member)) && !error.contains(u'\n'), qPrintable(error));
}

void tst_Profile::backlightMayBeNamed()
{
    QJsonObject object = complete();
    QCOMPARE(Profile::read(write(QJsonDocument(object).toJson()), nullptr)->backlight, QString());
    object.insert(u"backlight"_s, u"tps65185_led-0.1:a"_s);
    QCOMPARE(Profile::read(write(QJsonDocument(object).toJson()), nullptr)->backlight,
             u"tps65185_led-0.1:a"_s);
}

void tst_Profile::luminanceMayBeMeasured()
{
    QJsonObject object = complete();
    QVERIFY(!Profile::read(write(QJsonDocument(object).toJson()), nullptr)->luminances);

    QJsonArray rising;
    for (int level = 0; level < 16; ++level)
        rising.append((level + 1) / 16.0);
    object.insert(u"luminance"_s, rising);
    auto profile = Profile::read(write(QJsonDocument(object).toJson()), nullptr);
    QVERIFY(profile && profile->luminances);
    QCOMPARE(profile->luminances->at(0), 1 / 16.0);
    QCOMPARE(profile->luminances->at(15), 1.0);

    // The least step, which binary fractions do not have.
    QJsonArray close;
    for (int level = 0; level < 16; ++level)
        close.append((100 + level) / 10'000.0);
    object.insert(u"luminance"_s, close);
    QString error;
    QVERIFY2(Profile::read(write(QJsonDocument(object).toJson()), &error), qPrintable(error));

    // By gamma levels may be closer.
    object.insert(u"luminance"_s, QJsonObject{{u"black"_s, 0}, {u"white"_s, 1}, {u"gamma"_s, 5}});
    QVERIFY2(Profile::read(write(QJsonDocument(object).toJson()), &error), qPrintable(error));

    object.insert(u"luminance"_s, QJsonObject{{u"black"_s, 0.01}, {u"white"_s, 0.4}, {u"gamma"_s, 1.3}});
    profile = Profile::read(write(QJsonDocument(object).toJson()), nullptr);
    QVERIFY(profile && profile->luminances);
    QCOMPARE(float(profile->luminances->at(0)), 0.01F);
    QCOMPARE(float(profile->luminances->at(15)), 0.4F);
}

void tst_Profile::refused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("complaint");

    const auto row = [](const char *name, const QByteArray &content, const QString &complaint) {
        // An object stands for a complete profile with these members changed.
        QJsonObject changed = QJsonDocument::fromJson(content).object();
        const bool named = changed.contains(u"name"_s);
        const QJsonObject others = complete();
        for (auto member = others.begin(); named && member != others.end(); ++member) {
            if (!changed.contains(member.key()))
                changed.insert(member.key(), member.value());
        }
        QTest::newRow(name) << (named ? QJsonDocument(changed).toJson() : content) << complaint;
    };
    row("empty file", "", u"is no JSON object"_s);
    row("no JSON", "width=3", u"is no JSON object"_s);
    row("an array", "[1]", u"is no JSON object (another value)"_s);
    row("binary bytes", QByteArray("\x00\xff\x7f", 3), u"is no JSON object"_s);
    row("no name", R"({"width":100})", u"\"name\" is missing"_s);
    row("empty name", R"({"name":""})", u"\"name\" must be a text that is not empty"_s);
    row("a number as name", R"({"name":3})", u"\"name\" must be a text that is not empty"_s);
    row("width of 0", R"({"name":"a","width":0})", u"\"width\" must be a whole number from 1 to 10000"_s);
    row("width of 10001", R"({"name":"a","width":10001})",
        u"\"width\" must be a whole number from 1 to 10000"_s);
    row("width of a half", R"({"name":"a","width":99.5})",
        u"\"width\" must be a whole number from 1 to 10000"_s);
    row("width as text", R"({"name":"a","width":"100"})",
        u"\"width\" must be a whole number from 1 to 10000"_s);
    row("width as null", R"({"name":"a","width":null})",
        u"\"width\" must be a whole number from 1 to 10000"_s);
    row("huge height", R"({"name":"a","height":1e300})",
        u"\"height\" must be a whole number from 1 to 10000"_s);
    row("dpi of 49", R"({"name":"a","dpi":49})", u"\"dpi\" must be a whole number from 50 to 1000"_s);
    row("dpi of 1001", R"({"name":"a","dpi":1001})", u"\"dpi\" must be a whole number from 50 to 1000"_s);
    row("negative colour", R"({"name":"a","colour":-1})",
        u"\"colour\" must be a whole number from 0 to 65535"_s);
    row("negative platform", R"({"name":"a","platform":-1})",
        u"\"platform\" must be a whole number from 0 to 65535"_s);
    row("17 levels", R"({"name":"a","levels":17})", u"\"levels\" must be 16 or 256"_s);
    row("a switch as number", R"({"name":"a","touch":1})", u"\"touch\" must be true or false"_s);
    row("a switch as text", R"({"name":"a","upside_down":"no"})", u"\"upside_down\" must be true or false"_s);
    row("frontlight as number", R"({"name":"a","frontlight":0})", u"\"frontlight\" must be true or false"_s);
    row("colour light as null", R"({"name":"a","colour_light":null})",
        u"\"colour_light\" must be true or false"_s);
    row("status panel as wide as the screen", R"({"name":"a","width":40,"status_height":40})",
        u"\"status_height\" must be less than width and height"_s);
    row("backlight as number", R"({"name":"a","backlight":1})", u"\"backlight\" must be a text"_s);
    row("backlight in another folder", R"({"name":"a","backlight":"../leds/a"})",
        u"\"backlight\" must be the name of a folder"_s);
    row("backlight is the folder above", R"({"name":"a","backlight":".."})",
        u"\"backlight\" must be the name of a folder"_s);
    const auto luminance = [&row](const char *name, const QByteArray &value, const QString &complaint) {
        row(name, R"({"name":"a","luminance":)" + value + '}',
            u" is not usable: \"luminance\": "_s + complaint + u'.');
    };
    luminance("luminance as number", "1",
              u"16 numbers in brackets or \"black\", \"white\" and \"gamma\" in braces are needed"_s);
    luminance("15 luminances", "[0,1,2,3,4,5,6,7,8,9,10,11,12,13,14]", u"15 values, 16 needed"_s);
    luminance("luminances above 1", "[0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15]",
              u"value 2 must be a number from 0 to 1"_s);
    luminance("a luminance below 0",
              "[-1,0.1,0.2,0.21,0.22,0.23,0.24,0.25,0.26,0.27,0.28,0.29,0.3,0.4,0.5,0.6]",
              u"value 0 must be a number from 0 to 1"_s);
    luminance("two luminances alike",
              "[0,0.1,0.2,0.2,0.22,0.23,0.24,0.25,0.26,0.27,0.28,0.29,0.3,0.4,0.5,0.6]",
              u"value 3 (0.2) is not above value 2 (0.2)"_s);
    luminance("luminances that fall",
              "[0,0.01,0.02,0.03,0.04,0.058,0.0415,0.25,0.26,0.27,0.28,0.29,0.3,0.4,0.5,0.6]",
              u"value 6 (0.0415) is not above value 5 (0.058)"_s);
    luminance("luminances that hardly rise",
              "[0,0.1,0.2,0.21,0.22,0.23,0.24,0.25,0.26,0.27,0.28,0.29,0.3,0.4,0.5,0.50009]",
              u"value 15 (0.50009) is less than 0.0001 above value 14 (0.5)"_s);
    luminance("a luminance as text",
              R"([0,0.1,0.2,"x",0.22,0.23,0.24,0.25,0.26,0.27,0.28,0.29,0.3,0.4,0.5,0.6])",
              u"value 3 must be a number from 0 to 1"_s);
    luminance("no gamma", R"({"black":0.1,"white":0.5})", u"\"gamma\" is missing"_s);
    luminance("gama", R"({"black":0.1,"white":0.5,"gama":1})", u"\"gama\" is not known"_s);
    luminance("gamma of 0", R"({"black":0.1,"white":0.5,"gamma":0})",
              u"\"gamma\" must be a number from 0.2 to 5"_s);
    luminance("gamma of 6", R"({"black":0.1,"white":0.5,"gamma":6})",
              u"\"gamma\" must be a number from 0.2 to 5"_s);
    luminance("white as dark as black", R"({"black":0.5,"white":0.5,"gamma":1})",
              u"\"white\" (0.5) is not above \"black\" (0.5)"_s);
    luminance("white darker than black", R"({"black":0.65,"white":0.009,"gamma":1})",
              u"\"white\" (0.009) is not above \"black\" (0.65)"_s);
    luminance("white hardly lighter than black", R"({"black":0.5,"white":0.501,"gamma":1})",
              u"\"white\" (0.501) is less than 0.0015 above \"black\" (0.5)"_s);
    luminance("white above 1", R"({"black":0.5,"white":1.5,"gamma":1})",
              u"\"white\" must be a number from 0 to 1"_s);
    luminance("black below 0", R"({"black":-0.5,"white":0.5,"gamma":1})",
              u"\"black\" must be a number from 0 to 1"_s);
    luminance("black is missing", R"({"white":0.5,"gamma":1})", u"\"black\" is missing"_s);
    row("luminance of a colour panel",
        R"({"name":"a","colour":1,"luminance":{"black":0.1,"white":0.5,"gamma":1}})",
        u"\"luminance\" is for grey panels of 16 levels"_s);
    row("luminance of 256 levels",
        R"({"name":"a","levels":256,"luminance":{"black":0.1,"white":0.5,"gamma":1}})",
        u"\"luminance\" is for grey panels of 16 levels"_s);
    row("a comma is missing", "{\n\"name\": \"a\"\n\"width\": 3}", u"is no JSON object (line 3: "_s);
    row("a decimal comma", "{\n  \"luminance\": {\n    \"black\": 0,009,\n    \"white\": 0.65\n  }\n}",
        u"is no JSON object (line 3: "_s);
    row("it ends too soon", "{\n\"name\": \"a\",\n", u"is no JSON object (line 3: "_s);
    row("a member that is spelt wrong, so that another is missing", R"({"name":"a","widht":3,"width":null})",
        u"\"widht\" is not known"_s);
    row("unknown member", R"({"name":"a","weight":3})", u"\"weight\" is not known"_s);
    row("a member whose name steers a terminal", R"({"name":"a","\n\r\t\u001b\u0085\u2028":3})",
        uR"("\n\r\t\x1b\x85\u2028" is not known)"_s);
}

void tst_Profile::refused()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, complaint);

    const QString path = write(content);
    QString error;
    QVERIFY(!Profile::read(path, &error));
    QVERIFY2(error.startsWith(u"The profile "_s + path), qPrintable(error));
    QVERIFY2(error.contains(complaint) && error.endsWith(u'.') && !error.contains(u'\n'), qPrintable(error));
    QVERIFY(!Profile::read(path, nullptr));
}

void tst_Profile::limitsAreAccepted()
{
    const auto read = [this](const QList<std::pair<QString, int>> &changed) {
        QJsonObject object = complete();
        for (const auto &[name, value] : changed)
            object.insert(name, value);
        return Profile::read(write(QJsonDocument(object).toJson()), nullptr);
    };
    const auto largest = read({{u"width"_s, 10'000},
                               {u"height"_s, 10'000},
                               {u"dpi"_s, 1000},
                               {u"status_height"_s, 9999},
                               {u"levels"_s, 256}});
    QVERIFY(largest);
    QCOMPARE(largest->panelSize, QSize(10'000, 10'000));
    const auto smallest = read({{u"width"_s, 1}, {u"height"_s, 1}, {u"dpi"_s, 50}, {u"status_height"_s, 0}});
    QVERIFY(smallest);
    QCOMPARE(smallest->panelSize, QSize(1, 1));
}

void tst_Profile::missingFile()
{
    QString error;
    QVERIFY(!Profile::read(u"/nowhere/profile.json"_s, &error));
    QCOMPARE(error, u"The profile /nowhere/profile.json cannot be read."_s);
    QVERIFY(!Profile::read(m_folder.path(), &error)); // a folder
}

QTEST_GUILESS_MAIN(tst_Profile)
#include "tst_profile.moc"
