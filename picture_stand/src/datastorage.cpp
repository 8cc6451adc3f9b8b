#include "datastorage.h"

#include <slateview.h>

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include <array>
#include <initializer_list>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int errorLevel = 2;
constexpr const char *sourcePath = "picture_stand/src/datastorage"; // as logs have always named it
constexpr const char *databasePath = "/mnt/ext1/system/picture_stand.sqlite";
constexpr const char *photoFolder = "/mnt/ext1/Photo/";

constexpr int globalScope = -1;
constexpr int localizationWithoutPlaylist = 4;
constexpr int partnerWithOwnPictures = 21;

// Each statement is one text, which can be searched for.
// clang-format off
constexpr std::array schema = {
    "CREATE TABLE IF NOT EXISTS playlists(id INTEGER PRIMARY KEY, title TEXT)"_L1,
    "CREATE TABLE IF NOT EXISTS playlist_images (id INTEGER PRIMARY KEY, url TEXT, playlist INTEGER REFERENCES playlists(id))"_L1,
    "CREATE TABLE IF NOT EXISTS settings(id INTEGER PRIMARY KEY, name TEXT, value TEXT, playlist INTEGER)"_L1,
};

// A known pair of name and playlist keeps its row's id.
constexpr auto replaceSetting = "INSERT OR REPLACE INTO settings(id, name, value, playlist)VALUES((SELECT id FROM settings WHERE name = :name AND playlist = :playlist), :name, :value, :playlist);"_L1;
// clang-format on

constexpr const char *firstSettings
    = "INSERT OR IGNORE INTO settings (id, name, value, playlist) VALUES(1, 'change_picture_time', '30', -1),"
      "(2, 'change_picture_time_index', '0', -1),(3, 'shuffle', '0', -1),(4, 'display_mode', '1', -1),"
      "(5, 'created_date_show', '1', -1),(6, 'created_date_position', '2', -1),"
      "(7, 'created_date_font', 'default', -1),(8, 'created_date_font_is_bold', '0', -1),"
      "(9, 'created_date_font_is_italic', '0', -1),(10, 'current_date_show', '0', -1),"
      "(11, 'current_date_position', '0', -1),(12, 'current_date_font', 'default', -1),"
      "(13, 'current_date_font_is_bold', '0', -1),(14, 'current_date_font_is_italic', '0', -1),"
      "(15, 'is_first_run', '1', -1),(16, 'frontlight_brightness', '0', -1),"
      "(17, 'frontlight_brightness_auto', '0', -1),(18, 'frontlight_smartlight', '0', -1),"
      "(19, 'frontlight_smartlight_auto', '0', -1),(20, 'frontlight_enabled', '0', -1);";

QStringList standardPictures()
{
    return {u"01.jpg"_s, u"02.jpg"_s, u"03.jpg"_s, u"04.jpg"_s, u"05.jpg"_s,
            u"06.jpg"_s, u"07.jpg"_s, u"08.jpg"_s, u"09.jpg"_s, u"10.jpg"_s};
}

QStringList partnerPictures()
{
    return {u"meadow-A2.png"_s,     u"meadow-B1.png"_s,     u"meadow-B2.png"_s,     u"meadow-C.png"_s,
            u"harbour-view1.png"_s, u"harbour-view2.png"_s, u"harbour-view3.png"_s, u"harbour-view4.png"_s,
            u"harbour-view5.png"_s, u"backdrop-R7_1.png"_s, u"backdrop-R7_2.png"_s, u"backdropWideM1.png"_s,
            u"backdropWideM2.png"_s};
}

// Text columns hold text: a null string would be written as NULL, and a NULL path is never found again.
QVariant text(const QString &value)
{
    return value.isNull() ? QVariant(u""_s) : QVariant(value);
}

QVariant number(long long value)
{
    return QVariant::fromValue<qlonglong>(value);
}

using Values = std::initializer_list<std::pair<QString, QVariant>>;

bool run(QSqlQuery &query, const QString &statement, Values values)
{
    query.prepare(statement); // a statement that cannot be prepared fails in exec()
    for (const auto &[name, value] : values)
        query.bindValue(name, value, QSql::In);
    return query.exec();
}

} // namespace

DataStorage::DataStorage(QObject *parent)
    : QObject(parent)
    , m_database(QSqlDatabase::addDatabase(u"QSQLITE"_s, u"qt_sql_default_connection"_s))
{
    m_database.setDatabaseName(QString::fromLatin1(databasePath));
    if (!m_database.open()) {
        lr_print_log2(errorLevel, sourcePath, __LINE__, "DataStorage::DataStorage(QObject *)",
                      "Failed to open database %s", databasePath);
    }
    createScheme();
}

DataStorage &DataStorage::instance()
{
    static DataStorage storage(nullptr);
    return storage;
}

void DataStorage::createScheme()
{
    for (const QLatin1StringView statement : schema) {
        if (!execute(statement)) {
            lr_print_log2(errorLevel, sourcePath, __LINE__, "void DataStorage::createScheme()",
                          "Error creating tables [%s]", errorText().c_str());
        }
    }

    QSqlQuery query;
    if (!run(query, u"SELECT COUNT(*) FROM settings"_s, {})) {
        lr_print_log2(errorLevel, sourcePath, __LINE__, "void DataStorage::createScheme()",
                      "Error performing select settings request. [%s]", errorText().c_str());
    }
    if (query.next() && query.value(0).toLongLong() == 0)
        seed();
}

// The settings come last: they are the mark of a database that has been filled.
void DataStorage::seed()
{
    if (GetSoftwareLocalizationType() != localizationWithoutPlaylist) {
        const long long id = addPlaylist(u"@DefaultPlaylist"_s);
        const bool ownPictures = GetCustomizedPartner() == partnerWithOwnPictures;
        // Files are not looked at here: they may come later, and the playlists count what is there.
        for (const QString &name : ownPictures ? partnerPictures() : standardPictures())
            addImageToPlayList(id, QString::fromLatin1(photoFolder) + name);
    }

    if (!execute(QString::fromLatin1(firstSettings))) {
        lr_print_log2(errorLevel, sourcePath, __LINE__, "void DataStorage::createScheme()",
                      "Error insert into [%s]", errorText().c_str());
    }
}

long long DataStorage::addPlaylist(const QString &title)
{
    QSqlQuery query;
    if (!run(query, u"INSERT INTO playlists (title) VALUES (:title)"_s, {{u":title"_s, text(title)}})) {
        lr_print_log2(errorLevel, sourcePath, __LINE__, "long long DataStorage::addPlaylist(const QString &)",
                      "Error performing addPlaylistItem request. [%s]", errorText().c_str());
        return -1;
    }
    emit changed();
    return query.lastInsertId().toLongLong();
}

bool DataStorage::addImageToPlayList(long long playlist, QString url)
{
    QSqlQuery existing;
    if (!run(existing, u"SELECT id FROM playlist_images WHERE playlist = :playlist AND url = :url"_s,
             {{u":url"_s, text(url)}, {u":playlist"_s, number(playlist)}})) {
        lr_print_log2(errorLevel, sourcePath, __LINE__,
                      "bool DataStorage::addImageToPlayList(long long, QString)",
                      "Error performing getPlaylistItems request. [%s]", errorText().c_str());
    }
    if (existing.next())
        return false;

    QSqlQuery query;
    if (run(query, u"INSERT INTO playlist_images (url, playlist) VALUES (:url, :playlist)"_s,
            {{u":url"_s, text(url)}, {u":playlist"_s, number(playlist)}})) {
        emit changed();
    } else {
        lr_print_log2(errorLevel, sourcePath, __LINE__,
                      "bool DataStorage::addImageToPlayList(long long, QString)",
                      "Error performing addImageToPlayList request. [%s]", errorText().c_str());
    }
    return true; // tells that the picture was new, which is what callers count
}

void DataStorage::deleteImageFromPlayList(long long playlist, QString url)
{
    QSqlQuery query;
    if (!run(query, u"DELETE FROM playlist_images WHERE playlist = :id AND url = :url"_s,
             {{u":id"_s, number(playlist)}, {u":url"_s, text(url)}})) {
        lr_print_log2(errorLevel, sourcePath, __LINE__,
                      "void DataStorage::deleteImageFromPlayList(long long, QString)",
                      "Error performing removeImageFromPlayList request. [%s]", errorText().c_str());
    }
    emit changed();
}

void DataStorage::updatePlaylist(long long id, const QString &title)
{
    QSqlQuery query;
    if (!run(query, u"UPDATE playlists SET title = :title WHERE id = :id"_s,
             {{u":title"_s, text(title)}, {u":id"_s, number(id)}})) {
        lr_print_log2(errorLevel, sourcePath, __LINE__,
                      "void DataStorage::updatePlaylist(long long, const QString &)",
                      "Error performing updatePlaylistItem request. [%s]", errorText().c_str());
    }
    emit changed();
}

// Foreign keys are off, so the pictures go by hand. Settings of the playlist stay: a later playlist with its
// id has them.
void DataStorage::deletePlaylist(long long id)
{
    QSqlQuery query;
    if (!run(query, u"DELETE FROM playlists WHERE id = :id"_s, {{u":id"_s, number(id)}})) {
        lr_print_log2(errorLevel, sourcePath, __LINE__, "void DataStorage::deletePlaylist(long long)",
                      "Error performing deletePlaylistItem request. [%s]", errorText().c_str());
    }
    if (!run(query, u"DELETE FROM playlist_images WHERE playlist = :id"_s, {{u":id"_s, number(id)}})) {
        lr_print_log2(errorLevel, sourcePath, __LINE__, "void DataStorage::deletePlaylist(long long)",
                      "Error performing removeImageFromPlayList request. [%s]", errorText().c_str());
    }
    emit changed();
}

std::vector<DataStorage::Playlists> DataStorage::getPlaylists()
{
    constexpr const char *signature = "std::vector<DataStorage::Playlists> DataStorage::getPlaylists()";

    QSqlQuery playlistQuery;
    QSqlQuery imageQuery;
    playlistQuery.prepare(u"SELECT id, title FROM playlists"_s);
    imageQuery.prepare(u"SELECT url FROM playlist_images WHERE playlist = :id ORDER BY url"_s);

    if (!playlistQuery.exec()) {
        lr_print_log2(errorLevel, sourcePath, __LINE__, signature,
                      "Error performing getPlaylistItems request. [%s]", errorText().c_str());
    }

    std::vector<Playlists> playlists;
    while (playlistQuery.next()) {
        Playlists playlist{playlistQuery.value(0).toLongLong(), playlistQuery.value(1).toString(), {}};
        imageQuery.bindValue(u":id"_s, number(playlist.id), QSql::In);
        if (!imageQuery.exec()) {
            lr_print_log2(errorLevel, sourcePath, __LINE__, signature,
                          "Error performing getPlaylistImages request. [%s]", errorText().c_str());
        }
        while (imageQuery.next())
            playlist.images.append(imageQuery.value(0).toString());
        playlists.push_back(std::move(playlist));
    }
    return playlists;
}

QString DataStorage::getSetting(QString name, int playlist)
{
    QSqlQuery query;
    if (!run(query, u"SELECT value FROM settings WHERE playlist = :playlist AND name = :name"_s,
             {{u":name"_s, text(name)}, {u":playlist"_s, playlist}})) {
        lr_print_log2(errorLevel, sourcePath, __LINE__, "QString DataStorage::getSetting(QString, int)",
                      "Error performing getPlaylistItems request. [%s]", errorText().c_str());
    }
    if (query.next())
        return query.value(0).toString();
    if (playlist != globalScope)
        return getSetting(name, globalScope);
    return {};
}

void DataStorage::setSetting(QString name, QString value, int playlist)
{
    QSqlQuery query;
    if (!run(query, replaceSetting,
             {{u":name"_s, text(name)}, {u":value"_s, text(value)}, {u":playlist"_s, playlist}})) {
        lr_print_log2(errorLevel, sourcePath, __LINE__, "void DataStorage::setSetting(QString, QString, int)",
                      "Error performing setSetting request. [%s]", errorText().c_str());
    }
}

// Of all ways to run a statement only this one leaves its error on the connection, where errorText() looks. A
// database that is not open leaves none at all.
bool DataStorage::execute(const QString &statement)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    m_database.exec(statement);
    QT_WARNING_POP
    return m_database.isOpen() && m_database.lastError().type() == QSqlError::NoError;
}

// Errors of prepared statements stay with their query, so after those the text may be empty.
std::string DataStorage::errorText() const
{
    return m_database.lastError().databaseText().toStdString();
}
