// slate-window as a program: its command line, and how it begins and ends.

#include "control_server.h"
#include "panel_file.h"

#include <QImage>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

class tst_SlateWindowProgram : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void help_data();
    void help();
    void usage_data();
    void usage();
    void noDisplay();
    void displayThatCannotBeReached();
    void fullScreen();
    void staysWhenTheDeviceHasGone();

private:
    void start(QProcess *window, const QStringList &arguments);

    std::unique_ptr<QTemporaryDir> m_folder;
    QProcessEnvironment m_environment; ///< without any display
};

void tst_SlateWindowProgram::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
        m_environment.remove(name);
    m_environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder->path());
}

void tst_SlateWindowProgram::start(QProcess *window, const QStringList &arguments)
{
    window->setProcessEnvironment(m_environment);
    window->start(QCoreApplication::applicationDirPath() + u"/../../bin/slate-window"_s, arguments);
}

void tst_SlateWindowProgram::help_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("long") << QStringList{u"--help"_s};
    QTest::newRow("short") << QStringList{u"-h"_s};
    QTest::newRow("with a root") << QStringList{u"--root"_s, u"/none"_s, u"--help"_s};
}

void tst_SlateWindowProgram::help()
{
    QFETCH(QStringList, arguments);

    QProcess window;
    start(&window, arguments);
    QVERIFY(window.waitForFinished());
    QCOMPARE(window.exitStatus(), QProcess::NormalExit);
    QCOMPARE(window.exitCode(), 0);
    QCOMPARE(window.readAllStandardError(), QByteArray());
    const QByteArray text = window.readAllStandardOutput();
    for (const char *word :
         {"--root DIR", "--run DIR", "--full-screen", "--help", "Ctrl+D", "Ctrl+R", "Ctrl+Q"})
        QVERIFY2(text.contains(word), word);
}

void tst_SlateWindowProgram::usage_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("nothing") << QStringList();
    QTest::newRow("run without folder") << QStringList{u"--run"_s};
    QTest::newRow("run with an empty folder") << QStringList{u"--run"_s, QString()};
    QTest::newRow("unknown option") << QStringList{u"--walk"_s};
    QTest::newRow("a word") << QStringList{u"--run"_s, u"/tmp"_s, u"word"_s};
    QTest::newRow("both ways") << QStringList{u"--run"_s, u"/tmp"_s, u"--root"_s, u"/tmp"_s};
    QTest::newRow("two roots") << QStringList{u"--root"_s, u"/tmp"_s, u"--root"_s, u"/tmp"_s};
    QTest::newRow("root that is missing") << QStringList{u"--root"_s, u"/none/at/all"_s};
}

void tst_SlateWindowProgram::usage()
{
    QFETCH(QStringList, arguments);

    QProcess window;
    start(&window, arguments);
    QVERIFY(window.waitForFinished());
    QCOMPARE(window.exitStatus(), QProcess::NormalExit);
    QCOMPARE(window.exitCode(), 2);
    const QByteArray errors = window.readAllStandardError();
    QVERIFY2(errors.startsWith("slate-window: "), errors.constData());
    QCOMPARE(errors.count('\n'), 1);
}

void tst_SlateWindowProgram::noDisplay()
{
    QProcess window;
    start(&window, {u"--run"_s, m_folder->path()});
    QVERIFY(window.waitForFinished());
    QCOMPARE(window.exitStatus(), QProcess::NormalExit);
    QCOMPARE(window.exitCode(), 2);
    QCOMPARE(window.readAllStandardError(),
             QByteArray("slate-window: There is no display: neither DISPLAY nor WAYLAND_DISPLAY is set.\n"));
}

void tst_SlateWindowProgram::displayThatCannotBeReached()
{
    m_environment.insert(u"DISPLAY"_s, u":nowhere"_s);
    QProcess window;
    start(&window, {u"--run"_s, m_folder->path()});
    QVERIFY(window.waitForFinished());
    QCOMPARE(window.exitStatus(), QProcess::NormalExit);
    QCOMPARE(window.exitCode(), 2);
    QCOMPARE(window.readAllStandardError(),
             QByteArray("slate-window: The display cannot be used (:nowhere).\n"));
}

void tst_SlateWindowProgram::fullScreen()
{
    // This platform, of 240 by 320, writes what it shows into the current folder.
    m_environment.insert(u"QT_QPA_PLATFORM"_s, u"minimal"_s);
    m_environment.insert(u"QT_DEBUG_BACKINGSTORE"_s, u"1"_s);
    const auto panel = PanelWriter::create({.size = {60, 80}}, m_folder->filePath(u"panel"_s), nullptr);
    QVERIFY(panel);
    ControlServer server;
    QVERIFY(server.listen(m_folder->filePath(u"control"_s), nullptr));
    QProcess window;
    window.setWorkingDirectory(m_folder->path());
    start(&window, {u"--full-screen"_s, u"--run"_s, m_folder->path()});

    QImage expected(240, 320, QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::black);
    for (int y = 120; y < 200; ++y) {
        for (int x = 90; x < 150; ++x)
            expected.setPixel(x, y, 0xffffffffu);
    }
    QTRY_COMPARE_WITH_TIMEOUT(
        QImage(m_folder->filePath(u"output0000.png"_s)).convertToFormat(QImage::Format_ARGB32_Premultiplied),
        expected, 30'000);
    window.terminate();
    QVERIFY(window.waitForFinished());
}

void tst_SlateWindowProgram::staysWhenTheDeviceHasGone()
{
    m_environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    const auto panel = PanelWriter::create({.size = {60, 80}}, m_folder->filePath(u"panel"_s), nullptr);
    QVERIFY(panel);
    QProcess window;
    for (int i = 0; i < 2; ++i) { // the next device is found as well
        ControlServer server;
        QStringList asked;
        for (const QString &command : {u"state"_s, u"light"_s}) {
            server.add(command, {}, [&asked, command](const QJsonObject &, const Reply &reply) {
                asked.append(command);
                reply();
            });
        }
        QVERIFY(server.listen(m_folder->filePath(u"control"_s), nullptr));
        if (i == 0)
            start(&window, {u"--run"_s, m_folder->path()});
        QTRY_COMPARE_WITH_TIMEOUT(server.clients(), 2, 30'000);
        QTRY_COMPARE(asked, (QStringList{u"state"_s, u"light"_s}));
    }
    // Nobody answers now, time and again, each try a second after the one before: long after the window has
    // found that the device is lost, it is there and looks for the next.
    QLocalServer nobody;
    QVERIFY(nobody.listen(m_folder->filePath(u"control"_s)));
    for (int tries = 0; tries < 3; ++tries) {
        QTRY_VERIFY_WITH_TIMEOUT(nobody.hasPendingConnections(), 10'000);
        while (QLocalSocket *socket = nobody.nextPendingConnection())
            delete socket;
    }
    QCOMPARE(window.state(), QProcess::Running);
    window.terminate();
    QVERIFY(window.waitForFinished());
    QCOMPARE(window.readAllStandardError(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_SlateWindowProgram)
#include "tst_slate_window_program.moc"
