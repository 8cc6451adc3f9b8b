// Keeping the machine awake.

#pragma once

#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>

class QDBusMessage;

namespace lindenreed::device {

class MessageBus;

/// Holds an inhibitor of the desktop session, or else of logind, while it is wanted. Main thread.
///
/// Nothing waits: an answer that comes when the wish has changed is acted upon then. The end of this object,
/// and of the process, gives the inhibitor back. Where there is none to be had, one log line says so.
class Inhibitor : public QObject
{
    Q_OBJECT

public:
    Inhibitor();
    ~Inhibitor() override;

    void setWanted(bool wanted);
    bool isHeld() const { return m_cookie.has_value() || m_descriptor.isValid(); }

private:
    enum class Service { Desktop, Logind };

    void ask(Service service);
    void take(const QDBusMessage &reply);
    void goOn(const QString &whyNot);
    void giveBack();
    void forget();

    bool m_wanted = false;
    bool m_asking = false;
    Service m_service = Service::Desktop;
    QStringList m_reasons; ///< why those asked so far gave nothing
    QString m_lastComplaint;
    std::unique_ptr<MessageBus> m_bus;
    std::optional<uint> m_cookie; ///< of the desktop session
    QDBusUnixFileDescriptor m_descriptor; ///< of logind
};

} // namespace lindenreed::device
