// The program's parent: starts it, passes signals on, and learns how it ended.

#pragma once

#include <QObject>
#include <QProcess>
#include <QStringList>

#include <optional>

class QSocketNotifier;

namespace lindenreed::host {

constexpr int signalStatus = 128; ///< as in a shell: added to the number of the signal that ended a program

/// Runs one program at a time, with the launcher's standard input, output and error. Main thread.
///
/// The program has a session of its own: what a terminal sends reaches the launcher alone, which passes it
/// on.
class Supervisor : public QObject
{
    Q_OBJECT

public:
    explicit Supervisor(const QProcessEnvironment &environment, QObject *parent = nullptr);
    ~Supervisor() override;

    /// Starts without a sandbox.
    void start(const QStringList &program, const QString &workingDirectory);

    /// `launch`: the sandbox's program and its arguments, up to and without the enclosed program.
    void startEnclosed(const QStringList &launch, const QString &helper, const QStringList &program);

    /// To the program; kept until it can be reached.
    void pass(int signal);
    std::optional<int> waitingSignal() const { return m_waitingSignal; } ///< that is still to be passed on

signals:
    void started(); ///< the program has its place
    void ended(int status); ///< 0 to 255: its own status, or 128 and the signal's number
    void notStarted(const QString &reason); ///< instead of both: one sentence, may be empty

private:
    void readSandboxOutput();
    void readProcessId();
    void deliver();
    void finish(int exitCode, QProcess::ExitStatus exitStatus);

    QProcess m_process;
    std::optional<int> m_waitingSignal;
    QSocketNotifier *m_processIdNotifier = nullptr;
    QByteArray m_processIdText;
    QByteArray m_sandboxOutput;
    qint64 m_programId = 0;
    int m_processIdReadEnd = -1;
    int m_standardError = -1;
    bool m_enclosed = false;
    bool m_stands = false;
};

} // namespace lindenreed::host
