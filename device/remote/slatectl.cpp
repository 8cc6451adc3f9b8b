// Asks a running device from a shell.

#include "control_client.h"
#include "panel_file.h"
#include "run_folder.h"
#include "slatectl_commands.h"
#include "slatectl_line.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QJsonDocument>
#include <QSaveFile>

#include <cerrno>
#include <cstdio>

namespace {

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

enum ExitStatus { Done = 0, Refused = 1, WrongUsageOrNoDevice = 2 };

/// One line, whatever is in it.
int fail(ExitStatus status, const QString &sentence)
{
    std::fprintf(stderr, "slatectl: %s\n", sentence.simplified().toUtf8().constData());
    return status;
}

/// False where nobody reads any more.
bool print(const QJsonObject &object)
{
    const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    return std::fwrite(line.constData(), 1, std::size_t(line.size()), stdout) == std::size_t(line.size())
        && std::fflush(stdout) == 0;
}

int told(const QJsonObject &answer)
{
    if (!print(answer))
        return fail(WrongUsageOrNoDevice, u"The answer cannot be written: %1."_s.arg(qt_error_string(errno)));
    return Done;
}

int refusal(const QJsonObject &answer)
{
    const QString code = answer.value("error"_L1).toString();
    const QString message = answer.value("message"_L1).toString();
    if (code == "no-device"_L1 || code == "no-answer"_L1)
        return fail(WrongUsageOrNoDevice, message);
    return fail(Refused, code + u": "_s + message);
}

int screenshot(const ControlClient &client, const QString &file)
{
    QString error;
    const QImage picture = client.screenshot(&error);
    if (picture.isNull())
        return fail(WrongUsageOrNoDevice, error);

    // Whole or not at all; but a file that is renamed to a pipe's or a device's name would take its place.
    const QFileInfo target(file);
    const bool isFile = !target.exists() || target.isFile();
    QSaveFile saved(file);
    QFile stream(file);
    QFileDevice &output = isFile ? static_cast<QFileDevice &>(saved) : stream;
    const auto write = [&] {
        return output.open(QIODevice::WriteOnly) && QImageWriter(&output, "png").write(picture)
            && (isFile ? saved.commit() : stream.flush());
    };
    if (!write())
        return fail(WrongUsageOrNoDevice, u"%1 cannot be written: %2."_s.arg(file, output.errorString()));
    return told({{u"file"_s, QFileInfo(file).absoluteFilePath()},
                 {u"width"_s, picture.width()},
                 {u"height"_s, picture.height()}});
}

/// The panel or a part of it as PGM or PPM, which any language reads in a few lines.
int frame(const QString &panelPath, const QJsonObject &members)
{
    QString error;
    const std::optional<PanelSnapshot> panel = readPanel(panelPath, &error);
    if (!panel)
        return fail(WrongUsageOrNoDevice, error);

    const QImage &glass = panel->glass;
    const qint64 x = members.value("x"_L1).toInteger();
    const qint64 y = members.value("y"_L1).toInteger();
    const qint64 width = members.value("width"_L1).toInteger(glass.width());
    const qint64 height = members.value("height"_L1).toInteger(glass.height());
    if (x < 0 || y < 0 || x + width > glass.width() || y + height > glass.height()) {
        return fail(Refused,
                    u"bad-argument: The rectangle is not within the panel, which has %1 by %2 pixels."_s
                        .arg(glass.width())
                        .arg(glass.height()));
    }

    const std::size_t bytesPerPixel = std::size_t(glass.depth()) / 8;
    const std::size_t rowBytes = std::size_t(width) * bytesPerPixel;
    bool written
        = std::printf("%s\n%d %d\n255\n", bytesPerPixel == 1 ? "P5" : "P6", int(width), int(height)) > 0;
    for (int row = int(y); written && row < y + height; ++row) {
        const uchar *first = glass.constScanLine(row) + std::size_t(x) * bytesPerPixel;
        written = std::fwrite(first, 1, rowBytes, stdout) == rowBytes;
    }
    if (!written || std::fflush(stdout) != 0)
        return fail(WrongUsageOrNoDevice, u"The frame cannot be written: %1."_s.arg(qt_error_string(errno)));
    return Done;
}

int follow(ControlClient &client, const QString &panelPath)
{
    const QJsonObject answer = client.ask(u"follow"_s);
    if (!answer.value("ok"_L1).toBool())
        return refusal(answer);
    // What is on the panel already stands as a refresh of all of it before those that come: whoever draws
    // what is told here has the same picture.
    if (const std::optional<PanelSnapshot> panel = readPanel(panelPath, nullptr)) {
        const bool printed = print({{u"event"_s, u"refresh"_s},
                                    {u"number"_s, qint64(panel->header.refreshNumber)},
                                    {u"x"_s, 0},
                                    {u"y"_s, 0},
                                    {u"width"_s, panel->glass.width()},
                                    {u"height"_s, panel->glass.height()},
                                    {u"mode"_s, u"full"_s},
                                    {u"missed"_s, 0}});
        if (!printed)
            return Done;
    }
    while (true) {
        const QJsonObject event = client.nextEvent(1h);
        if (!event.isEmpty() ? !print(event) : !client.isConnected())
            return Done;
    }
}

int ask(ControlClient &client, const QString &command, const QJsonObject &members)
{
    // What the command itself takes comes on top of what a device may take that is busy with other clients.
    const qint64 own = members.value("ms"_L1).toInteger() + members.value("steps"_L1).toInteger() * 100;
    QJsonObject answer = client.ask(command, members, 60s + std::chrono::milliseconds(own));
    if (!answer.value("ok"_L1).toBool()) {
        if (command == "quit"_L1 && answer.value("error"_L1) == "no-device"_L1)
            return Done; // it was faster than its answer
        return refusal(answer);
    }
    answer.remove("ok"_L1);
    answer.remove("id"_L1);
    return told(answer);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QString error;
    const std::optional<CommandLine> line = readCommandLine(QCoreApplication::arguments().sliced(1), &error);
    if (!line)
        return fail(WrongUsageOrNoDevice, error);
    if (line->help) {
        std::fputs(helpText().toUtf8().constData(), stdout);
        return Done;
    }

    if (line->version) {
        std::puts("slatectl " SLATE_VERSION);
        return Done;
    }

    const QString root = line->root.isEmpty() ? defaultDeviceRoot() : line->root;
    const std::optional<QString> runFolder
        = line->runFolder.isEmpty() ? runFolderOf(root, &error) : line->runFolder;
    if (!runFolder)
        return fail(WrongUsageOrNoDevice, error);
    std::optional<ControlClient> client = ControlClient::connectTo(*runFolder, &error);
    if (!client)
        return fail(WrongUsageOrNoDevice, error);

    const QString &name = line->command->name;
    const QString panelPath = *runFolder + u"/panel"_s;
    if (name == "screenshot"_L1)
        return screenshot(*client, line->members.value("file"_L1).toString());
    if (name == "frame"_L1)
        return frame(panelPath, line->members);
    if (name == "follow"_L1)
        return follow(*client, panelPath);
    return ask(*client, name, line->members);
}
