// A loader of screens, menus and messages.
//
// The device sleeps by nobody's hand but the power settings', never in the middle of building a screen. So this is a
// plain Loader under the name that screens use.
import QtQuick

Loader {
}
