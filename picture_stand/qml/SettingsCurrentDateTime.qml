// Whether a show tells the date and the time, and the way to how it does.
import QtQuick 2.12
import com.lindenreed.picture_stand 1.0

SettingsCreatedDateTime {
    shownKey: "current_date_show"
    switchIcon: "desktop_app_calendar"
    switchTitle: qsTr("@Show_panel_time")
}
