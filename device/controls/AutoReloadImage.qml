// A picture from a file or a provider. One from a file is read again when the file changes; with any other source this
// is a plain Image.
import QtQuick
import com.lindenreed.controls

Image {
    id: auto_reload_image

    FileReloader {
        image: auto_reload_image
        source: auto_reload_image.source
    }
}
