// Whole processes: from the launcher's start to the first refresh of the panel, and the program's peak of
// resident memory. Ten pictures in each playlist, device root on disk and already in the cache of the file
// system.

#include "program.h"

#include <benchmark/benchmark.h>

#include <control_client.h>
#include <panel_file.h>
#include <run_folder.h>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QVariant>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;
using namespace lindenreed;

namespace {

constexpr int limitMs = 60'000;

QString programFolder()
{
    return QCoreApplication::applicationDirPath();
}

/// The highest resident memory so far of the frame's process below `launcher`, in KiB; 0 where none is found.
double peakMemory(qint64 launcher)
{
    const auto parentOf = [](const QString &process) -> qint64 {
        QFile status(u"/proc/%1/stat"_s.arg(process));
        if (!status.open(QIODevice::ReadOnly))
            return 0;
        const QByteArray line = status.readAll();
        return line.mid(line.lastIndexOf(')') + 2)
            .split(' ')
            .value(1)
            .toLongLong(); // behind the name and the state
    };
    const QStringList processes = QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs);
    for (const QString &process : processes) {
        if (QFileInfo(u"/proc/%1/exe"_s.arg(process)).symLinkTarget()
            != programFolder() + u"/picture_stand"_s)
            continue;
        qint64 ancestor = process.toLongLong();
        while (ancestor > 1 && ancestor != launcher)
            ancestor = parentOf(QString::number(ancestor));
        QFile status(u"/proc/%1/status"_s.arg(process));
        if (ancestor != launcher || !status.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("VmHWM:"))
                return line.mid(6).simplified().split(' ').value(0).toDouble();
        }
    }
    return 0;
}

struct Start
{
    double seconds = 0;
    double peakKiB = 0;
};

/// Starts the frame, waits for its first refresh and until it rests, and ends it.
std::optional<Start> startOnce(const QString &root, QString *error)
{
    QProcess launcher;
    launcher.setProcessChannelMode(QProcess::MergedChannels);
    QElapsedTimer clock;
    clock.start();
    launcher.start(programFolder() + u"/../../bin/slate-run"_s, {u"--root"_s, root, u"--headless"_s});

    Start result;
    QString runFolder;
    while (clock.elapsed() < limitMs && launcher.state() != QProcess::NotRunning) {
        // The root's place is known as soon as the launcher has made the root.
        if (runFolder.isEmpty())
            runFolder = remote::runFolderOf(root, error).value_or(QString());
        const auto panel
            = runFolder.isEmpty() ? std::nullopt : remote::readPanel(runFolder + u"/panel"_s, error);
        if (panel && panel->header.refreshNumber > 0) {
            result.seconds = double(clock.nsecsElapsed()) * 1e-9;
            break;
        }
        launcher.waitForFinished(1);
    }
    auto client = result.seconds > 0 ? remote::ControlClient::connectTo(runFolder, error) : std::nullopt;
    if (client) {
        client->ask(u"idle"_s, {{u"ms"_s, 300}});
        result.peakKiB = peakMemory(launcher.processId());
        client->ask(u"quit"_s);
        launcher.waitForFinished(limitMs);
        return result;
    }
    launcher.terminate();
    launcher.waitForFinished(limitMs);
    *error += u' ' + QString::fromLocal8Bit(launcher.readAll());
    return std::nullopt;
}

/// Adds playlists to the database that a first start has left, until there are `count`.
bool addPlaylists(const QString &root, int count)
{
    bool done = false;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, root);
        database.setDatabaseName(root + u"/mnt/ext1/system/picture_stand.sqlite"_s);
        QSqlQuery query(database.open() ? database : QSqlDatabase());
        done = query.exec(u"SELECT COUNT(*) FROM playlists"_s) && query.next();
        const int present = done ? query.value(0).toInt() : count;
        database.transaction();
        for (int number = present; number < count && done; ++number) {
            query.prepare(u"INSERT INTO playlists(title) VALUES(?)"_s);
            query.addBindValue(u"Playlist %1"_s.arg(number + 1));
            done = query.exec();
            const QVariant playlist = query.lastInsertId();
            for (int picture = 1; picture <= 10 && done; ++picture) {
                query.prepare(u"INSERT INTO playlist_images(url, playlist) VALUES(?, ?)"_s);
                query.addBindValue(u"/mnt/ext1/Photo/%1.jpg"_s.arg(picture, 2, 10, QLatin1Char('0')));
                query.addBindValue(playlist);
                done = query.exec();
            }
        }
        done = database.commit() && done;
    }
    QSqlDatabase::removeDatabase(root);
    return done;
}

void startToFirstRefresh(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString root = folder.filePath(u"device"_s);
    QString error;
    if (!startOnce(root, &error) || !addPlaylists(root, int(state.range(0)))) {
        state.SkipWithError(qPrintable(u"no device root: "_s + error));
        return;
    }
    double peakKiB = 0;
    for ([[maybe_unused]] auto iteration : state) {
        const auto start = startOnce(root, &error);
        if (!start) {
            state.SkipWithError(qPrintable(error));
            return;
        }
        state.SetIterationTime(start->seconds);
        peakKiB = std::max(peakKiB, start->peakKiB);
    }
    state.counters["peak_MiB"] = peakKiB / 1024;
}

BENCHMARK(startToFirstRefresh)
    ->ArgName("playlists")
    ->Arg(1)
    ->Arg(100)
    ->Arg(1000)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    return benchmarks::run<QCoreApplication>(argc, argv);
}
