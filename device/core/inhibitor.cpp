#include "inhibitor.h"

#include "log.h"
#include "message_bus.h"

#include <QCoreApplication>
#include <QDBusMessage>

#include <utility>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

QDBusMessage desktopCall(const QString &method)
{
    return QDBusMessage::createMethodCall(u"org.freedesktop.ScreenSaver"_s, u"/org/freedesktop/ScreenSaver"_s,
                                          u"org.freedesktop.ScreenSaver"_s, method);
}

QDBusMessage logindCall(const QString &method)
{
    return QDBusMessage::createMethodCall(u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                                          u"org.freedesktop.login1.Manager"_s, method);
}

} // namespace

Inhibitor::Inhibitor(const Inhibition &inhibition, std::chrono::milliseconds pause)
    : m_inhibition(inhibition)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(pause);
    connect(&m_pause, &QTimer::timeout, this, [this] { setWanted(m_wanted); });
}

Inhibitor::~Inhibitor()
{
    if (isHeld())
        giveBack();
}

void Inhibitor::setWanted(bool wanted)
{
    if (wanted && m_wanted && m_pause.isActive())
        return; // a show puts sleep off with each picture; the next attempt comes by itself
    m_wanted = wanted;
    m_pause.stop();
    if (m_asking)
        return; // the answer decides what happens
    if (m_wanted && !isHeld()) {
        // Without an application there is no event loop that would bring an answer.
        if (!QCoreApplication::instance())
            return;
        m_reasons.clear();
        ask(Service::Desktop);
    } else if (!m_wanted && isHeld()) {
        giveBack();
    }
}

void Inhibitor::ask(Service service)
{
    m_asking = true;
    m_service = service;
    const bool desktop = service == Service::Desktop;
    const QString address = desktop ? MessageBus::sessionAddress() : MessageBus::systemAddress();
    if (address.isEmpty()) {
        goOn(u"there is none"_s);
        return;
    }
    m_bus = std::make_unique<MessageBus>(address);
    connect(m_bus.get(), &MessageBus::closed, this, &Inhibitor::goOn);
    QDBusMessage request = desktop ? desktopCall(u"Inhibit"_s) : logindCall(u"Inhibit"_s);
    if (!desktop)
        request << m_inhibition.what;
    request << u"Picture frame"_s << m_inhibition.reason;
    if (!desktop)
        request << u"block"_s;
    m_bus->call(request, [this](const QDBusMessage &reply) { take(reply); });
}

void Inhibitor::take(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage) {
        goOn(reply.errorMessage());
        return;
    }
    const QVariant granted = reply.arguments().value(0);
    if (m_service == Service::Desktop && granted.typeId() == QMetaType::UInt)
        m_cookie = granted.toUInt();
    else if (m_service == Service::Logind)
        m_descriptor = granted.value<QDBusUnixFileDescriptor>();
    if (!isHeld()) {
        goOn(u"its answer makes no sense"_s);
        return;
    }
    m_asking = false;
    m_complained = false;
    if (!m_wanted)
        giveBack();
}

/// The service asked last, or the one that gave the inhibitor, is none any more.
void Inhibitor::goOn(const QString &whyNot)
{
    const bool desktop = m_service == Service::Desktop;
    forget();
    m_reasons.append((desktop ? u"session bus: %1"_s : u"system bus: %1"_s).arg(whyNot));
    if (m_wanted && desktop) {
        ask(Service::Logind);
        return;
    }
    m_asking = false;
    if (!m_wanted)
        return;
    m_pause.start();
    if (m_inhibition.vital && !std::exchange(m_complained, true)) {
        log::line(2, __FILE__, __LINE__, __func__,
                  "nothing keeps the machine awake (" + m_reasons.join(u"; "_s).toStdString() + ')');
    }
}

void Inhibitor::giveBack()
{
    // Logind takes it back with the descriptor, a session needs to be told in so many words.
    if (m_cookie)
        m_bus->send(desktopCall(u"UnInhibit"_s) << *m_cookie);
    forget();
}

void Inhibitor::forget()
{
    m_cookie.reset();
    m_descriptor = QDBusUnixFileDescriptor();
    if (!m_bus)
        return;
    // It may be what brought us here, so it goes later, but not later than this object.
    m_bus->abandon();
    m_bus->setParent(this);
    m_bus.release()->deleteLater();
}

} // namespace lindenreed::device
