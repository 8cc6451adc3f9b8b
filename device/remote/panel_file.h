// The panel as a file that other processes map: the only code that knows its layout.

#pragma once

#include <QByteArray>
#include <QImage>
#include <QRect>
#include <QSize>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

namespace lindenreed::remote {

/// First bytes of the panel file. One writer, any number of readers.
struct PanelHeader
{
    char magic[8]; ///< "SLATEPNL"
    std::uint32_t version; ///< 1; another number: do not read on
    std::uint32_t format; ///< 1: one byte of grey a pixel, 2: three bytes R, G, B
    std::uint32_t width, height; ///< panel pixels, never turned
    std::uint32_t stride; ///< bytes from row to row, a multiple of 64
    std::uint32_t levels; ///< 16 or 256 per channel
    std::uint32_t dpi;
    std::uint32_t orientation; ///< how far the picture is turned clockwise: 0, 1 (90°), 2 (270°), 3 (180°)
    std::uint32_t flags; ///< 1 inverted, 2 status panel shown, 4 light on
    std::uint32_t brightness, colour; ///< of the light, 0 to 100
    std::uint32_t sequence; ///< odd while a write is under way
    std::uint32_t refreshMode; ///< 0 partial, 1 full, 2 fast
    std::uint32_t reserved;
    std::uint64_t refreshNumber; ///< last complete refresh
    std::int32_t x, y, refreshWidth, refreshHeight;
};
static_assert(sizeof(PanelHeader) == 88);

inline constexpr std::size_t panelPixelsOffset = 4096;

/// What a panel is like; set once.
struct PanelShape
{
    QSize size; ///< panel pixels, never turned
    bool colour = false;
    int levels = 16;
    int dpi = 212;
};

/// The one writer. Without a path the panel is in memory and nobody else sees it. Main thread.
class PanelWriter
{
public:
    /// Makes the file under another name, allocated to its full length and white, and renames it to `path`.
    /// Null, with one sentence in `error`, where that fails.
    static std::unique_ptr<PanelWriter> create(const PanelShape &shape, const QString &path, QString *error);
    ~PanelWriter(); ///< takes the file away
    PanelWriter(const PanelWriter &) = delete;
    PanelWriter &operator=(const PanelWriter &) = delete;

    std::uint8_t *pixels(); ///< first row; height * stride bytes, 1 or 3 bytes a pixel
    std::size_t stride() const;
    int bytesPerPixel() const;

    void beginWrite(); ///< pixels and header may change until endWrite
    PanelHeader &header();
    void endWrite();

private:
    PanelWriter() = default;
    struct Mapping;
    std::unique_ptr<Mapping> m_mapping;
};

/// A copy of the panel at one moment.
struct PanelSnapshot
{
    PanelHeader header;
    QImage glass; ///< Format_Grayscale8 or Format_RGB888, panel pixels, never turned

    QImage upright() const; ///< as the user sees it
};

/// Reads a consistent copy. Nothing, with one sentence in `error`, for a missing file, a foreign one, another
/// version, or a device that stays busy for 100 tries.
std::optional<PanelSnapshot> readPanel(const QString &path, QString *error);

} // namespace lindenreed::remote
