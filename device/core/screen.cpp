#include "screen.h"

#include "facts.h"
#include "turned_size.h"

#include <QThread>

namespace lindenreed::device {

Screen::Screen(const Profile &profile)
    : m_panelSize(profile.panelSize)
    , m_statusHeight(profile.statusHeight)
{
    facts().width = m_panelSize.width();
    facts().height = m_panelSize.height();
    facts().inverted = false;
}

void Screen::setOrientation(int orientation)
{
    Q_ASSERT(QThread::currentThread() == thread());
    if (orientation < 0 || orientation > 3 || orientation == m_orientation)
        return;
    m_orientation = orientation;
    facts().width = size().width();
    facts().height = size().height();
    emit geometryChanged();
}

QSize Screen::size() const
{
    return turnedSize(m_panelSize, m_orientation);
}

void Screen::setPanelType(int type)
{
    if (type == m_panelType)
        return;
    m_panelType = type;
    emit geometryChanged();
}

void Screen::setInverted(bool inverted)
{
    if (inverted == m_inverted)
        return;
    m_inverted = inverted;
    facts().inverted = inverted;
    emit inversionChanged();
}

void Screen::clear()
{
    emit cleared();
}

void Screen::refresh(RefreshMode mode, const QRect &area)
{
    const QRect whole(QPoint(), size());
    const QRect wanted = area.isEmpty() ? whole : area & whole;
    if (!wanted.isEmpty())
        emit refreshWanted(mode, wanted);
}

void Screen::useFastMode(const QRect &area)
{
    const QRect wanted = area & QRect(QPoint(), size());
    if (!wanted.isEmpty())
        emit fastModeWanted(wanted);
}

void Screen::setUpdateMode(int mode)
{
    if (mode == 1 || mode == 2)
        emit nextDrawingWanted(RefreshMode::Partial);
    else if (mode == 5)
        emit nextDrawingWanted(RefreshMode::Full);
}

void Screen::setFastUpdates(bool fast)
{
    m_fastUpdates = fast;
}

void Screen::reset()
{
    setOrientation(0);
    setPanelType(1);
    setInverted(false);
    setUpdateMode(1);
    setFastUpdates(false);
}

} // namespace lindenreed::device
