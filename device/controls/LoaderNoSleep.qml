// A loader of screens, menus and messages. What it loads is something that the user waits for: until it is there, and
// for a whole idle time after, the device does not fall asleep.
import QtQuick
import com.lindenreed.controls

Loader {
    id: loader

    onStatusChanged: {
        if (status === Loader.Loading || status === Loader.Ready)
            SleepDelay.renew()
    }

    Timer {
        interval: 10000 // shorter than any idle time
        repeat: true
        running: loader.status === Loader.Loading
        onTriggered: SleepDelay.renew()
    }
}
