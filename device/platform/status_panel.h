// The status panel at the top of the screen.

#pragma once

#include "status_drawing.h"
#include "surface.h"

#include <QObject>
#include <QTimer>

namespace lindenreed::device {

class Composition;
class Device;

/// Shows time, light, media and battery while the device's panel type is not 0, and draws itself anew only
/// when one of them shows differently. Main thread.
class StatusPanel : public QObject, public Surface
{
    Q_OBJECT

public:
    /// Both must outlive it.
    StatusPanel(const Device &device, Composition &composition, QImage::Format format);
    ~StatusPanel() override;

    bool isShown() const { return m_shown; }
    const StatusValues &values() const { return m_values; } ///< as they are drawn

    QRect screenRectangle() const override;
    const QImage &picture() const override { return m_picture; }

private:
    void followGeometry();
    void look();
    void waitForNextMinute();

    const Device &m_device;
    Composition &m_composition;
    QImage::Format m_format;
    StatusValues m_values;
    QImage m_picture;
    QTimer m_minute;
    bool m_shown = false;
};

} // namespace lindenreed::device
