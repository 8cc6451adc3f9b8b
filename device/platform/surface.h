// What lies on the screen.

#pragma once

#include <QImage>
#include <QRect>

namespace lindenreed::device {

/// An opaque rectangle of the screen with a picture. The composition only looks; whoever adds a surface
/// removes it.
class Surface
{
public:
    virtual ~Surface() = default;
    virtual QRect screenRectangle() const = 0; ///< screen pixels; may reach beyond the screen
    /// What it shows, from its upper left corner on, in the panel's picture format. May be smaller than the
    /// rectangle for a moment, or null; what is missing is white.
    virtual const QImage &picture() const = 0;
    virtual bool awaitsDrawing() const { return false; } ///< the picture is one of an earlier geometry
    virtual bool staysOnTop() const { return false; } ///< above all that do not
};

} // namespace lindenreed::device
