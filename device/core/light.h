// The frontlight.

#pragma once

#include <QObject>
#include <QString>

#include <memory>

namespace lindenreed::device {

class Backlight;

/// A light that keeps the values it is given, and passes its brightness on to the machine's backlight where
/// it has one. Levels are 0 to 100, others are clamped. Main thread.
class Light : public QObject
{
    Q_OBJECT

public:
    /// `backlight` is the backlight's folder, empty for none. One that cannot be used is told in the log and
    /// passed over. A device without a light has one that is off and stays off: levels 0, nothing automatic.
    explicit Light(const QString &backlight = QString(), bool present = true);
    ~Light() override;

    int brightness() const { return m_brightness; }
    int colour() const { return m_colour; } ///< 0 coldest, 100 warmest
    bool brightnessAuto() const { return m_brightnessAuto; }
    bool colourAuto() const { return m_colourAuto; }
    bool enabled() const { return m_enabled; }

    void setBrightness(int level);
    void setColour(int level);
    void setBrightnessAuto(bool on);
    void setColourAuto(bool on);
    void setEnabled(bool on);
    void reset(); ///< as after the start of a light that is in memory

signals:
    void changed();

private:
    template <typename T>
    void set(T &member, T value);

    const bool m_present;
    std::unique_ptr<Backlight> m_backlight;
    int m_brightness;
    int m_colour;
    bool m_brightnessAuto = false;
    bool m_colourAuto = false;
    bool m_enabled;
};

} // namespace lindenreed::device
