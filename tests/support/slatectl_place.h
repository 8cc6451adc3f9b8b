// Running slatectl from a test, against a control socket and a panel of the test's own. Needs the library
// remote; the program must have been built.

#pragma once

#include <control_server.h>
#include <run_folder.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <sys/stat.h>

/// What the program did.
struct SlatectlOutcome
{
    int status = -1;
    QByteArray output;
    QByteArray errors;
};

/// A default device root with its run folder, empty, for this process and those that it starts.
class SlatectlPlace
{
public:
    SlatectlPlace()
    {
        const QByteArray runtime = QFile::encodeName(path(QStringLiteral("runtime")));
        qputenv("XDG_RUNTIME_DIR", runtime);
        qputenv("XDG_DATA_HOME", QFile::encodeName(path(QStringLiteral("data"))));
        if (!QDir().mkpath(root()) || ::mkdir(runtime.constData(), 0700) != 0)
            qFatal("%s cannot be used", qUtf8Printable(m_folder.path()));
        m_runFolder = lindenreed::remote::runFolderOf(root(), nullptr).value_or(QString());
        if (!QDir().mkpath(m_runFolder))
            qFatal("%s cannot be made", qUtf8Printable(m_runFolder));
    }

    QString path(const QString &below) const { return m_folder.filePath(below); }
    QString root() const { return path(QStringLiteral("data/picture_stand/device")); }
    QString runFolder() const { return m_runFolder; }

    static QString program()
    {
        return QCoreApplication::applicationDirPath() + QStringLiteral("/../../bin/slatectl");
    }

    /// Runs to the end, while this process answers.
    static SlatectlOutcome run(const QStringList &arguments)
    {
        QProcess process;
        process.start(program(), arguments);
        if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 30'000))
            return {};
        return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                process.readAllStandardOutput(), process.readAllStandardError()};
    }

private:
    QTemporaryDir m_folder;
    QString m_runFolder;
};
