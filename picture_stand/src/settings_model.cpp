#include "settings_model.h"

#include "datastorage.h"

#include <type_traits>

using namespace Qt::StringLiterals;

namespace lindenreed::picture_stand {

namespace {

template <typename Value>
Value fromText(const QString &text)
{
    if constexpr (std::is_same_v<Value, QString>)
        return text;
    else if constexpr (std::is_same_v<Value, bool>)
        return text.toInt() != 0;
    else
        return text.toInt();
}

QString toText(int value)
{
    return QString::number(value, 10);
}

QString toText(const QString &value)
{
    return value;
}

bool isShow(const QString &view)
{
    return view == "slideshow"_L1;
}

} // namespace

SettingsModel::SettingsModel(QObject *parent)
    : QObject(parent)
{
}

// In the order in which they are loaded and saved.
const std::array<SettingsModel::Setting, 15> &SettingsModel::settings()
{
    using Model = SettingsModel;
    static const std::array<Setting, 15> all{{
        {"change_picture_time"_L1, &Model::m_changePictureTime, &Model::change_picture_timeChanged},
        {"change_picture_time_index"_L1, &Model::m_changePictureTimeIndex,
         &Model::change_picture_time_indexChanged},
        {"shuffle"_L1, &Model::m_shuffle, &Model::shuffleChanged},
        {"display_mode"_L1, &Model::m_displayMode, &Model::display_modeChanged},
        {"created_date_show"_L1, &Model::m_createdDateShow, &Model::created_date_showChanged},
        {"created_date_position"_L1, &Model::m_createdDatePosition, &Model::created_date_positionChanged},
        {"created_date_font"_L1, &Model::m_createdDateFont, &Model::created_date_fontChanged},
        {"created_date_font_is_bold"_L1, &Model::m_createdDateFontIsBold,
         &Model::created_date_font_is_boldChanged},
        {"created_date_font_is_italic"_L1, &Model::m_createdDateFontIsItalic,
         &Model::created_date_font_is_italicChanged},
        {"current_date_show"_L1, &Model::m_currentDateShow, &Model::current_date_showChanged},
        {"current_date_position"_L1, &Model::m_currentDatePosition, &Model::current_date_positionChanged},
        {"current_date_font"_L1, &Model::m_currentDateFont, &Model::current_date_fontChanged},
        {"current_date_font_is_bold"_L1, &Model::m_currentDateFontIsBold,
         &Model::current_date_font_is_boldChanged},
        {"current_date_font_is_italic"_L1, &Model::m_currentDateFontIsItalic,
         &Model::current_date_font_is_italicChanged},
        {"is_first_run"_L1, &Model::m_isFirstRun, &Model::isFirstRunChanged, true},
    }};
    return all;
}

void SettingsModel::setActivePlaylist(int id)
{
    m_playlist = id;
    loadConfig();
}

void SettingsModel::onForeground(QString currentView)
{
    if (isShow(currentView))
        enterLight();
}

void SettingsModel::onBackground(QString currentView)
{
    if (isShow(currentView))
        leaveLight();
}

void SettingsModel::changedView(QString currentView, QString prevView)
{
    if (isShow(currentView))
        enterLight();
    else if (isShow(prevView))
        leaveLight();
}

void SettingsModel::onExit(QString currentView)
{
    if (isShow(currentView))
        leaveLight();
}

void SettingsModel::saveConfig(QString property)
{
    for (const Setting &setting : settings()) {
        if (!property.isEmpty() && property != setting.key)
            continue;
        const QString text = std::visit([this](auto field) { return toText(this->*field); }, setting.field);
        DataStorage::instance().setSetting(setting.key, text, setting.scope(m_playlist));
    }
    if (property.isEmpty() || property == "frontlight"_L1)
        m_frontlight.store();
}

void SettingsModel::loadConfig()
{
    for (const Setting &setting : settings()) {
        const QString text = DataStorage::instance().getSetting(setting.key, setting.scope(m_playlist));
        std::visit(
            [&](auto field) {
                auto &held = this->*field;
                const auto value = fromText<std::remove_reference_t<decltype(held)>>(text);
                if (held == value)
                    return;
                held = value;
                emit(this->*setting.changed)(); // before the next key is read
            },
            setting.field);
    }
}

void SettingsModel::enterLight()
{
    m_frontlight.remember();
    m_frontlight.applyStored();
}

void SettingsModel::leaveLight()
{
    saveConfig(u"frontlight"_s);
    m_frontlight.giveBack();
}

} // namespace lindenreed::picture_stand
