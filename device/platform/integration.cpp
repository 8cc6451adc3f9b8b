#include "integration.h"

#include "backing_store.h"
#include "composition.h"
#include "device.h"
#include "device_record.h"
#include "fallback_font.h"
#include "finger.h"
#include "input_context.h"
#include "panel.h"
#include "paths.h"
#include "platform_screen.h"
#include "platform_window.h"
#include "remote_control.h"
#include "service_manager.h"
#include "status_panel.h"
#include "texts.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QtGui/private/qgenericunixeventdispatcher_p.h>
#include <QtGui/private/qgenericunixfontdatabase_p.h>
#include <qpa/qwindowsysteminterface.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

constexpr int cannotStart = 2; // as the launcher has it

void tell(const QString &sentence)
{
    std::fprintf(stderr, "lindenreed2: %s\n", qUtf8Printable(sentence));
}

/// Runtime files have a place only where the launcher, or the hardware, provides one.
QString runFile(QLatin1StringView name)
{
    const QString folder = QString::fromLatin1(runFolder);
    return QFileInfo(folder).isDir() ? folder + u'/' + name : QString();
}

/// Qt asks the plug-ins of a folder that is named to it first, if it is before the first picture.
void goBeforeQtsPictureReaders()
{
    QCoreApplication::addLibraryPath(pluginFolder());
}

} // namespace

Integration::Integration()
    : m_fontDatabase(std::make_unique<QGenericUnixFontDatabase>())
    , m_nativeInterface(std::make_unique<QPlatformNativeInterface>())
{
}

Integration::~Integration() = default;

void Integration::startDevice()
{
    QString error;
    const std::optional<DeviceRecord> record
        = readDeviceRecord(QString::fromLatin1(deviceRecordPath), &error);
    const std::optional<Profile> profile
        = record ? Profile::named(profilesFolder(), record->profile, &error) : std::nullopt;
    if (!profile || !Device::start(*profile, &error)) {
        tell(error);
        // Nothing has begun that would have to end, and the application object is only half made.
        std::_Exit(cannotStart);
    }
    Device::instance()->previousOrientation = record->orientation;
}

void Integration::initialize()
{
    startDevice();
    goBeforeQtsPictureReaders();
    nameFallbackFont(texts::language());
    Device &device = *Device::instance();

    QString error;
    m_panel = Panel::create(device.profile, runFile("panel"_L1), &error);
    if (!m_panel) {
        tell(error + u" Nobody can see the panel."_s);
        m_panel = Panel::create(device.profile, QString(), &error);
        if (!m_panel)
            qFatal("%s", qUtf8Printable(error));
    }
    m_composition = std::make_unique<Composition>(*m_panel, device.screen, device.light);
    m_statusPanel = std::make_unique<StatusPanel>(device, *m_composition, m_panel->pictureFormat());

    m_screen = new PlatformScreen(device.profile, device.screen, *m_composition);
    QWindowSystemInterface::handleScreenAdded(m_screen, true);
    QObject::connect(&device.screen, &Screen::geometryChanged, m_composition.get(),
                     [this] { m_screen->followGeometry(); });
    QObject::connect(&device.events, &Events::inForegroundChanged, m_composition.get(),
                     [this, &device] { m_composition->setInForeground(device.events.inForeground()); });

    m_inputContext = std::make_unique<InputContext>(device);
    m_remoteControl = std::make_unique<RemoteControl>(device, *m_panel, *m_composition, *m_statusPanel,
                                                      *m_screen, *m_inputContext);
    if (const QString socket = runFile("control"_L1);
        !socket.isEmpty() && !m_remoteControl->listen(socket, &error))
        tell(error);
    m_serviceManager = std::make_unique<ServiceManager>();
    m_serviceManager->tellReady();
}

void Integration::destroy()
{
    m_serviceManager.reset();
    m_remoteControl.reset();
    m_inputContext.reset(); // with its window, which needs the screen
    if (m_screen)
        QWindowSystemInterface::handleScreenRemoved(std::exchange(m_screen, nullptr));
    m_statusPanel.reset();
    m_composition.reset();
    m_panel.reset();
    if (Device::instance())
        Device::stop();
}

void Integration::quit() const
{
    // Windows stay as they are: the panel keeps what it shows, and no window can refuse.
    QCoreApplication::exit(0);
}

bool Integration::hasCapability(Capability capability) const
{
    switch (capability) {
    case ThreadedPixmaps:
    case MultipleWindows:
    case NonFullScreenWindows:
    case WindowActivation:
        return true;
    default:
        return false;
    }
}

QVariant Integration::styleHint(StyleHint hint) const
{
    constexpr double fingerWobble = 1.5; // millimetres that still count as holding still
    switch (hint) {
    case CursorFlashTime:
        return 0; // each blink would be a refresh
    case MousePressAndHoldInterval:
        return int(Finger::longPressTime.count());
    case StartDragDistance:
        return Device::instance() ? int(std::lround(fingerWobble * Device::instance()->profile.dpi / 25.4))
                                  : 10;
    default:
        return QPlatformIntegration::styleHint(hint);
    }
}

QPlatformWindow *Integration::createPlatformWindow(QWindow *window) const
{
    return new PlatformWindow(window);
}

QPlatformBackingStore *Integration::createPlatformBackingStore(QWindow *window) const
{
    return new BackingStore(window, m_panel->pictureFormat());
}

QAbstractEventDispatcher *Integration::createEventDispatcher() const
{
    return createUnixEventDispatcher();
}

QPlatformFontDatabase *Integration::fontDatabase() const
{
    return m_fontDatabase.get();
}

QPlatformInputContext *Integration::inputContext() const
{
    return m_inputContext.get();
}

} // namespace lindenreed::device
