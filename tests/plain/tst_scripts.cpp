// What run.sh and test.sh say of their options, before they install or build anything.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Answer
{
    int status = -1;
    QString output;
    QString error;
};

Answer run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

/// Options that stand at the beginning of a line, sorted.
QStringList optionsIn(const QString &help)
{
    QStringList found;
    static const QRegularExpression expression(u"^  (--[a-z]+) "_s, QRegularExpression::MultilineOption);
    for (auto match = expression.globalMatch(help); match.hasNext();)
        found.append(match.next().captured(1));
    found.sort();
    return found;
}

} // namespace

class tst_Scripts : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void help_data();
    void help();
    void mistakes_data();
    void mistakes();
    void rightOptions_data();
    void rightOptions();
    void optionsOfTheLauncher();
    void namesOfProfilesAndLanguages();
    void withoutDisplay_data();
    void withoutDisplay();
    void whatIsStarted_data();
    void whatIsStarted();

private:
    void writeScript(const QString &name, const QByteArray &content) const;

    QString script(const QString &name) const { return m_folder->filePath(name); }
    static QString bin() { return QCoreApplication::applicationDirPath() + u"/../../bin"_s; }
    static QString launcher() { return bin() + u"/slate-run"_s; }

    // Nothing of the project is beside the scripts but a first step that fails: who comes so far would
    // install.
    std::unique_ptr<QTemporaryDir> m_folder;
    static constexpr int firstStep = 42;
};

void tst_Scripts::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    for (const QString &name : {u"run.sh"_s, u"test.sh"_s})
        QVERIFY(QFile::copy(QStringLiteral(SOURCE_FOLDER "/") + name, script(name)));
    QVERIFY(QDir(m_folder->path()).mkdir(u"tools"_s));
    writeScript(u"tools/install-dependencies"_s, "exit " + QByteArray::number(firstStep));
}

void tst_Scripts::writeScript(const QString &name, const QByteArray &content) const
{
    QVERIFY(QDir().mkpath(QFileInfo(script(name)).path()));
    QFile file(script(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n" + content + '\n');
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void tst_Scripts::help_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("run") << u"run.sh"_s << QStringList{u"--help"_s};
    QTest::newRow("run, short") << u"run.sh"_s << QStringList{u"-h"_s};
    QTest::newRow("run, after other options")
        << u"run.sh"_s << QStringList{u"--photos"_s, u"/nowhere"_s, u"--help"_s};
    QTest::newRow("test") << u"test.sh"_s << QStringList{u"--help"_s};
    QTest::newRow("test, short") << u"test.sh"_s << QStringList{u"-h"_s};
    QTest::newRow("test, after other options") << u"test.sh"_s << QStringList{u"--quick"_s, u"--help"_s};
}

void tst_Scripts::help()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);

    const Answer answer = run(script(name), arguments);
    QCOMPARE(answer.error, QString());
    QCOMPARE(answer.status, 0);
    QVERIFY2(answer.output.startsWith(u"usage: ./"_s + name + u' '), qPrintable(answer.output));
    QVERIFY(optionsIn(answer.output).contains(u"--help"_s));
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             (QStringList{u"run.sh"_s, u"test.sh"_s, u"tools"_s}));
}

void tst_Scripts::mistakes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");

    QTest::newRow("run, unknown option")
        << u"run.sh"_s << QStringList{u"--fotos"_s, u"lake"_s}
        << u"run.sh: \"--fotos\" is no option; \"./run.sh --help\" lists them\n"_s;
    QTest::newRow("run, no option") << u"run.sh"_s << QStringList{u"lake"_s}
                                    << u"run.sh: \"lake\" is no option; \"./run.sh --help\" lists them\n"_s;
    QTest::newRow("run, empty") << u"run.sh"_s << QStringList{QString()}
                                << u"run.sh: \"\" is no option; \"./run.sh --help\" lists them\n"_s;
    QTest::newRow("run, no value") << u"run.sh"_s << QStringList{u"--temporary"_s, u"--photos"_s}
                                   << u"run.sh: --photos needs a value; \"./run.sh --help\" tells more\n"_s;
    QTest::newRow("run, no value before the program")
        << u"run.sh"_s << QStringList{u"--root"_s, u"--"_s, u"/bin/true"_s}
        << u"run.sh: --root needs a value; \"./run.sh --help\" tells more\n"_s;
    QTest::newRow("test, unknown option")
        << u"test.sh"_s << QStringList{u"--quick"_s, u"--log"_s}
        << u"test.sh: \"--log\" is no option; \"./test.sh --help\" lists them\n"_s;
    const QString on = u"test.sh: \"--on\" goes with armhf or debian13, and with nothing else\n"_s;
    QTest::newRow("test, on nothing") << u"test.sh"_s << QStringList{u"--on"_s} << on;
    QTest::newRow("test, on an unknown system") << u"test.sh"_s << QStringList{u"--on"_s, u"mars"_s} << on;
    QTest::newRow("test, on a system and more")
        << u"test.sh"_s << QStringList{u"--on"_s, u"armhf"_s, u"--quick"_s} << on;
}

void tst_Scripts::mistakes()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);

    const Answer answer = run(script(name), arguments);
    QCOMPARE(answer.error, complaint);
    QCOMPARE(answer.output, QString());
    QCOMPARE(answer.status, 2);
}

void tst_Scripts::rightOptions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("run, none") << u"run.sh"_s << QStringList{};
    QTest::newRow("run, values")
        << u"run.sh"_s
        << u"--photos . --profile=keys-6 --language de --root r --orientation=1 --meminfo m"_s.split(u' ');
    QTest::newRow("run, switches") << u"run.sh"_s
                                   << u"--temporary --samples --headless --direct --version"_s.split(u' ');
    QTest::newRow("run, value like an option") << u"run.sh"_s << QStringList{u"--root"_s, u"--help"_s};
    QTest::newRow("run, options of a program") << u"run.sh"_s << u"-- /bin/true --help --more"_s.split(u' ');
    QTest::newRow("test, none") << u"test.sh"_s << QStringList{};
    QTest::newRow("test, both") << u"test.sh"_s << QStringList{u"--quick"_s, u"--long"_s};
}

void tst_Scripts::rightOptions()
{
    QFETCH(QString, name);
    QFETCH(QStringList, arguments);

    const Answer answer = run(script(name), arguments);
    QCOMPARE(answer.error, QString());
    QCOMPARE(answer.status, firstStep);
}

void tst_Scripts::optionsOfTheLauncher()
{
    const QStringList options = optionsIn(run(launcher(), {u"--help"_s}).output);
    QVERIFY(options.contains(u"--photos"_s));
    QCOMPARE(optionsIn(run(script(u"run.sh"_s), {u"--help"_s}).output), options);
}

void tst_Scripts::namesOfProfilesAndLanguages()
{
    const QString help = run(script(u"run.sh"_s), {u"--help"_s}).output;
    for (const auto &[folder, option] :
         {std::pair{u"profiles"_s, u"--profile"_s}, std::pair{u"languages"_s, u"--language"_s}}) {
        const QRegularExpression line(option + u" .*kept between starts: (.*)$"_s,
                                      QRegularExpression::MultilineOption);
        QStringList told = line.match(help).captured(1).split(u", "_s);
        told.sort();
        QStringList there;
        for (const QFileInfo &file :
             QDir(QStringLiteral(SOURCE_FOLDER "/device/data/") + folder).entryInfoList(QDir::Files))
            there.append(file.completeBaseName());
        there.sort();
        QCOMPARE(told, there);
    }
}

void tst_Scripts::withoutDisplay_data()
{
    QTest::addColumn<QString>("option");

    QTest::newRow("help") << u"--help"_s;
    QTest::newRow("version") << u"--version"_s;
}

void tst_Scripts::withoutDisplay()
{
    QFETCH(QString, option);

    // Where run.sh finds no display it hands its options to this.
    const Answer answer = run(QStringLiteral(SOURCE_FOLDER "/tools/show"), {bin(), script(u"out"_s), option});
    QCOMPARE(answer.error, QString());
    QCOMPARE(answer.status, 0);
    QCOMPARE(answer.output, run(launcher(), {option}).output);
    QVERIFY(!QFile::exists(script(u"out"_s)));
}

void tst_Scripts::whatIsStarted_data()
{
    QTest::addColumn<QByteArray>("display");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("started");

    const QStringList photos{u"--photos"_s, u"my lake"_s};
    const QStringList program = u"--temporary -- /bin/true --help"_s.split(u' ');
    QTest::newRow("frame") << QByteArray(":0") << photos << u"slate-run|--photos|my lake"_s;
    QTest::newRow("program") << QByteArray(":0") << program << u"slate-run|--temporary|--|/bin/true|--help"_s;
    QTest::newRow("frame, no display") << QByteArray() << photos << u"show|BIN|OUT|--photos|my lake"_s;
    QTest::newRow("program, no display")
        << QByteArray() << program << u"slate-run|--headless|--temporary|--|/bin/true|--help"_s;
}

void tst_Scripts::whatIsStarted()
{
    QFETCH(QByteArray, display);
    QFETCH(QStringList, arguments);
    QFETCH(QString, started);

    // What they would do stands on standard output, and nothing else does.
    const QByteArray tell = "printf %s \"${0##*/}\"; printf '|%s' \"$@\"";
    writeScript(u"tools/install-dependencies"_s, "exit 0");
    writeScript(u"search/cmake"_s, "echo 'ninja: no work to do.'");
    writeScript(u"build/release/stage/bin/slate-run"_s, tell);
    writeScript(u"tools/show"_s, tell);
    qputenv("PATH", QFile::encodeName(script(u"search"_s)) + ":/usr/bin:/bin");
    qunsetenv("WAYLAND_DISPLAY");
    qputenv("DISPLAY", display);
    const Answer answer = run(script(u"run.sh"_s), arguments);
    started.replace(u"BIN"_s, script(u"build/release/stage/bin"_s)).replace(u"OUT"_s, script(u"out"_s));
    QCOMPARE(answer.output, started);
    QCOMPARE(answer.error, QString());
    QCOMPARE(answer.status, 0);
}

QTEST_GUILESS_MAIN(tst_Scripts)
#include "tst_scripts.moc"
