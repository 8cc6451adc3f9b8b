// The device's screen, as Qt sees it.

#pragma once

#include "profile.h"

#include <qpa/qplatformscreen.h>

namespace lindenreed::device {

class Composition;
class PlatformWindow;
class Screen;

/// The whole screen, as it is turned now; windows live below the status panel, in the available geometry.
/// Qt deletes it when the screen is removed.
class PlatformScreen final : public QPlatformScreen
{
public:
    PlatformScreen(const Profile &profile, const Screen &screen, Composition &composition);

    QRect geometry() const override;
    QRect availableGeometry() const override;
    int depth() const override { return 32; }
    /// Of pixmaps, on grey panels too: a grey one could not be transparent anywhere.
    QImage::Format format() const override { return QImage::Format_RGB32; }
    QSizeF physicalSize() const override;
    QDpi logicalDpi() const override;
    /// The same, so that Qt scales nothing and a pixel of QML is a pixel of the panel.
    QDpi logicalBaseDpi() const override { return logicalDpi(); }
    Qt::ScreenOrientation nativeOrientation() const override { return Qt::PortraitOrientation; }
    Qt::ScreenOrientation orientation() const override;
    QString name() const override { return m_profile.name; }
    SubpixelAntialiasingType subpixelAntialiasingTypeHint() const override { return Subpixel_None; }
    QWindow *topLevelAt(const QPoint &point) const override;

    Composition &composition() const { return m_composition; }
    QList<PlatformWindow *> platformWindows() const; ///< those that can be seen, bottom first
    /// Tells Qt and the windows that the screen turned or that the status panel came or went. The device has
    /// changed already; what the application sees follows in the event loop.
    void followGeometry();

private:
    const Profile &m_profile;
    const Screen &m_screen;
    Composition &m_composition;
    QRect m_available; ///< that the windows know
};

} // namespace lindenreed::device
