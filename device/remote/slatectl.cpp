// Asks a running device from a shell.

#include "control_client.h"
#include "run_folder.h"
#include "slatectl_commands.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QImageWriter>
#include <QJsonDocument>
#include <QSaveFile>

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

    QSaveFile output(file);
    if (!output.open(QIODevice::WriteOnly))
        return fail(WrongUsageOrNoDevice, u"%1 cannot be written: %2."_s.arg(file, output.errorString()));
    QImageWriter writer(&output, "png");
    if (!writer.write(picture) || !output.commit())
        return fail(WrongUsageOrNoDevice, u"%1 cannot be written: %2."_s.arg(file, output.errorString()));
    print({{u"file"_s, QFileInfo(file).absoluteFilePath()},
           {u"width"_s, picture.width()},
           {u"height"_s, picture.height()}});
    return Done;
}

int follow(ControlClient &client)
{
    const QJsonObject answer = client.ask(u"follow"_s);
    if (!answer.value("ok"_L1).toBool())
        return refusal(answer);
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
    print(answer);
    return Done;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QStringList words = QCoreApplication::arguments().sliced(1);

    QString root = defaultDeviceRoot();
    while (!words.isEmpty() && words.constFirst().startsWith(u'-')) {
        const QString option = words.takeFirst();
        if (option == "--help"_L1 || option == "-h"_L1) {
            std::fputs(helpText().toUtf8().constData(), stdout);
            return Done;
        }
        if (option.startsWith("--root="_L1)) {
            root = option.sliced(qsizetype(qstrlen("--root=")));
        } else if (option == "--root"_L1) {
            if (words.isEmpty())
                return fail(WrongUsageOrNoDevice, u"--root needs a folder; see slatectl --help."_s);
            root = words.takeFirst();
        } else {
            return fail(WrongUsageOrNoDevice, u"There is no option %1; see slatectl --help."_s.arg(option));
        }
    }
    if (words.isEmpty())
        return fail(WrongUsageOrNoDevice, u"Which command? See slatectl --help."_s);

    const QString name = words.takeFirst();
    const Command *command = findCommand(name);
    if (!command)
        return fail(WrongUsageOrNoDevice, u"There is no command \"%1\"; see slatectl --help."_s.arg(name));
    QString error;
    const std::optional<QJsonObject> members = readWords(*command, words, &error);
    if (!members)
        return fail(WrongUsageOrNoDevice, u"%1: %2."_s.arg(name, error));

    const std::optional<QString> runFolder = runFolderOf(root, &error);
    if (!runFolder)
        return fail(WrongUsageOrNoDevice, error);
    std::optional<ControlClient> client = ControlClient::connectTo(*runFolder, &error);
    if (!client)
        return fail(WrongUsageOrNoDevice, error);

    if (name == "screenshot"_L1)
        return screenshot(*client, members->value("file"_L1).toString());
    if (name == "follow"_L1)
        return follow(*client);
    return ask(*client, name, *members);
}
