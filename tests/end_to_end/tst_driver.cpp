// A program that drives a real panel: refreshes as they are announced, and the pixels of each.

#include "launcher_run.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_Driver : public QObject
{
    Q_OBJECT

private slots:
    void drawsWhatIsAnnounced_data() { profiles(); }
    void drawsWhatIsAnnounced();
    void scriptOfTheManual_data() { profiles(); }
    void scriptOfTheManual();

private:
    static void profiles();
    /// What slatectl writes; null where it failed.
    QByteArray ask(const QStringList &words) const;
    QImage frame(const QList<int> &area = {}) const;
    /// Fetches what the lines of "follow" announce; false where that cannot be had.
    bool draw(QProcess &follow, QImage *panel) const;

    QString m_root;
    QProcessEnvironment m_environment;
};

QByteArray tst_Driver::ask(const QStringList &words) const
{
    QProcess program;
    program.setProcessEnvironment(m_environment);
    program.start(LauncherPlace::builtCommand(u"slatectl"_s), QStringList{u"--root"_s, m_root} + words);
    const bool done = program.waitForFinished(60'000) && program.exitStatus() == QProcess::NormalExit
        && program.exitCode() == 0;
    return done ? program.readAllStandardOutput() : QByteArray();
}

QImage tst_Driver::frame(const QList<int> &area) const
{
    QStringList words{u"frame"_s};
    for (const int value : area)
        words.append(QString::number(value));
    return QImage::fromData(ask(words)).convertToFormat(QImage::Format_RGB32);
}

bool tst_Driver::draw(QProcess &follow, QImage *panel) const
{
    while (follow.canReadLine()) {
        const QJsonObject event = QJsonDocument::fromJson(follow.readLine()).object();
        if (event.value("event"_L1) != u"refresh"_s)
            continue;
        const int x = event.value("x"_L1).toInt(-1);
        const int y = event.value("y"_L1).toInt(-1);
        const QImage part = frame({x, y, event.value("width"_L1).toInt(), event.value("height"_L1).toInt()});
        if (part.isNull())
            return false;
        if (panel->isNull())
            *panel = part; // the first one is all of the panel
        QPainter(panel).drawImage(x, y, part);
    }
    return true;
}

void tst_Driver::profiles()
{
    QTest::addColumn<QString>("profile");
    QTest::addColumn<QSize>("size");

    QTest::newRow("grey") << u"grey-6"_s << QSize(758, 1024);
    QTest::newRow("colour") << u"colour-6"_s << QSize(1072, 1448);
}

void tst_Driver::drawsWhatIsAnnounced()
{
    QFETCH(QString, profile);
    QFETCH(QSize, size);

    const QTemporaryDir folder;
    LauncherPlace place(folder.path());
    m_root = place.path(u"device"_s);
    m_environment = place.environment();
    QProcess device;
    place.start(device, {u"--root"_s, m_root, u"--headless"_s, u"--profile"_s, profile});
    QTRY_VERIFY_WITH_TIMEOUT(!ask({u"idle"_s}).isEmpty(), 60'000);

    QProcess follow;
    follow.setProcessEnvironment(m_environment);
    follow.start(LauncherPlace::builtCommand(u"slatectl"_s), {u"--root"_s, m_root, u"follow"_s});
    QImage panel;
    QTRY_VERIFY_WITH_TIMEOUT(draw(follow, &panel) && !panel.isNull(), 30'000);
    QCOMPARE(panel.size(), size);

    // Small and large parts, upright, turned and inverted, and a picture. More than one line may be waiting.
    for (const QStringList &words : {QStringList{u"tap"_s, u"300"_s, u"230"_s},
                                     {u"event"_s, u"32"_s, u"1"_s, u"0"_s},
                                     {u"invert"_s, u"on"_s},
                                     {u"light"_s, u"brightness"_s, u"90"_s},
                                     {u"chart"_s},
                                     {u"invert"_s, u"off"_s}}) {
        QVERIFY2(!ask(words).isEmpty(), qPrintable(words.join(u' ')));
        QVERIFY(!ask({u"idle"_s}).isEmpty());
        const QImage expected = frame();
        QTRY_VERIFY_WITH_TIMEOUT(draw(follow, &panel) && panel == expected, 30'000);
    }

    QVERIFY(!ask({u"quit"_s}).isEmpty() || device.state() == QProcess::NotRunning);
    QCOMPARE(LauncherPlace::end(device).status, 0);
    QVERIFY(follow.waitForFinished());
    QCOMPARE(follow.exitCode(), 0);
}

void tst_Driver::scriptOfTheManual()
{
    QFETCH(QString, profile);
    QFETCH(QSize, size);

    if (QStandardPaths::findExecutable(u"python3"_s).isEmpty())
        QSKIP("python3 is not installed");
    const QString manual = QString::fromUtf8(fileContent(QStringLiteral(SOURCE_FOLDER "/docs/device.md")));
    const QString script = manual.section(u"```python\n"_s, 1).section(u"```"_s, 0, 0);
    QVERIFY(script.contains(u"import board"_s));
    QVERIFY2(script.count(u'\n') <= 20, "a script that is looked through at a glance");

    const QTemporaryDir folder;
    LauncherPlace place(folder.path());
    QVERIFY(writeFile(place.path(u"driver.py"_s), script.toUtf8()));
    // Puts the parts together; what is there is always one whole picture.
    QVERIFY(writeFile(place.path(u"board.py"_s), R"(import os
panel, stride, depth = None, 0, 0
def show(x, y, width, height, pixels, mode):
    global panel, stride, depth
    if panel is None:  # the first one is all of the panel
        depth = len(pixels) // (width * height)
        panel, stride = bytearray(len(pixels)), width * depth
    row = width * depth
    for line in range(height):
        at = (y + line) * stride + x * depth
        panel[at:at + row] = pixels[line * row:(line + 1) * row]
    with open("panel.new", "wb") as file:
        file.write(panel)
    os.replace("panel.new", "panel")
)"));

    m_root = place.path(u"data/picture_stand/device"_s); // the default one, which the script asks
    m_environment = place.environment();
    QProcess device;
    place.start(device, {u"--headless"_s, u"--profile"_s, profile});
    QTRY_VERIFY_WITH_TIMEOUT(!ask({u"idle"_s}).isEmpty(), 60'000);

    QProcess driver;
    QProcessEnvironment environment = m_environment;
    const QString commands = QFileInfo(LauncherPlace::builtCommand(u"slatectl"_s)).path();
    environment.insert(u"PATH"_s, commands + u':' + environment.value(u"PATH"_s));
    driver.setProcessEnvironment(environment);
    driver.setWorkingDirectory(folder.path());
    driver.start(u"python3"_s, {u"driver.py"_s});
    const auto pixels = [&] {
        const QByteArray whole = ask({u"frame"_s});
        return whole.sliced(whole.indexOf("\n255\n") + 5);
    };
    for (const QStringList &words : {QStringList{u"idle"_s}, {u"chart"_s}, {u"invert"_s, u"on"_s}}) {
        QVERIFY(!ask(words).isEmpty() && !ask({u"idle"_s}).isEmpty());
        const QByteArray expected = pixels();
        QCOMPARE(expected.size(),
                 qsizetype(size.width()) * size.height() * (profile == u"colour-6"_s ? 3 : 1));
        QTRY_VERIFY_WITH_TIMEOUT(fileContent(place.path(u"panel"_s)) == expected, 30'000);
    }
    QVERIFY(!ask({u"quit"_s}).isEmpty() || device.state() == QProcess::NotRunning);
    QCOMPARE(LauncherPlace::end(device).status, 0);
    QVERIFY(driver.waitForFinished());
    QCOMPARE(driver.readAllStandardError(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_Driver)
#include "tst_driver.moc"
