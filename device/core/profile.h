// What kind of device this is: one JSON file of share/picture_stand/profiles.

#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

namespace lindenreed::device {

/// The hardware of one kind of reader. The defaults are those of "grey-6".
struct Profile
{
    QString name = QStringLiteral("grey-6");
    QSize panelSize{758, 1024}; ///< panel pixels, never turned
    int dpi = 212;
    int colourMask = 0; ///< 0: a grey panel
    int platformNumber = 0;
    bool touch = true;
    bool upsideDown = false; ///< orientation 3 can be used
    int statusHeight = 45; ///< of the status panel, in pixels
    bool frontlight = true;
    bool colourLight = false;
    int levels = 16; ///< 16 or 256 per channel
    std::optional<std::array<double, 16>>
        luminances; ///< of the levels, measured, rising; nothing: even levels
    QString backlight; ///< name below /sys/class/backlight; empty: the light is kept in memory

    /// Reads and checks one profile file, which has every member but "luminance" and "backlight". On failure
    /// nothing, with one sentence in `error`.
    static std::optional<Profile> read(const QString &path, QString *error);

    /// The profile `name` of a folder, with one sentence in `error` where there is none that can be used.
    static std::optional<Profile> named(const QString &folder, const QString &name, QString *error);

    /// What named() looks among, in the order of the alphabet.
    static QStringList names(const QString &folder);
};

} // namespace lindenreed::device
