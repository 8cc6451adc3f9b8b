// One device from its start to its end.

#pragma once

#include "options.h"
#include "sandbox.h"
#include "stop_signals.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace lindenreed::host {

class Desktop;
class DeviceRoot;
class PicturesMount;
class RunPlace;
class Supervisor;

/// Prepares a device, runs the program on it and takes away what was only for this run. Main thread; needs
/// the application object.
class Launch
{
public:
    explicit Launch(const Options &options);
    ~Launch();
    Launch(const Launch &) = delete;
    Launch &operator=(const Launch &) = delete;

    /// Exit status for the launcher; where the program could not be started, 2 and one line on standard
    /// error.
    int run();

private:
    /// How an attempt to start the program went: its exit status, or why there is none.
    struct Outcome
    {
        std::optional<int> status;
        QString reason;
        std::optional<int> signal; ///< that came and did not reach the program
    };

    bool findProgram(QString *error);
    bool findSandbox(QString *error);
    bool openRoot(QString *error);
    bool prepare(QString *error);
    Outcome runEnclosed(bool network, const QString &whyNetwork = {});
    Outcome runDirectly();
    Outcome supervise(Supervisor &supervisor, const std::function<void()> &start);
    void joinDesktop(Supervisor &supervisor);
    QString hostPath(const QString &devicePath) const;

    const Options m_options;
    StopSignals m_signals;
    QStringList m_program;
    QString m_sandboxProgram;
    QString m_helper;
    Sandbox m_sandbox;
    // In the order of their making; given back the other way round.
    std::unique_ptr<DeviceRoot> m_root;
    std::unique_ptr<RunPlace> m_runPlace;
    std::unique_ptr<PicturesMount> m_pictures;
    std::unique_ptr<Desktop> m_desktop;
};

} // namespace lindenreed::host
