// Size, turning and refreshing of the screen, without any window.

#pragma once

#include "profile.h"

#include <QObject>
#include <QRect>
#include <QSize>

namespace lindenreed::device {

enum class RefreshMode { Partial = 0, Full = 1, Fast = 2 };

/// Holds what the screen is like and says what is wanted of it; the platform plug-in listens and draws.
/// Main thread. All rectangles are in screen pixels: as the user holds the device, status panel included.
class Screen : public QObject
{
    Q_OBJECT

public:
    explicit Screen(const Profile &profile);

    /// How far the picture is turned clockwise on the glass: 0 is 0°, 1 is 90°, 2 is 270°, 3 is 180°.
    int orientation() const { return m_orientation; }
    /// Sizes follow before it returns, the windows in the event loop. Codes other than 0 to 3 are ignored.
    void setOrientation(int orientation);
    QSize size() const; ///< as turned now, status panel included

    int panelType() const { return m_panelType; } ///< of the status panel: 0 hidden, else shown
    void setPanelType(int type);
    int statusHeight() const { return m_statusHeight; } ///< of the status panel, also while it is hidden

    bool inverted() const { return m_inverted; }
    void setInverted(bool inverted);

    void clear(); ///< the whole panel white at once, as a full refresh
    void refresh(RefreshMode mode, const QRect &area = {}); ///< an empty area is the whole screen
    void useFastMode(const QRect &area);
    /// 1, 2: the next drawing is a partial refresh, on grey and on colour; 5: it is a full one.
    void setUpdateMode(int mode);
    /// On a colour panel every drawing shows two levels first, and all of them when it has come to rest.
    void setFastUpdates(bool fast);
    bool fastUpdates() const { return m_fastUpdates; }

    void reset(); ///< as after the start

signals:
    void geometryChanged(); ///< size, orientation or the status panel
    void inversionChanged();
    void cleared();
    void refreshWanted(lindenreed::device::RefreshMode mode, QRect area);
    void fastModeWanted(QRect area);
    void nextDrawingWanted(lindenreed::device::RefreshMode mode);

private:
    QSize m_panelSize;
    int m_statusHeight;
    int m_orientation = 0;
    int m_panelType = 1;
    bool m_inverted = false;
    bool m_fastUpdates = false;
};

} // namespace lindenreed::device
