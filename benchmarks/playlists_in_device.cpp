// What the benchmark "playlists" measures: "overview FOLDER PLAYLISTS" or "add ROWS PICTURES". Runs in a
// device; writes its medians as JSON.

#include "on_panel.h"
#include "stored_database.h"

using namespace Qt::StringLiterals;
using namespace lindenreed;
using namespace lindenreed::benchmarks;

namespace {

void fill(const QStringList &statements)
{
    if (!stored_database::execute(statements))
        qFatal("The database cannot be filled.");
}

/// Playlists of 100 of the folder's pictures, each with first pictures of its own, in place of all others.
void overview(const RunningApp &running, const QString &folder, int playlists, Medians &medians)
{
    constexpr int pages = 12;
    fill({u"DELETE FROM playlist_images"_s, u"DELETE FROM playlists"_s,
          u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
          "INSERT INTO playlists(id, title) SELECT i, 'Playlist ' || i FROM n"_s.arg(playlists),
          u"WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 99) "
          "INSERT INTO playlist_images(url, playlist) "
          "SELECT '%1/' || printf('%05d', id * 4 + i) || '.jpg', id FROM n, playlists"_s.arg(folder)});

    const OnPanel panel(running, medians);
    running.app.changeView(u"select_photos"_s);
    panel.open([&running] {
        running.playlists()->refreshData();
        running.app.changeView(u"playlists"_s);
    });
    panel.turnPages(pages);
}

/// The store's statements on a connection of their own. What is read is kept: a read whose strings are thrown
/// away one by one stays in the processor's cache and is not the one that is needed.
class BareDatabase
{
public:
    BareDatabase()
        : m_database(QSqlDatabase::addDatabase(u"QSQLITE"_s, u"bare"_s))
    {
        m_database.setDatabaseName(stored_database::path);
        if (!m_database.open())
            qFatal("The database cannot be opened.");
    }

    void commit() { run(u"INSERT INTO playlist_images(url, playlist) VALUES('bare', -1)"_s); }
    void forget() { run(u"DELETE FROM playlist_images WHERE playlist = -1"_s); }
    void lookUp() ///< whether a picture is new: a search of the whole table
    {
        run(u"SELECT id FROM playlist_images WHERE playlist = 2 AND url = 'bare'"_s);
    }
    void readAll()
    {
        QSqlQuery playlists(m_database);
        QSqlQuery pictures(m_database);
        playlists.setForwardOnly(true);
        pictures.setForwardOnly(true);
        pictures.prepare(u"SELECT url FROM playlist_images WHERE playlist = ? ORDER BY url"_s);
        playlists.exec(u"SELECT id, title FROM playlists"_s);
        QStringList paths;
        while (playlists.next()) {
            pictures.bindValue(0, playlists.value(0));
            pictures.exec();
            while (pictures.next())
                paths.append(pictures.value(0).toString());
        }
    }

private:
    void run(const QString &statement)
    {
        QSqlQuery query(m_database);
        if (!query.exec(statement))
            qFatal("%s", qPrintable(query.lastError().text()));
        query.next();
    }

    QSqlDatabase m_database;
};

template <typename Work>
double msOf(const Work &work)
{
    QElapsedTimer clock;
    clock.start();
    work();
    return double(clock.nsecsElapsed()) * 1e-6;
}

/// Adds the pictures in ten portions; the bare costs are taken after each, with as many rows as there are by
/// then.
void add(const RunningApp &running, int rows, int pictures, Medians &medians)
{
    constexpr int portions = 10;
    constexpr int bareTimes = 10;
    fill({u"DELETE FROM playlist_images"_s, u"DELETE FROM playlists"_s,
          u"INSERT INTO playlists(id, title) VALUES(1, 'Old'), (2, 'New')"_s,
          u"WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < %1) "
          "INSERT INTO playlist_images(url, playlist) "
          "SELECT '/mnt/ext1/Old/' || printf('%05d', i) || '.jpg', 1 FROM n WHERE i < %1"_s.arg(rows)});
    running.playlists()->refreshData();
    running.playlists()->setActiveId(2);
    running.app.changeView(u"select_photos"_s);
    Refreshes().settle(200);

    BareDatabase bare;
    double added = 0;
    double committed = 0;
    double read = 0;
    double lookedUp = 0;
    for (int portion = 0; portion < portions; ++portion) {
        QStringList paths;
        for (int i = portion * pictures / portions; i < (portion + 1) * pictures / portions; ++i)
            paths.append(u"/mnt/ext1/New/%1.jpg"_s.arg(i, 5, 10, QLatin1Char('0')));
        added += msOf([&] { running.playlists()->addImagesToPlaylist(paths); }) / pictures;
        for (int i = 0; i < bareTimes; ++i) {
            committed += msOf([&] { bare.commit(); }) / (portions * bareTimes);
            read += msOf([&] { bare.readAll(); }) / (portions * bareTimes);
            lookedUp += msOf([&] { bare.lookUp(); }) / (portions * bareTimes);
            bare.forget();
        }
    }
    medians.add(u"ms"_s, added);
    medians.add(u"commit_ms"_s, committed);
    medians.add(u"read_ms"_s, read);
    medians.add(u"look_up_ms"_s, lookedUp);
    medians.add(u"ours_percent"_s, 100 * (added / (committed + read) - 1));
}

void measure(const RunningApp &running, const QStringList &arguments, Medians &medians)
{
    if (arguments.value(0) == u"overview")
        overview(running, arguments.value(1), arguments.value(2).toInt(), medians);
    else
        add(running, arguments.value(1).toInt(), arguments.value(2).toInt(), medians);
}

} // namespace

int main(int argc, char *argv[])
{
    return measureApp(argc, argv, measure);
}
