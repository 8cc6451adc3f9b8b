// The glass: pixels on their way into the panel file.

#pragma once

#include "profile.h"
#include "screen.h"
#include "tone_table.h"
#include "turning.h"

#include <panel_file.h>

#include <QImage>
#include <QRect>

#include <memory>

namespace lindenreed::device {

class Light;

/// How many greys a part of the picture is shown in.
enum class Tones { All, Two };

/// Writes parts of the picture, turned and in the panel's levels, into the panel file. Main thread.
///
/// One refresh is begin(), any number of copy(), fill() and describe(), and finish(); a change without a
/// refresh ends with end() instead. Rectangles are screen pixels and must lie on the screen.
class Panel
{
public:
    /// With an empty `path` the panel is in memory. Null, with one sentence in `error`, where the file cannot
    /// be made.
    static std::unique_ptr<Panel> create(const Profile &profile, const QString &path, QString *error);

    const Turning &turning() const { return m_turning; }
    bool isColour() const { return m_writer->bytesPerPixel() > 1; }
    QImage::Format
    pictureFormat() const; ///< of what copy() takes: Format_Grayscale8, on colour panels Format_RGB32

    /// Take effect with the next refresh; what is on the glass stays as it is.
    void setOrientation(int orientation);
    void setInverted(bool inverted);

    void begin();
    /// Copies `area` of the screen from a picture whose upper left pixel is at `origin` of the screen. The
    /// picture must cover the area.
    void copy(const QImage &picture, const QPoint &origin, const QRect &area, Tones tones);
    void fill(const QRect &area); ///< with paper: white, black while inverted
    /// Ends the refresh of `area` and gives it the next number.
    quint64 finish(RefreshMode mode, const QRect &area);
    /// What the header tells beside the refreshes.
    void describe(const Screen &screen, const Light &light);
    void end();

    quint64 refreshNumber() const { return m_refreshNumber; } ///< of the last refresh, 0 before the first
    RefreshMode refreshMode() const { return m_refreshMode; } ///< of the last refresh

private:
    Panel(const Profile &profile, std::unique_ptr<remote::PanelWriter> writer);
    std::uint8_t *at(const QPoint &screenPixel);

    std::unique_ptr<remote::PanelWriter> m_writer;
    QSize m_panelSize;
    int m_levels;
    Turning m_turning;
    ToneTable m_allTones;
    ToneTable m_twoTones;
    quint64 m_refreshNumber = 0;
    RefreshMode m_refreshMode = RefreshMode::Partial;
};

} // namespace lindenreed::device
