#include "status_panel.h"

#include "battery.h"
#include "composition.h"
#include "device.h"

#include <QTime>

namespace lindenreed::device {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

StatusPanel::StatusPanel(const Device &device, Composition &composition, QImage::Format format)
    : m_device(device)
    , m_composition(composition)
    , m_format(format)
{
    m_minute.setSingleShot(true);
    m_minute.setTimerType(Qt::PreciseTimer);
    connect(&m_minute, &QTimer::timeout, this, [this] {
        look();
        waitForNextMinute();
    });
    connect(&device.screen, &Screen::geometryChanged, this, &StatusPanel::followGeometry);
    connect(&device.light, &Light::changed, this, &StatusPanel::look);
    connect(&device.media, &Media::changed, this, &StatusPanel::look);
    followGeometry();
}

StatusPanel::~StatusPanel()
{
    m_composition.setStatusPanel(nullptr);
}

QRect StatusPanel::screenRectangle() const
{
    return QRect(0, 0, m_device.screen.size().width(), m_device.screen.statusHeight());
}

void StatusPanel::followGeometry()
{
    m_shown = m_device.screen.panelType() != 0;
    if (m_shown) {
        look();
        waitForNextMinute();
    } else {
        m_minute.stop();
    }
    m_composition.setStatusPanel(m_shown ? this : nullptr);
}

void StatusPanel::look()
{
    if (!m_shown)
        return;
    const StatusValues values{QTime::currentTime().toString(u"HH:mm"_s), m_device.media.present(Medium::Card),
                              m_device.media.present(Medium::Usb), m_device.light.enabled(), batteryCharge()};
    if (values == m_values && m_picture.size() == screenRectangle().size())
        return;
    m_values = values;
    m_picture = drawStatusPanel(screenRectangle().size(), m_device.profile.dpi, m_format, values);
    m_composition.damage(screenRectangle());
}

void StatusPanel::waitForNextMinute()
{
    // A little after the full minute: a timer may run out a moment early.
    const std::chrono::milliseconds sinceMidnight(QTime::currentTime().msecsSinceStartOfDay());
    m_minute.start(1min - sinceMidnight % 1min + 50ms);
}

} // namespace lindenreed::device
