// A window on the device's screen.

#pragma once

#include "surface.h"

#include <qpa/qplatformwindow.h>

#include <memory>

namespace lindenreed::device {

class Composition;
class PlatformScreen;

/// An opaque rectangle below the status panel. Qt owns it.
///
/// A top-level window keeps its place relative to the corner of the available geometry and is moved inside
/// where it fits; maximised and full-screen windows fill the available geometry. It lies on the panel from
/// its first drawing until it is hidden.
class PlatformWindow final : public QPlatformWindow, public Surface
{
public:
    explicit PlatformWindow(QWindow *window);
    ~PlatformWindow() override;

    void initialize() override;
    void setGeometry(const QRect &rectangle) override;
    QRect normalGeometry() const override { return m_normalGeometry; }
    void setVisible(bool visible) override;
    void setWindowState(Qt::WindowStates states) override;
    void raise() override;
    void lower() override;
    bool isExposed() const override { return m_visible; }
    bool isActive() const override;
    void requestActivateWindow() override;
    WId winId() const override { return m_id; }

    QRect screenRectangle() const override;
    const QImage &picture() const override;
    bool staysOnTop() const override;
    bool awaitsDrawing() const override { return m_awaitsDrawing; }

    /// The window's part `region` (its own coordinates) was drawn into the picture.
    void showDrawing(const std::shared_ptr<const QImage> &picture, const QRegion &region);
    /// The available geometry has changed; `before` is where its corner was.
    void followScreen(const QPoint &before);

private:
    PlatformScreen *platformScreen() const;
    Composition &composition() const;
    QRect placed(const QRect &wanted) const;
    bool fillsScreen() const;
    bool takesFocus() const;
    void leavePanel();

    const WId m_id;
    Qt::WindowStates m_states = Qt::WindowNoState;
    QRect m_normalGeometry;
    std::shared_ptr<const QImage> m_picture;
    bool m_visible = false;
    bool m_onPanel = false;
    bool m_awaitsDrawing = false; ///< since the screen turned, or its status panel came or went
};

} // namespace lindenreed::device
