// A settings row with a switch. It only tells that it was pressed: whoever owns the value turns it round.
import QtQuick
import com.lindenreed.controls

SettingsRow {
    id: settings_switcher

    property bool switch_value: false

    trailingWidth: sign.width

    Accessible.checkable: true
    Accessible.checked: switch_value
    Accessible.role: Accessible.CheckBox
    Accessible.onToggleAction: activate()

    SwitchSign {
        id: sign

        checked: settings_switcher.switch_value
        ink: settings_switcher.ink
        paper: settings_switcher.paper
        x: settings_switcher.width - settings_switcher.sidePadding - width
        y: Math.round((settings_switcher.height - height) / 2)
    }
}
