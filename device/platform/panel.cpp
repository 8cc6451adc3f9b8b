#include "panel.h"

#include "light.h"
#include "lookup.h"

#include <algorithm>
#include <cstring>

namespace lindenreed::device {

namespace {

/// Where the neighbours of a screen pixel lie in the panel's memory.
struct Steps
{
    std::ptrdiff_t right; ///< bytes to the pixel right of it on the screen
    std::ptrdiff_t down; ///< bytes to the pixel below it on the screen
};

/// Pixels are taken in squares of this side: turned by a quarter, a row of the screen is a column of the
/// panel, and a whole column would touch a new cache line with each pixel.
constexpr int tile = 64;

template <typename CopyRow>
void forEachRowOfTiles(const QSize &size, bool rowsStayRows, CopyRow copyRow)
{
    const int tileWidth = rowsStayRows ? size.width() : tile;
    for (int left = 0; left < size.width(); left += tileWidth) {
        const int width = std::min(tileWidth, size.width() - left);
        for (int y = 0; y < size.height(); ++y)
            copyRow(left, y, width);
    }
}

bool isUnchanging(const ToneTable &table)
{
    for (std::size_t grey = 0; grey < table.size(); ++grey) {
        if (table[grey] != grey)
            return false;
    }
    return true;
}

} // namespace

std::unique_ptr<Panel> Panel::create(const Profile &profile, const QString &path, QString *error)
{
    const remote::PanelShape shape{profile.panelSize, profile.colourMask != 0, profile.levels, profile.dpi};
    std::unique_ptr<remote::PanelWriter> writer = remote::PanelWriter::create(shape, path, error);
    if (!writer)
        return nullptr;
    return std::unique_ptr<Panel>(new Panel(profile, std::move(writer)));
}

Panel::Panel(const Profile &profile, std::unique_ptr<remote::PanelWriter> writer)
    : m_writer(std::move(writer))
    , m_panelSize(profile.panelSize)
    , m_levels(profile.levels)
    , m_turning(profile.panelSize, 0)
{
    setInverted(false);
}

QImage::Format Panel::pictureFormat() const
{
    return isColour() ? QImage::Format_RGB32 : QImage::Format_Grayscale8;
}

void Panel::setOrientation(int orientation)
{
    m_turning = Turning(m_panelSize, orientation);
}

void Panel::setInverted(bool inverted)
{
    m_allTones = toneTable(m_levels, inverted);
    m_twoTones = toneTable(2, inverted);
}

void Panel::begin()
{
    m_writer->beginWrite();
}

std::uint8_t *Panel::at(const QPoint &screenPixel)
{
    const QPoint pixel = m_turning.toPanel(screenPixel);
    return m_writer->pixels() + std::ptrdiff_t(pixel.y()) * std::ptrdiff_t(m_writer->stride())
        + std::ptrdiff_t(pixel.x()) * m_writer->bytesPerPixel();
}

void Panel::copy(const QImage &picture, const QPoint &origin, const QRect &area, Tones tones)
{
    if (area.isEmpty())
        return;
    Q_ASSERT(picture.format() == pictureFormat() && picture.rect().translated(origin).contains(area));

    const QPoint zero = m_turning.toPanel(QPoint(0, 0));
    const QPoint right = m_turning.toPanel(QPoint(1, 0)) - zero;
    const QPoint down = m_turning.toPanel(QPoint(0, 1)) - zero;
    const auto stride = std::ptrdiff_t(m_writer->stride());
    const int bytesPerPixel = m_writer->bytesPerPixel();
    const Steps steps{right.y() * stride + right.x() * bytesPerPixel,
                      down.y() * stride + down.x() * bytesPerPixel};
    const bool rowsStayRows = right.y() == 0;

    std::uint8_t *const corner = at(area.topLeft());
    const QPoint source = area.topLeft() - origin;
    const ToneTable &table = tones == Tones::All ? m_allTones : m_twoTones;

    if (bytesPerPixel == 1) {
        const bool unchanging = isUnchanging(table);
        forEachRowOfTiles(area.size(), rowsStayRows, [&](int left, int y, int width) {
            const uchar *from = picture.constScanLine(source.y() + y) + source.x() + left;
            std::uint8_t *to = corner + y * steps.down + left * steps.right;
            if (rowsStayRows) { // or stand on their heads
                const auto bytes = std::size_t(width);
                std::uint8_t *const first = steps.right > 0 ? to : to - (width - 1);
                if (steps.right > 0)
                    std::memcpy(first, from, bytes);
                else
                    std::reverse_copy(from, from + width, first);
                if (!unchanging)
                    pixels::lookUp({first, bytes, 1, bytes, 1}, table);
                return;
            }
            for (int x = 0; x < width; ++x, to += steps.right)
                *to = table[from[x]];
        });
        return;
    }

    forEachRowOfTiles(area.size(), rowsStayRows, [&](int left, int y, int width) {
        const void *row = picture.constScanLine(source.y() + y);
        const auto *from = static_cast<const QRgb *>(row) + source.x() + left;
        std::uint8_t *to = corner + y * steps.down + left * steps.right;
        if (tones == Tones::Two) {
            for (int x = 0; x < width; ++x, to += steps.right)
                to[0] = to[1] = to[2] = table[std::size_t(qGray(from[x]))];
            return;
        }
        for (int x = 0; x < width; ++x, to += steps.right) {
            to[0] = table[std::size_t(qRed(from[x]))];
            to[1] = table[std::size_t(qGreen(from[x]))];
            to[2] = table[std::size_t(qBlue(from[x]))];
        }
    });
}

void Panel::fill(const QRect &area)
{
    const QRect onPanel = m_turning.toPanel(area);
    const std::size_t bytes = std::size_t(onPanel.width()) * std::size_t(m_writer->bytesPerPixel());
    std::uint8_t *row = m_writer->pixels() + std::ptrdiff_t(onPanel.y()) * std::ptrdiff_t(m_writer->stride())
        + std::ptrdiff_t(onPanel.x()) * m_writer->bytesPerPixel();
    for (int y = 0; y < onPanel.height(); ++y, row += m_writer->stride())
        std::memset(row, m_allTones[255], bytes);
}

quint64 Panel::finish(RefreshMode mode, const QRect &area)
{
    const QRect onPanel = m_turning.toPanel(area);
    m_refreshMode = mode;
    ++m_refreshNumber;
    remote::PanelHeader &header = m_writer->header();
    header.refreshMode = std::uint32_t(mode);
    header.refreshNumber = m_refreshNumber;
    header.x = onPanel.x();
    header.y = onPanel.y();
    header.refreshWidth = onPanel.width();
    header.refreshHeight = onPanel.height();
    end();
    return m_refreshNumber;
}

void Panel::describe(const Screen &screen, const Light &light)
{
    remote::PanelHeader &header = m_writer->header();
    header.orientation = std::uint32_t(m_turning.orientation());
    header.flags
        = (screen.inverted() ? 1U : 0U) | (screen.panelType() != 0 ? 2U : 0U) | (light.enabled() ? 4U : 0U);
    header.brightness = std::uint32_t(light.brightness());
    header.colour = std::uint32_t(light.colour());
}

void Panel::end()
{
    m_writer->endWrite();
}

} // namespace lindenreed::device
