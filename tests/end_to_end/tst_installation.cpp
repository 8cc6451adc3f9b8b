// What is installed starts from where it is installed, and takes nothing from the build.

#include "launcher_run.h"

#include "control_client.h"
#include "run_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using lindenreed::remote::ControlClient;

class tst_Installation : public QObject
{
    Q_OBJECT

private slots:
    void startsWhereItIsInstalled();
    void headersForDevelopment();
    void applicationOfOnesOwn();
};

namespace {

/// Memory map of the one running process of a program; null where none runs.
QByteArray memoryMapOf(const QString &program)
{
    for (const QString &process : QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs)) {
        if (QFile::symLinkTarget(u"/proc/"_s + process + u"/exe"_s) == program)
            return fileContent(u"/proc/"_s + process + u"/maps"_s);
    }
    return {};
}

} // namespace

void tst_Installation::startsWhereItIsInstalled()
{
    QTemporaryDir folder;
    QVERIFY(folder.isValid());
    LauncherPlace place(folder.path());
    const QString prefix = place.path(u"usr"_s);

    QProcess installation;
    installation.start(QStringLiteral(CMAKE_PROGRAM),
                       {u"--install"_s, QStringLiteral(BUILD_FOLDER), u"--prefix"_s, prefix});
    const LauncherEnd installed = LauncherPlace::end(installation);
    QVERIFY2(installed.status == 0, installed.errors.constData());

    const QString root = place.path(u"device"_s);
    QVERIFY(QDir().mkdir(root));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(place.runtimeFolder()));
    QString error;
    const auto runFolder = lindenreed::remote::runFolderOf(root, &error);
    QVERIFY2(runFolder, qUtf8Printable(error));

    QProcess launcher;
    launcher.setProcessEnvironment(place.environment());
    launcher.start(prefix + u"/bin/slate-run"_s,
                   {u"--root"_s, root, u"--temporary"_s, u"--samples"_s, u"--headless"_s});
    QTRY_VERIFY_WITH_TIMEOUT(
        QFileInfo::exists(*runFolder + u"/control"_s) || launcher.state() == QProcess::NotRunning, 30'000);
    QVERIFY2(launcher.state() == QProcess::Running, launcher.readAllStandardError().constData());

    QStringList samples;
    for (int number = 1; number <= 10; ++number)
        samples.append(u"%1.jpg"_s.arg(number, 2, 10, QChar(u'0')));
    QCOMPARE(QDir(root + u"/mnt/ext1/Photo"_s).entryList(QDir::Files, QDir::Name), samples);

    // From a shell, as a user would ask.
    QProcess control;
    control.setProcessEnvironment(place.environment());
    control.start(prefix + u"/bin/slatectl"_s, {u"--root"_s, root, u"state"_s});
    const LauncherEnd state = LauncherPlace::end(control);
    QVERIFY2(state.status == 0, state.errors.constData());
    QVERIFY2(state.output.contains("\"profile\":\"grey-6\""), state.output.constData());

    const QByteArray map = memoryMapOf(prefix + u"/lib/picture_stand/picture_stand"_s);
    QVERIFY(map.contains(QFile::encodeName(prefix) + "/lib/picture_stand/platforms/liblindenreed2.so"));
    QVERIFY(map.contains(QFile::encodeName(prefix) + "/lib/picture_stand/com/lindenreed/controls/"));
    QVERIFY2(!map.contains(BUILD_FOLDER "/"), "a library of the build is in use");

    auto client = ControlClient::connectTo(*runFolder, &error);
    QVERIFY2(client, qUtf8Printable(error));
    QVERIFY(client->ask(u"idle"_s).value("ok"_L1).toBool());
    QVERIFY(!client->screenshot(&error).isNull());
    // The first screen has pictures.
    QTRY_VERIFY(memoryMapOf(prefix + u"/lib/picture_stand/picture_stand"_s)
                    .contains(QFile::encodeName(prefix) + "/lib/picture_stand/device/imageformats/"));
    client->ask(u"quit"_s);
    const LauncherEnd end = LauncherPlace::end(launcher);
    QVERIFY2(end.status == 0, end.errors.constData());
    QCOMPARE(place.leftovers(), QStringList());
}

void tst_Installation::headersForDevelopment()
{
    QTemporaryDir folder;
    QVERIFY(folder.isValid());
    LauncherPlace place(folder.path());
    const QString prefix = place.path(u"usr"_s);
    QProcess installation;
    installation.start(QStringLiteral(CMAKE_PROGRAM),
                       {u"--install"_s, QStringLiteral(BUILD_FOLDER), u"--prefix"_s, prefix, u"--component"_s,
                        u"development"_s});
    const LauncherEnd installed = LauncherPlace::end(installation);
    QVERIFY2(installed.status == 0, installed.errors.constData());
    QCOMPARE(QDir(prefix).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
             (QStringList{u"include"_s, u"lib"_s}));

    const QString headers = prefix + u"/include/picture_stand"_s;
    QCOMPARE(QDir(headers).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name),
             (QStringList{u"boardconf.h"_s, u"shared_tools"_s, u"slateview.h"_s})); // none of the tests' own

    // Each by itself, and the two of them that are C as C.
    const QStringList all{u"boardconf.h"_s,
                          u"slateview.h"_s,
                          u"shared_tools/cfg_wrapper.h"_s,
                          u"shared_tools/eink_interface.h"_s,
                          u"shared_tools/filesystem.h"_s,
                          u"shared_tools/human_string_utility.h"_s};
    for (const QString &header : all) {
        for (const QString &language : {u"c++"_s, u"c"_s}) {
            if (language == u"c"_s && header.startsWith(u"shared_tools/"_s))
                continue;
            QProcess compiler;
            compiler.start(QStringLiteral(COMPILER),
                           {u"-fsyntax-only"_s, u"-x"_s, language,
                            u"-std="_s + (language == u"c"_s ? u"c11"_s : u"c++20"_s),
                            headers + u'/' + header, u"-I"_s + headers});
            const LauncherEnd compiled = LauncherPlace::end(compiler);
            QVERIFY2(compiled.status == 0, compiled.errors.constData());
        }
    }
}

void tst_Installation::applicationOfOnesOwn()
{
    QTemporaryDir folder;
    QVERIFY(folder.isValid());
    LauncherPlace place(folder.path());
    const QString prefix = place.path(u"usr"_s);
    const QString build = place.path(u"build"_s);
    const QStringList steps[]
        = {{u"--install"_s, QStringLiteral(BUILD_FOLDER), u"--prefix"_s, prefix},
           {u"-GNinja"_s, u"-S"_s, QStringLiteral(SOURCE_FOLDER "/docs/example"), u"-B"_s, build,
            u"-DCMAKE_PREFIX_PATH="_s + prefix, QStringLiteral("-DCMAKE_CXX_COMPILER=" COMPILER),
            QStringLiteral("-DCMAKE_CXX_FLAGS=" COMPILER_FLAGS)},
           {u"--build"_s, build}};
    for (const QStringList &step : steps) {
        QProcess cmake;
        cmake.start(QStringLiteral(CMAKE_PROGRAM), step);
        const LauncherEnd end = LauncherPlace::end(cmake);
        QVERIFY2(end.status == 0, (end.output + end.errors).constData());
    }

    const QString root = place.path(u"device"_s);
    QVERIFY(QDir().mkdir(root));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(place.runtimeFolder()));
    QString error;
    const auto runFolder = lindenreed::remote::runFolderOf(root, &error);
    QVERIFY2(runFolder, qUtf8Printable(error));
    QProcess launcher;
    launcher.setProcessEnvironment(place.environment());
    launcher.start(
        prefix + u"/bin/picture-stand"_s,
        {u"--root"_s, root, u"--temporary"_s, u"--headless"_s, u"--"_s, build + u"/hello_panel"_s});
    QTRY_VERIFY_WITH_TIMEOUT(
        QFileInfo::exists(*runFolder + u"/control"_s) || launcher.state() == QProcess::NotRunning, 30'000);
    QVERIFY2(launcher.state() == QProcess::Running, launcher.readAllStandardError().constData());
    auto client = ControlClient::connectTo(*runFolder, &error);
    QVERIFY2(client, qUtf8Printable(error));
    QVERIFY(client->ask(u"idle"_s).value("ok"_L1).toBool());
    const QImage panel = client->screenshot(&error);
    QCOMPARE(qGray(panel.pixel(379, 46)), 0); // below the status bar
    QCOMPARE(qGray(panel.pixel(379, 1023)), 255);
    client->ask(u"quit"_s);
    QCOMPARE(LauncherPlace::end(launcher).status, 0);
}

QTEST_GUILESS_MAIN(tst_Installation)
#include "tst_installation.moc"
