#include "launcher_run.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int limitMs = 60'000;

} // namespace

QString LauncherPlace::builtCommand(const QString &name)
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../../bin/"_s + name);
}

LauncherPlace::LauncherPlace(const QString &folder)
    : m_folder(QFileInfo(folder).canonicalFilePath())
    , m_launcher(builtCommand(u"slate-run"_s))
    , m_environment(QProcessEnvironment::systemEnvironment())
{
    for (const QString &name : {u"home"_s, u"data"_s, u"tmp"_s, u"runtime"_s})
        QDir(m_folder).mkpath(name);
    QFile::setPermissions(runtimeFolder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_environment.insert(u"HOME"_s, path(u"home"_s));
    m_environment.insert(u"XDG_DATA_HOME"_s, path(u"data"_s));
    m_environment.insert(u"TMPDIR"_s, temporaryFolder());
    m_environment.insert(u"XDG_RUNTIME_DIR"_s, runtimeFolder());
    m_environment.remove(u"DISPLAY"_s);
    m_environment.remove(u"WAYLAND_DISPLAY"_s);
    m_environment.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
}

QString LauncherPlace::useOwnPrefix()
{
    const QString prefix = path(u"prefix"_s);
    const QString built = QDir::cleanPath(builtCommand(u".."_s));
    for (const QString &folder :
         {u"bin"_s, u"lib/picture_stand"_s, u"share/picture_stand/skeleton/mnt/ext1"_s,
          u"share/picture_stand/profiles"_s, u"share/picture_stand/languages"_s}) {
        if (!QDir(prefix).mkpath(folder))
            return {};
    }
    for (const QString &file : {u"bin/slate-run"_s, u"lib/picture_stand/slate-enter"_s}) {
        if (!QFile::copy(built + u'/' + file, prefix + u'/' + file))
            return {};
    }
    for (const QString &profile : {u"grey-6"_s, u"grey-8"_s}) {
        const QString file = u"/share/picture_stand/profiles/"_s + profile + u".json"_s;
        if (!QFile::copy(built + file, prefix + file))
            return {};
    }
    for (const QString &language : {u"de"_s, u"en"_s, u"zh_CN"_s}) {
        if (!writeFile(prefix + u"/share/picture_stand/languages/"_s + language + u".qm"_s, ""))
            return {};
    }
    m_launcher = prefix + u"/bin/slate-run"_s;
    return prefix;
}

QString LauncherPlace::path(const QString &below) const
{
    return m_folder + u'/' + below;
}

QStringList LauncherPlace::leftovers() const
{
    QStringList found;
    for (const QString &folder : {temporaryFolder(), runtimeFolder() + u"/picture_stand"_s}) {
        const auto all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        for (const QString &name : QDir(folder).entryList(all))
            found.append(folder + u'/' + name);
    }
    return found;
}

LauncherEnd LauncherPlace::run(const QStringList &arguments, const QByteArray &input) const
{
    QProcess process;
    start(process, arguments);
    process.write(input);
    process.closeWriteChannel();
    return end(process);
}

LauncherEnd LauncherPlace::runScript(const QString &script, const QStringList &options) const
{
    return run(QStringList{u"--temporary"_s, u"--headless"_s} + options
               + QStringList{u"--"_s, u"/bin/sh"_s, u"-c"_s, script});
}

void LauncherPlace::start(QProcess &process, const QStringList &arguments) const
{
    process.setProcessEnvironment(m_environment);
    process.start(m_launcher, arguments);
}

LauncherEnd LauncherPlace::end(QProcess &process)
{
    LauncherEnd result;
    if (process.waitForFinished(limitMs) && process.exitStatus() == QProcess::NormalExit)
        result.status = process.exitCode();
    else
        process.kill();
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    // Callers compare the status alone, which does not tell why.
    if (result.status != 0)
        std::fputs(result.errors.constData(), stderr);
    return result;
}

QByteArray fileContent(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &content, bool executable)
{
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)
        || file.write(content) != content.size())
        return false;
    file.close();
    return !executable
        || file.setPermissions(file.permissions() | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther);
}

bool isOneLine(const QByteArray &errors)
{
    return errors.startsWith("slate-run: ") && errors.count('\n') == 1 && errors.endsWith('\n');
}
