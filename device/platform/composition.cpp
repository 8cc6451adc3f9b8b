#include "composition.h"

#include "light.h"
#include "panel.h"

#include <QCoreApplication>
#include <QEvent>

#include <algorithm>
#include <utility>

namespace lindenreed::device {

namespace {

const QEvent::Type composeEvent = QEvent::Type(QEvent::registerEventType());

} // namespace

Composition::Composition(Panel &panel, const Screen &screen, const Light &light)
    : m_panel(panel)
    , m_screen(screen)
    , m_light(light)
{
    m_fastRest.setSingleShot(true);
    m_fastRest.setInterval(fastModeRest);
    connect(&m_fastRest, &QTimer::timeout, this, [this] {
        if (!m_fingerDown)
            endFastMode();
    });
    m_drawingPatience.setSingleShot(true);
    m_drawingPatience.setInterval(drawingPatience);
    connect(&m_drawingPatience, &QTimer::timeout, this, &Composition::post);
    m_clearedPatience.setSingleShot(true);
    m_clearedPatience.setInterval(clearedPatience);

    connect(&screen, &Screen::geometryChanged, this, &Composition::followGeometry);
    connect(&screen, &Screen::inversionChanged, this, &Composition::followInversion);
    connect(&screen, &Screen::cleared, this, &Composition::clear);
    connect(&screen, &Screen::refreshWanted, this, &Composition::refresh);
    connect(&screen, &Screen::fastModeWanted, this, &Composition::startFastMode);
    connect(&screen, &Screen::nextDrawingWanted, this,
            [this](RefreshMode mode) { m_nextDrawingFull = mode == RefreshMode::Full; });
    connect(&light, &Light::changed, this, [this] {
        m_panel.begin();
        m_panel.describe(m_screen, m_light);
        m_panel.end();
    });

    m_panel.begin();
    takeStateOfScreen();
    m_panel.end();
}

QRect Composition::wholeScreen() const
{
    return QRect(QPoint(0, 0), m_screen.size());
}

qsizetype Composition::topFor(const Surface &surface) const
{
    if (surface.staysOnTop())
        return m_surfaces.size();
    const auto onTop = std::find_if(m_surfaces.cbegin(), m_surfaces.cend(),
                                    [](const Surface *each) { return each->staysOnTop(); });
    return onTop - m_surfaces.cbegin();
}

void Composition::addOnTop(Surface *surface)
{
    m_surfaces.insert(topFor(*surface), surface);
    damage(surface->screenRectangle());
}

void Composition::remove(Surface *surface)
{
    if (m_surfaces.removeOne(surface))
        damage(surface->screenRectangle());
}

void Composition::raise(Surface *surface)
{
    const qsizetype before = m_surfaces.indexOf(surface);
    if (before < 0)
        return;
    m_surfaces.removeAt(before);
    const qsizetype top = topFor(*surface);
    m_surfaces.insert(top, surface);
    if (top != before)
        damage(surface->screenRectangle());
}

void Composition::lower(Surface *surface)
{
    if (m_surfaces.isEmpty() || m_surfaces.constFirst() == surface || !m_surfaces.removeOne(surface))
        return;
    m_surfaces.prepend(surface);
    damage(surface->screenRectangle());
}

void Composition::setStatusPanel(Surface *surface)
{
    if (surface == m_statusPanel)
        return;
    for (const Surface *each : {std::exchange(m_statusPanel, surface), surface}) {
        if (each)
            damage(each->screenRectangle());
    }
}

void Composition::cover(const QImage &picture)
{
    m_cover = picture;
    m_coverIsNew = true;
    refresh(RefreshMode::Full, wholeScreen());
}

Surface *Composition::topmostAt(const QPoint &screenPixel) const
{
    if (m_statusPanel && m_statusPanel->screenRectangle().contains(screenPixel))
        return m_statusPanel;
    for (auto surface = m_surfaces.crbegin(); surface != m_surfaces.crend(); ++surface) {
        if ((*surface)->screenRectangle().contains(screenPixel))
            return *surface;
    }
    return nullptr;
}

void Composition::damage(const QRegion &region)
{
    const QRegion onScreen = region & wholeScreen();
    if (onScreen.isEmpty())
        return;
    m_damage += onScreen;
    if (onScreen.intersects(m_fastArea))
        m_fastRest.start();
    post();
}

bool Composition::isPending() const
{
    return !isHeld()
        && (m_composePosted || !m_damage.isEmpty() || m_fastRest.isActive() || m_clearedPatience.isActive());
}

void Composition::setInForeground(bool inForeground)
{
    m_inForeground = inForeground;
    if (inForeground)
        refresh(RefreshMode::Full, wholeScreen());
}

void Composition::setFingerDown(bool down)
{
    m_fingerDown = down;
    if (!down && !m_fastArea.isEmpty() && !m_fastRest.isActive())
        endFastMode();
}

void Composition::followGeometry()
{
    m_fastArea = QRect(); // of a screen that is no longer there
    m_cover = QImage();
    m_damage = QRegion();
    m_drawingPatience.start();
    damage(wholeScreen());
}

void Composition::followInversion()
{
    refresh(RefreshMode::Full, wholeScreen());
}

void Composition::clear()
{
    if (!m_inForeground)
        return;
    // What was drawn before is wiped out with the rest.
    m_damage = QRegion();
    m_fullWanted = false;
    m_fastArea = QRect();
    m_cover = QImage();
    m_statusPanelWiped = true;
    m_cleared = wholeScreen();
    m_clearedPatience.start();

    m_panel.begin();
    takeStateOfScreen();
    m_panel.fill(wholeScreen());
    const quint64 number = m_panel.finish(RefreshMode::Full, wholeScreen());
    emit refreshed(number, m_panel.turning().toPanel(wholeScreen()), RefreshMode::Full);
}

void Composition::refresh(RefreshMode mode, const QRect &area)
{
    if (mode == RefreshMode::Fast) {
        startFastMode(area);
        return;
    }
    if (mode == RefreshMode::Full)
        m_fullWanted = true;
    damage(area);
}

void Composition::startFastMode(const QRect &area)
{
    // What leaves the rectangle comes back in all levels.
    const QRegion before = std::exchange(m_fastArea, area);
    damage((before - area) + area);
}

void Composition::endFastMode()
{
    m_fastIsOver = true;
    damage(std::exchange(m_fastArea, QRect()));
}

bool Composition::isDrawingAwaited() const
{
    return m_drawingPatience.isActive()
        && std::any_of(m_surfaces.cbegin(), m_surfaces.cend(),
                       [](const Surface *each) { return each->awaitsDrawing(); });
}

void Composition::post()
{
    // After everything else that is waiting now, so that all drawing of this turn of the loop is in it.
    if (!std::exchange(m_composePosted, true))
        QCoreApplication::postEvent(this, new QEvent(composeEvent), Qt::LowEventPriority);
}

bool Composition::event(QEvent *event)
{
    if (event->type() != composeEvent)
        return QObject::event(event);
    m_composePosted = false;
    compose();
    return true;
}

void Composition::takeStateOfScreen()
{
    m_panel.setOrientation(m_screen.orientation());
    m_panel.setInverted(m_screen.inverted());
    m_panel.describe(m_screen, m_light);
}

void Composition::compose()
{
    if (m_damage.isEmpty() || isHeld())
        return;
    if (isDrawingAwaited())
        return; // what a window showed before has no place on this screen; its drawing comes, or the time
                // runs out
    m_drawingPatience.stop();
    if (std::exchange(m_nextDrawingFull, false)) {
        m_fullWanted = true;
        m_damage = wholeScreen();
    }
    if (std::exchange(m_statusPanelWiped, false) && m_statusPanel)
        m_damage += m_statusPanel->screenRectangle();
    const bool full = std::exchange(m_fullWanted, false);
    const bool fastIsOver = std::exchange(m_fastIsOver, false);
    if (full) {
        m_fastArea = QRect();
        m_fastRest.stop();
        if (!std::exchange(m_coverIsNew, false) && !m_cover.isNull()) {
            m_cover = QImage();
            m_damage = wholeScreen();
        }
    } else if (m_screen.fastUpdates() && m_panel.isColour() && !fastIsOver) {
        m_fastArea |= m_damage.boundingRect();
        m_fastRest.start();
    }
    QRegion rest = std::exchange(m_damage, QRegion());
    m_cleared = (m_cleared - rest) & wholeScreen();
    if (m_cleared.isEmpty())
        m_clearedPatience.stop();
    const QRect bounds = rest.boundingRect();

    m_panel.begin();
    takeStateOfScreen();
    const auto take = [&](const Surface &surface) {
        const QRegion covered = rest & surface.screenRectangle();
        copy(surface, covered);
        rest -= covered;
    };
    if (!m_cover.isNull()) {
        for (const QRect &area : std::exchange(rest, QRegion()))
            m_panel.copy(m_cover, QPoint(0, 0), area, Tones::All);
    }
    if (m_statusPanel && !rest.isEmpty())
        take(*m_statusPanel);
    for (auto surface = m_surfaces.crbegin(); surface != m_surfaces.crend() && !rest.isEmpty(); ++surface)
        take(**surface);
    for (const QRect &paper : rest)
        m_panel.fill(paper);
    const RefreshMode mode = full     ? RefreshMode::Full
        : m_fastArea.contains(bounds) ? RefreshMode::Fast
                                      : RefreshMode::Partial;
    const quint64 number = m_panel.finish(mode, bounds);
    emit refreshed(number, m_panel.turning().toPanel(bounds), mode);
}

void Composition::copy(const Surface &surface, const QRegion &region)
{
    const QImage &picture = surface.picture();
    const QPoint origin = surface.screenRectangle().topLeft();
    const QRegion drawn = region & picture.rect().translated(origin);
    for (const QRect &area : drawn &m_fastArea)
        m_panel.copy(picture, origin, area, Tones::Two);
    for (const QRect &area : drawn - m_fastArea)
        m_panel.copy(picture, origin, area, Tones::All);
    for (const QRect &missing : region - drawn)
        m_panel.fill(missing);
}

} // namespace lindenreed::device
