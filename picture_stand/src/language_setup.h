// The device's language, as an environment variable.

#pragma once

namespace lindenreed::picture_stand {

/**
 * Sets LANG to what the device's alias file has for the device's language.
 *
 * Without such a line LANG stays as the process inherited it. To be called before the application object
 * exists and before any other thread: Qt takes the locale from the environment.
 */
void setUpLanguage();

} // namespace lindenreed::picture_stand
