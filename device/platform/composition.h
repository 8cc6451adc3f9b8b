// Puts what lies on the screen onto the panel.

#pragma once

#include "screen.h"
#include "surface.h"

#include <QList>
#include <QObject>
#include <QRegion>
#include <QTimer>

namespace lindenreed::device {

class Light;
class Panel;

/// Collects what was drawn and makes one refresh of it for each turn of the event loop.
///
/// A refresh copies, from the topmost surface down, the part of the damaged region that each one covers,
/// straight into the panel; what nothing covers is white. Follows the orders of the device's screen. Main
/// thread.
class Composition : public QObject
{
    Q_OBJECT

public:
    /// How long nothing may have been drawn in the fast rectangle before it comes back in all levels.
    static constexpr std::chrono::milliseconds fastModeRest{250};
    /// How long a window that has another geometry may keep the panel waiting for its drawing.
    static constexpr std::chrono::milliseconds drawingPatience{500};
    /// How long a cleared panel counts as one that is about to be drawn: twice what a program takes that
    /// turns its screen. One that stays white for good is at rest as well.
    static constexpr std::chrono::milliseconds clearedPatience{1000};

    /// All three must outlive it.
    Composition(Panel &panel, const Screen &screen, const Light &light);

    void addOnTop(Surface *surface); ///< below those alone that stay on top
    void remove(Surface *surface);
    void raise(Surface *surface);
    void lower(Surface *surface);
    /// Lies above all others; null takes it away.
    void setStatusPanel(Surface *surface);
    /// Puts a picture as large as the screen, in the panel's picture format, over everything, as a full
    /// refresh. The next full refresh or turn of the screen takes it away.
    void cover(const QImage &picture);
    const QList<Surface *> &surfaces() const
    {
        return m_surfaces;
    } ///< bottom first, without the status panel
    Surface *topmostAt(const QPoint &screenPixel) const; ///< null where there is only paper

    void damage(const QRegion &region); ///< screen pixels that have to be composed anew
    /// A refresh is still to come.
    bool isPending() const;
    /// In the background the panel belongs to another task: nothing reaches it but a cover. The way back is a
    /// full refresh.
    void setInForeground(bool inForeground);
    void setFingerDown(bool down); ///< the fast mode stays while a finger is on the panel

signals:
    /// After each refresh; the rectangle is in panel pixels.
    void refreshed(quint64 number, QRect area, lindenreed::device::RefreshMode mode);

protected:
    bool event(QEvent *event) override;

private:
    QRect wholeScreen() const;
    qsizetype topFor(const Surface &surface) const;
    void followGeometry();
    void followInversion();
    void clear();
    void refresh(RefreshMode mode, const QRect &area);
    void startFastMode(const QRect &area);
    void endFastMode();
    bool isDrawingAwaited() const;
    void post();
    void compose();
    void copy(const Surface &surface, const QRegion &region);
    void takeStateOfScreen();
    bool isHeld() const { return !m_inForeground && !m_coverIsNew; }

    Panel &m_panel;
    const Screen &m_screen;
    const Light &m_light;
    QList<Surface *> m_surfaces;
    Surface *m_statusPanel = nullptr;
    QImage m_cover; ///< null: none
    QRegion m_damage;
    QRect m_fastArea; ///< empty: no fast mode
    QTimer m_fastRest;
    QTimer m_drawingPatience;
    QRegion m_cleared; ///< white, whatever lies there, until it is drawn anew
    QTimer m_clearedPatience; ///< stops when nothing is left of it
    bool m_coverIsNew = false; ///< the full refresh that comes is its own
    bool m_fullWanted = false; ///< the refresh that comes is a full one
    bool m_nextDrawingFull = false;
    bool m_fastIsOver = false; ///< the refresh that comes brings all levels back
    bool m_statusPanelWiped = false; ///< it comes back with the next drawing
    bool m_fingerDown = false;
    bool m_inForeground = true;
    bool m_composePosted = false;
};

} // namespace lindenreed::device
