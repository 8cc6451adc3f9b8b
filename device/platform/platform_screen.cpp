#include "platform_screen.h"

#include "composition.h"
#include "platform_window.h"
#include "screen.h"

#include <QGuiApplication>
#include <qpa/qwindowsysteminterface.h>

#include <utility>

namespace lindenreed::device {

PlatformScreen::PlatformScreen(const Profile &profile, const Screen &screen, Composition &composition)
    : m_profile(profile)
    , m_screen(screen)
    , m_composition(composition)
    , m_available(PlatformScreen::availableGeometry())
{
}

QRect PlatformScreen::geometry() const
{
    return QRect(QPoint(0, 0), m_screen.size());
}

QRect PlatformScreen::availableGeometry() const
{
    const int taken = m_screen.panelType() != 0 ? m_screen.statusHeight() : 0;
    return geometry().adjusted(0, taken, 0, 0);
}

QSizeF PlatformScreen::physicalSize() const
{
    return QSizeF(m_screen.size()) * 25.4 / m_profile.dpi;
}

QDpi PlatformScreen::logicalDpi() const
{
    return {m_profile.dpi, m_profile.dpi};
}

Qt::ScreenOrientation PlatformScreen::orientation() const
{
    switch (m_screen.orientation()) {
    case 1:
        return Qt::LandscapeOrientation;
    case 2:
        return Qt::InvertedLandscapeOrientation;
    case 3:
        return Qt::InvertedPortraitOrientation;
    default:
        return Qt::PortraitOrientation;
    }
}

QWindow *PlatformScreen::topLevelAt(const QPoint &point) const
{
    const auto *top = dynamic_cast<const PlatformWindow *>(m_composition.topmostAt(point));
    return top ? top->window() : nullptr;
}

QList<PlatformWindow *> PlatformScreen::platformWindows() const
{
    QList<PlatformWindow *> windows;
    for (Surface *surface : m_composition.surfaces()) {
        if (auto *window = dynamic_cast<PlatformWindow *>(surface))
            windows.append(window);
    }
    return windows;
}

void PlatformScreen::followGeometry()
{
    const QRect before = std::exchange(m_available, availableGeometry());
    QWindowSystemInterface::handleScreenGeometryChange(screen(), geometry(), m_available);
    const QWindowList windows = QGuiApplication::allWindows();
    for (const QWindow *window : windows) {
        if (auto *platformWindow = static_cast<PlatformWindow *>(window->handle()))
            platformWindow->followScreen(before.topLeft());
    }
    QWindowSystemInterface::handleScreenOrientationChange(screen(), orientation());
}

} // namespace lindenreed::device
