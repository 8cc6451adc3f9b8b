// The frame's settings, as properties for the interface.

#pragma once

#include "frontlight_keeper.h"

#include <QObject>
#include <QString>

#include <array>
#include <variant>

namespace lindenreed::picture_stand {

/**
 * Fifteen settings that the interface binds to.
 *
 * Assigning one changes it here and notifies, when it really changed; saveConfig() writes it, loadConfig()
 * drops what was not written. With an active playlist all of them but isFirstRun are that playlist's. Values
 * are as stored, no range is checked. Also hands the frontlight over when the view "slideshow" comes and
 * goes. Main thread.
 */
class SettingsModel : public QObject
{
    Q_OBJECT
    // Moc writes the setters: compare, store, notify.
    Q_PROPERTY(bool isFirstRun MEMBER m_isFirstRun NOTIFY isFirstRunChanged)
    Q_PROPERTY(int change_picture_time MEMBER m_changePictureTime NOTIFY change_picture_timeChanged)
    Q_PROPERTY(
        int change_picture_time_index MEMBER m_changePictureTimeIndex NOTIFY change_picture_time_indexChanged)
    Q_PROPERTY(bool shuffle MEMBER m_shuffle NOTIFY shuffleChanged)
    Q_PROPERTY(int display_mode MEMBER m_displayMode NOTIFY display_modeChanged)
    Q_PROPERTY(bool created_date_show MEMBER m_createdDateShow NOTIFY created_date_showChanged)
    Q_PROPERTY(int created_date_position MEMBER m_createdDatePosition NOTIFY created_date_positionChanged)
    Q_PROPERTY(QString created_date_font MEMBER m_createdDateFont NOTIFY created_date_fontChanged)
    Q_PROPERTY(
        bool created_date_font_is_bold MEMBER m_createdDateFontIsBold NOTIFY created_date_font_is_boldChanged)
    Q_PROPERTY(bool created_date_font_is_italic MEMBER m_createdDateFontIsItalic NOTIFY
                   created_date_font_is_italicChanged)
    Q_PROPERTY(bool current_date_show MEMBER m_currentDateShow NOTIFY current_date_showChanged)
    Q_PROPERTY(int current_date_position MEMBER m_currentDatePosition NOTIFY current_date_positionChanged)
    Q_PROPERTY(QString current_date_font MEMBER m_currentDateFont NOTIFY current_date_fontChanged)
    Q_PROPERTY(
        bool current_date_font_is_bold MEMBER m_currentDateFontIsBold NOTIFY current_date_font_is_boldChanged)
    Q_PROPERTY(bool current_date_font_is_italic MEMBER m_currentDateFontIsItalic NOTIFY
                   current_date_font_is_italicChanged)

public:
    explicit SettingsModel(QObject *parent = nullptr);

    bool shuffle() const { return m_shuffle; }
    int changePictureTime() const { return m_changePictureTime; } ///< seconds

    /// Loads the settings of playlist `id`; -1: the common ones.
    void setActivePlaylist(int id);

signals:
    void shuffleChanged();
    void change_picture_timeChanged();
    void display_modeChanged();
    void created_date_showChanged();
    void created_date_positionChanged();
    void created_date_fontChanged();
    void created_date_font_is_boldChanged();
    void created_date_font_is_italicChanged();
    void current_date_showChanged();
    void current_date_positionChanged();
    void current_date_fontChanged();
    void current_date_font_is_boldChanged();
    void current_date_font_is_italicChanged();
    void change_picture_time_indexChanged();
    void isFirstRunChanged();

public slots:
    void onForeground(QString currentView);
    void onBackground(QString currentView);
    void changedView(QString currentView, QString prevView);
    void onExit(QString currentView);
    /// Writes the setting with this key ("is_first_run" for isFirstRun, "frontlight" for the light); an empty
    /// key writes all, an unknown one nothing.
    void saveConfig(QString property);
    void loadConfig();

private:
    /// One key of the store and where its value lives here.
    struct Setting
    {
        using Field = std::variant<bool SettingsModel::*, int SettingsModel::*, QString SettingsModel::*>;

        QLatin1StringView key;
        Field field;
        void (SettingsModel::*changed)();
        bool common = false; ///< the same for all playlists

        int scope(int playlist) const { return common ? -1 : playlist; }
    };
    static const std::array<Setting, 15> &settings();

    void enterLight();
    void leaveLight();

    FrontlightKeeper m_frontlight;
    bool m_shuffle = false;
    int m_changePictureTime = 0;
    int m_displayMode = 0;
    bool m_createdDateShow = false;
    int m_createdDatePosition = 0;
    QString m_createdDateFont;
    bool m_createdDateFontIsBold = false;
    bool m_createdDateFontIsItalic = false;
    bool m_currentDateShow = false;
    int m_currentDatePosition = 0;
    QString m_currentDateFont;
    bool m_currentDateFontIsBold = false;
    bool m_currentDateFontIsItalic = false;
    int m_changePictureTimeIndex = 0;
    bool m_isFirstRun = false;
    int m_playlist = -1;
};

} // namespace lindenreed::picture_stand
