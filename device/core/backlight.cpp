#include "backlight.h"

#include "log.h"
#include "message_bus.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

constexpr int fullLevel = 100;

std::optional<uint> readNumber(const QString &path, uint least, uint most, QString *error)
{
    QFile file(path);
    bool isNumber = false;
    uint number = 0;
    if (file.open(QIODevice::ReadOnly))
        number = file.read(32).trimmed().toUInt(&isNumber);
    if (isNumber && number >= least && number <= most)
        return number;
    *error = u"%1 is no number from %2 to %3"_s.arg(path).arg(least).arg(most);
    return std::nullopt;
}

} // namespace

std::unique_ptr<Backlight> Backlight::open(const QString &folder, QString *error)
{
    constexpr uint most = 1'000'000;
    const auto highest = readNumber(folder + u"/max_brightness"_s, 1, most, error);
    const auto now = highest ? readNumber(folder + u"/brightness"_s, 0, *highest, error) : std::nullopt;
    if (!now)
        return nullptr;
    std::unique_ptr<Backlight> light(new Backlight);
    light->m_folder = folder;
    light->m_most = *highest;
    light->m_level = int(std::lround(double(*now) * fullLevel / *highest));
    return light;
}

Backlight::Backlight() = default;
Backlight::~Backlight() = default;

void Backlight::setLevel(int level)
{
    if (std::exchange(m_level, level) == level)
        return;
    uint value = uint(std::lround(double(m_most) * level / fullLevel));
    if (level > 0)
        value = std::max(value, 1U);
    // A system service has no session that logind would give the light to.
    if (!write(value))
        ask(value);
}

bool Backlight::write(uint value) const
{
    QFile file(m_folder + u"/brightness"_s);
    const QByteArray text = QByteArray::number(value);
    return file.open(QIODevice::WriteOnly | QIODevice::ExistingOnly | QIODevice::Unbuffered)
        && file.write(text) == text.size();
}

void Backlight::ask(uint value)
{
    // Without an application no bus can be spoken to.
    if (!QCoreApplication::instance())
        return;
    if (!m_bus) {
        const QString address = MessageBus::systemAddress();
        if (address.isEmpty()) {
            complain(u"there is no system bus"_s);
            return;
        }
        m_bus = std::make_unique<MessageBus>(address);
        connect(m_bus.get(), &MessageBus::closed, this, [this](const QString &reason) {
            complain(reason);
            forgetBus();
        });
    }
    QDBusMessage request = QDBusMessage::createMethodCall(
        u"org.freedesktop.login1"_s, u"/org/freedesktop/login1/session/auto"_s,
        u"org.freedesktop.login1.Session"_s, u"SetBrightness"_s);
    request << u"backlight"_s << QFileInfo(m_folder).fileName() << value;
    m_bus->call(request, [this](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage)
            complain(reply.errorMessage());
        else
            m_complained = false;
    });
}

void Backlight::complain(const QString &reason)
{
    if (!std::exchange(m_complained, true)) {
        log::line(2, __FILE__, __LINE__, __func__,
                  "the backlight " + QFileInfo(m_folder).fileName().toStdString()
                      + " cannot be set: " + reason.toStdString());
    }
}

void Backlight::forgetBus()
{
    // It is what brought us here, so it goes later, but not later than this object.
    m_bus->abandon();
    m_bus->setParent(this);
    m_bus.release()->deleteLater();
}

} // namespace lindenreed::device
