// A picture from a file or a provider.
//
// On this device a picture's URL always names the same picture while it shows: what changes is its source, which every
// Image follows by itself. So this is a plain Image under the name that screens use.
import QtQuick

Image {
}
