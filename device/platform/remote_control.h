// What other processes may ask of the device.

#pragma once

#include "finger.h"
#include "idle_watcher.h"
#include "media.h"
#include "screen.h"
#include "termination.h"

#include <control_server.h>

#include <QObject>

namespace lindenreed::device {

class Composition;
class Device;
class InputContext;
class Panel;
class PlatformScreen;
class StatusPanel;

/// As it stands in events and in the state: "partial", "full", "fast".
QString modeName(RefreshMode mode);

/// The control server with the device's commands, and the events that it announces. Main thread.
class RemoteControl : public QObject
{
    Q_OBJECT

public:
    /// All must outlive it.
    RemoteControl(Device &device, const Panel &panel, Composition &composition,
                  const StatusPanel &statusPanel, const PlatformScreen &screen, InputContext &inputContext);

    bool listen(const QString &path, QString *error) { return m_server.listen(path, error); }

private:
    void addStateCommands();
    void addDeviceCommands();
    void addInputCommands();
    void addItemCommands();
    /// Answers "not-possible" where another task is in the front, which has fingers and keys to itself; true:
    /// it has answered.
    bool refuseInBackground(const remote::Reply &reply) const;
    void plug(Medium medium, bool in, const remote::Reply &reply);
    void announceChange();
    bool somethingIsUnderWay() const;
    QJsonObject state() const;
    void afterThisTurn(const remote::Reply &reply);

    Device &m_device;
    const Panel &m_panel;
    Composition &m_composition;
    const StatusPanel &m_statusPanel;
    const PlatformScreen &m_screen;
    InputContext &m_inputContext;
    Finger m_finger;
    IdleWatcher m_idleWatcher;
    Termination m_termination;
    remote::ControlServer m_server; ///< last: its handlers use the others
    bool m_changeAnnounced = false;
};

} // namespace lindenreed::device
