// Running slate-run from a test, as a user would from a shell.

#pragma once

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>

/// How a run went.
struct LauncherEnd
{
    int status = -1; ///< -1: it did not end by itself, or not in time
    QByteArray output;
    QByteArray errors;
};

/// A place with slate-run in bin, in the installed shape, and folders of its own for all that a launcher
/// uses. Main thread; the folders live as long as this object.
class LauncherPlace
{
public:
    /// The build's own commands and data.
    static QString builtCommand(const QString &name);

    /// Folders below `folder`, which must exist and be empty.
    explicit LauncherPlace(const QString &folder);

    /// From here on a copy of the launcher runs, with data of its own: profiles, languages, and an empty
    /// skeleton below share/picture_stand/skeleton. Gives the copy's prefix; empty where copying failed.
    QString useOwnPrefix();

    QString path(const QString &below) const; ///< below the folder
    QString launcher() const { return m_launcher; }
    QString temporaryFolder() const { return path(QStringLiteral("tmp")); }
    QString runtimeFolder() const { return path(QStringLiteral("runtime")); }

    /// Where temporary devices, run folders or mount points were left.
    QStringList leftovers() const;

    QProcessEnvironment &environment() { return m_environment; }

    /// Runs to the end, within a minute.
    LauncherEnd run(const QStringList &arguments, const QByteArray &input = {}) const;
    /// The same for a script of the shell on a temporary device.
    LauncherEnd runScript(const QString &script, const QStringList &options = {}) const;
    /// Starts and goes on.
    void start(QProcess &process, const QStringList &arguments) const;
    /// Waits for the end of a started one.
    static LauncherEnd end(QProcess &process);

private:
    QString m_folder;
    QString m_launcher;
    QProcessEnvironment m_environment;
};

/// Contents of a file; null where it cannot be read.
QByteArray fileContent(const QString &path);
bool writeFile(const QString &path, const QByteArray &content, bool executable = false);

/// One line, from the launcher, with a final newline.
bool isOneLine(const QByteArray &errors);
