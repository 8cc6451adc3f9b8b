// Hands the one frontlight over between the device and the show.

#pragma once

namespace lindenreed::picture_stand {

/**
 * Keeps the show's light apart from the light of the rest of the device.
 *
 * Entering the show is remember(), then applyStored(); leaving it is store(), then giveBack(). The show's
 * light lives in the store between runs, for all playlists alike. Main thread.
 */
class FrontlightKeeper
{
public:
    /// Notes the device's own light, unless the device still shows what it showed when the show was left
    /// last.
    void remember();
    /// Sets the device to the stored light.
    void applyStored();
    /// Stores the device's light as the show's.
    void store();
    /// Notes the device's light as the show's, then sets the light that remember() noted.
    void giveBack();

private:
    struct Light
    {
        int brightness = 0;
        bool brightness_auto = false;
        int smartlight = 0;
        bool smartlight_auto = false;
        bool enabled = false; ///< false until the record has been filled

        bool operator==(const Light &other) const = default;
    };

    static Light deviceLight();

    Light outside; ///< the device's own light
    Light inside; ///< the show's light when it was left last
};

} // namespace lindenreed::picture_stand
