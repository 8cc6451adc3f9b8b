// Profiles by their names, in the device's folder and in one of a user's own panels.

#include <paths.h>
#include <profile.h>
#include <visible_text.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <memory>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

/// The manual from one of its headings on.
QString manualFrom(const QString &heading)
{
    QFile file(QStringLiteral(SOURCE_FOLDER "/docs/device.md"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).section(heading, 1) : QString();
}

QString firstJson(const QString &text)
{
    return text.section(u"```json\n"_s, 1, 1).section(u"```"_s, 0, 0);
}

/// The one of the manual.
QJsonObject example()
{
    return QJsonDocument::fromJson(firstJson(manualFrom(u"## A profile of your own\n"_s)).toUtf8()).object();
}

} // namespace

class tst_ProfileFiles : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void namesStayInTheFolder_data();
    void namesStayInTheFolder();
    void ownFolder();
    void nameIsThatOfTheFile();
    void manualHasAnExample();
    void manualHasLuminances();
    void manualHasGammas();

private:
    QString write(const QByteArray &content, const QString &name)
    {
        const QString path = m_folder->filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("The test's file cannot be written.");
        return path;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_ProfileFiles::namesStayInTheFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("canBe"); // a file may have this name
    QTest::newRow("unknown") << u"grey-7"_s << true;
    QTest::newRow("with its ending") << u"grey-6.json"_s << true;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("out of the folder") << u"../profiles/grey-6"_s << false;
    QTest::newRow("the folder above") << u".."_s << false;
    QTest::newRow("absolute") << u"/etc/passwd"_s << false;
    QTest::newRow("with a line end") << u"grey-6\n"_s << false;
    QTest::newRow("with a blank") << u"my panel"_s << false;
    QTest::newRow("like an option") << u"-6"_s << false;
}

void tst_ProfileFiles::namesStayInTheFolder()
{
    QFETCH(QString, name);
    QFETCH(bool, canBe);
    QString error;
    QVERIFY(!Profile::named(profilesFolder(), name, &error));
    const QString shown = visibleText(name);
    if (canBe)
        QCOMPARE(error,
                 u"There is no profile \"%1\"; there are: colour-6, grey-6, grey-6-hd, grey-8, keys-6."_s.arg(
                     shown));
    else
        QVERIFY2(error.startsWith(u"\"%1\" is no name of a profile: "_s.arg(shown)) && error.endsWith(u'.'),
                 qPrintable(error));
}

void tst_ProfileFiles::ownFolder()
{
    const QStringList usable{u"7.8_Panel"_s, u"a"_s, u"b.2"_s};
    QJsonObject object = example();
    for (const QString &name : usable) {
        object.insert(u"name"_s, name);
        write(QJsonDocument(object).toJson(), name + u".json"_s);
    }
    for (const QString &other :
         {u"my panel.json"_s, u".json"_s, u".hidden.json"_s, u"a.json~"_s, u"b.JSON"_s})
        write("{}", other);
    QCOMPARE(Profile::names(m_folder->path()), usable);
    QString error;
    for (const QString &name : usable)
        QVERIFY2(Profile::named(m_folder->path(), name, &error), qPrintable(error));
    QCOMPARE(Profile::names(u"/nowhere"_s), QStringList());
}

void tst_ProfileFiles::nameIsThatOfTheFile()
{
    const QString path = write(QJsonDocument(example()).toJson(), u"nm.json"_s);
    QString error;
    QVERIFY(!Profile::named(m_folder->path(), u"nm"_s, &error));
    QCOMPARE(error,
             u"The profile %1 is not usable: it says \"name\": \"my-panel\", its file \"nm\"."_s.arg(path));
}

void tst_ProfileFiles::manualHasAnExample()
{
    write(QJsonDocument(example()).toJson(), u"my-panel.json"_s);
    QString error;
    const auto profile = Profile::named(m_folder->path(), u"my-panel"_s, &error);
    QVERIFY2(profile, qPrintable(error));
    QVERIFY(profile->luminances);
    QCOMPARE(profile->backlight, u"my_light"_s);
    // Every member is in it, and explained below it.
    const QString table = manualFrom(u"| member | is | means |\n"_s).section(u"\n\n"_s, 0, 0);
    QStringList explained;
    for (const QString &row : table.split(u'\n'))
        explained += row.section(u'|', 1, 1).split(QRegularExpression(u"[ ,`]+"_s), Qt::SkipEmptyParts);
    explained.removeAll(u"---"_s);
    explained.sort();
    QCOMPARE(explained, example().keys());
}

void tst_ProfileFiles::manualHasLuminances()
{
    const QString text = firstJson(manualFrom(u"## Levels of a panel\n"_s));
    const QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    QJsonObject object = example();
    QList<std::array<double, 16>> read;
    for (const QString &line : lines) {
        const QJsonValue value = QJsonDocument::fromJson((u'{' + line + u'}').toUtf8())[u"luminance"_s];
        object.insert(u"luminance"_s, value);
        QString error;
        const auto profile = Profile::read(write(QJsonDocument(object).toJson(), u"a.json"_s), &error);
        QVERIFY2(profile, qPrintable(error));
        read.append(*profile->luminances);
    }
    for (std::size_t level = 0; level < 16; ++level) // of one panel, once with four decimals
        QVERIFY2(qAbs(read.at(0)[level] - read.at(1)[level]) < 0.00006, qPrintable(QString::number(level)));
}

void tst_ProfileFiles::manualHasGammas()
{
    // The check gives back half the light of both, as the level at the patch that hides it does.
    const auto lightness = [](double luminance) {
        return luminance > 216.0 / 24389 ? 116 * std::cbrt(luminance) - 16 : luminance * 24389 / 27;
    };
    const QString text = manualFrom(u"## Levels of a panel\n"_s);
    static const QRegularExpression row(u"\\| gamma, with ([0-9.]+) and ([0-9.]+) \\|([^\n]+)\\|\n"_s);
    int rows = 0;
    for (auto each = row.globalMatch(text); each.hasNext(); ++rows) {
        const QRegularExpressionMatch found = each.next();
        const double black = found.captured(1).toDouble();
        const double white = found.captured(2).toDouble();
        const QStringList gammas = found.captured(3).split(u'|');
        QCOMPARE(gammas.size(), 9);
        for (int i = 0; i < 9; ++i) {
            const double share
                = (lightness((black + white) / 2) - lightness(black)) / (lightness(white) - lightness(black));
            const double gamma = std::log(share) / std::log((9 + i / 2.0) / 15);
            QVERIFY2(qAbs(gammas.at(i).trimmed().toDouble() - gamma) < 0.0051,
                     qPrintable(u"%1 %2"_s.arg(i).arg(gamma)));
        }
    }
    QCOMPARE(rows, 2);
}

QTEST_GUILESS_MAIN(tst_ProfileFiles)
#include "tst_profile_files.moc"
