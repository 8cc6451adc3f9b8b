// The device as one object.

#pragma once

#include "events.h"
#include "font_record.h"
#include "light.h"
#include "media.h"
#include "power.h"
#include "profile.h"
#include "screen.h"
#include "timers.h"
#include "viewer.h"

#include <QList>

#include <optional>

namespace lindenreed::device {

/// The one device of this process. Main thread. Made by start(), gone after stop().
///
/// Setters called after stop() through the SDK do nothing; what any thread may call (Facts, texts, theme,
/// log) does not need it.
class Device
{
public:
    const Profile profile; ///< first: the others are made from it

    /// Fills Facts, loads texts (for the language of the device configuration) and theme. Texts are visible
    /// to qsTr() where an application object exists. A second start is an error of the caller.
    /// False, with one sentence in `error`, where the theme cannot be used.
    static bool start(const Profile &profile, QString *error = nullptr);
    static void stop();
    static Device *instance(); ///< null before start and after stop

    Screen screen;
    Light light;
    Power power;
    Timers timers;
    Media media;
    Events events;
    Viewer viewer;

    std::optional<int> previousOrientation; ///< that the task before this one left, where it is known
    int localizationType = 0; ///< kind of localisation that this device was built for
    int customizedPartner = 0; ///< the partner that this device was made for
    std::optional<QList<FontRecord>> fonts; ///< in place of the system's

private:
    explicit Device(const Profile &profile);
    void postMediaEvent(Medium medium);
};

} // namespace lindenreed::device
