#include "supervisor.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace lindenreed::host {

using namespace Qt::StringLiterals;

namespace {

constexpr int firstFreeDescriptor = 10;

QString firstLine(const QByteArray &text)
{
    const QByteArray line = text.trimmed();
    const qsizetype end = line.indexOf('\n');
    return QString::fromLocal8Bit(end < 0 ? line : line.first(end)).trimmed();
}

} // namespace

Supervisor::Supervisor(const QProcessEnvironment &environment, QObject *parent)
    : QObject(parent)
{
    m_process.setProcessEnvironment(environment);
    m_process.setInputChannelMode(QProcess::ForwardedInputChannel);
    connect(&m_process, &QProcess::finished, this, &Supervisor::finish);
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            emit notStarted(m_process.errorString());
    });
    connect(&m_process, &QProcess::readyReadStandardError, this, &Supervisor::readSandboxOutput);
}

Supervisor::~Supervisor()
{
    delete m_processIdNotifier;
    for (const int descriptor : {m_processIdReadEnd, m_standardError}) {
        if (descriptor >= 0)
            ::close(descriptor);
    }
}

void Supervisor::start(const QStringList &program, const QString &workingDirectory)
{
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.setWorkingDirectory(workingDirectory);
    m_process.setChildProcessModifier([] {
        ::setsid();
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    });
    connect(&m_process, &QProcess::started, this, [this] {
        m_programId = m_process.processId();
        m_stands = true;
        emit started();
        deliver();
    });
    m_process.start(program.first(), program.sliced(1));
}

void Supervisor::startEnclosed(const QStringList &launch, const QString &helper, const QStringList &program)
{
    std::array<int, 2> processId{-1, -1};
    m_standardError = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, firstFreeDescriptor);
    if (m_standardError < 0)
        m_standardError
            = ::open("/dev/null", O_WRONLY | O_CLOEXEC); // the launcher itself was started without one
    if (m_standardError < 0 || ::pipe2(processId.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        emit notStarted(u"too many files are open"_s);
        return;
    }
    m_enclosed = true;
    m_processIdReadEnd = processId[0];
    m_processIdNotifier = new QSocketNotifier(m_processIdReadEnd, QSocketNotifier::Read, this);
    connect(m_processIdNotifier, &QSocketNotifier::activated, this, &Supervisor::readProcessId);

    // What the sandbox has to say is read here; the helper inside gives the program the real standard error.
    m_process.setProcessChannelMode(QProcess::ForwardedOutputChannel);
    m_process.setChildProcessModifier([inherited = std::array{m_standardError, processId[1]}] {
        ::setsid();
        for (const int descriptor : inherited)
            ::fcntl(descriptor, F_SETFD, 0);
    });
    QStringList arguments = launch.sliced(1);
    arguments << u"--info-fd"_s << QString::number(processId[1]) << u"--"_s;
    arguments << helper << QString::number(m_standardError) << program;
    m_process.start(launch.first(), arguments);
    ::close(processId[1]);
}

void Supervisor::pass(int signal)
{
    m_waitingSignal = signal;
    deliver();
}

void Supervisor::deliver()
{
    // Before the sandbox stands a signal would end its making, which looks like a failure.
    if (!m_waitingSignal || m_programId <= 0 || !m_stands || m_process.state() == QProcess::NotRunning)
        return;
    ::kill(pid_t(m_programId), *m_waitingSignal);
    m_waitingSignal.reset();
}

void Supervisor::readProcessId()
{
    std::array<char, 256> bytes;
    ssize_t length = 0;
    while ((length = ::read(m_processIdReadEnd, bytes.data(), bytes.size())) > 0)
        m_processIdText.append(bytes.data(), length);
    const QJsonObject information = QJsonDocument::fromJson(m_processIdText).object();
    m_programId = information.value(u"child-pid"_s).toInteger();
    if (length == 0 || m_programId > 0)
        m_processIdNotifier->setEnabled(false);
    deliver();
}

void Supervisor::readSandboxOutput()
{
    m_sandboxOutput.append(m_process.readAllStandardError());
    if (!m_stands && m_sandboxOutput.contains('\0')) {
        m_stands = true;
        emit started();
        deliver();
    }
}

void Supervisor::finish(int exitCode, QProcess::ExitStatus exitStatus)
{
    if (m_enclosed) {
        readSandboxOutput();
        if (!m_stands) {
            emit notStarted(firstLine(m_sandboxOutput));
            return;
        }
    }
    emit ended(exitStatus == QProcess::CrashExit ? signalStatus + exitCode : exitCode);
}

} // namespace lindenreed::host
