// The list of playlists: rows, roles, resets, signals.

#include "meta_object_lines.h"
#include "playlist_fixture.h"

#include <QAbstractItemModelTester>

using namespace Qt::StringLiterals;

namespace {

const QString logSource = u"picture_stand/src/datastorage"_s;

} // namespace

class tst_PlaylistModel : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<PlaylistFixture>(); }
    void cleanup() { m_test.reset(); }

    void theMetaObjectIsInOrder();
    void theStoreIsOne();
    void aNewModelHasTheOverview();
    void noPlaylists();
    void rolesHaveNamesAndValues();
    void placesWithoutDataAreInvalid();
    void titlesStayAsTheyAre_data();
    void titlesStayAsTheyAre();
    void refreshingResetsOnce();
    void refreshingSatisfiesTheModelTester();
    void addingAPlaylistResetsTwice();
    void deletingAPlaylistResetsTwice();
    void renamingAPlaylistResetsTwiceAndCountsOnce();
    void renamingAnUnknownPlaylistStillResets();
    void aFailedWriteStillResets();
    void changesOfTheStoreArrive();
    void severalModelsShareTheStore();
    void settersNotifyOnChangeOnly();

private:
    std::unique_ptr<PlaylistFixture> m_test;
};

void tst_PlaylistModel::theMetaObjectIsInOrder()
{
    const QMetaObject &meta = PlaylistModel::staticMetaObject;
    QCOMPARE(meta.className(), "PlaylistModel");
    QCOMPARE(meta.superClass(), &QAbstractListModel::staticMetaObject);

    const QByteArrayList expected{
        "signal void activeIdChanged() ",
        "signal void modeChanged() ",
        "signal void countChanged() ",
        "slot void refreshData() ",
        "slot qlonglong addItem(QString) name",
        "slot void deleteItem(qlonglong) id",
        "slot void editItem(qlonglong,QString) id,name",
        "slot QString getImage(int,int) playlistId,index",
        "slot void addImagesToPlaylist(QStringList) images",
        "slot void deleteImages(qlonglong,QStringList) id,images",
        "slot void deleteImage(qlonglong,QString) id,image",
        "slot int getIndexById(qlonglong) id",
        "slot QStringList getImagesById(qlonglong) id",
        "slot void openImage(QString) path",
        "slot bool hasImage(qlonglong,QString) id,image",
        "slot QString getImagesAddedMessage() ",
        "slot bool hasExistsImage(qlonglong) id",
        "slot int countExistsImages(QStringList) list",
    };
    QCOMPARE(methodLines(meta), expected);
    QVERIFY(meta.method(meta.indexOfMethod("countExistsImages(QStringList)")).isConst());

    QCOMPARE(propertyLines(meta),
             QByteArrayList({"activeId qlonglong rw activeIdChanged", "mode PlaylistMode rw modeChanged",
                             "count int r countChanged"}));

    QCOMPARE(enumeratorLines(meta),
             QByteArrayList({"Roles TitleRole 0", "Roles IdRole 257", "Roles CountRole 258",
                             "Roles CountExistsRole 259", "PlaylistMode ViewMode 0", "PlaylistMode AddMode 1",
                             "PlaylistMode CreateMode 2", "PlaylistMode AllViewMode 3"}));
}

void tst_PlaylistModel::theStoreIsOne()
{
    QCOMPARE(&DataStorage::instance(), &DataStorage::instance());
    QVERIFY(!DataStorage::instance().parent());
}

void tst_PlaylistModel::aNewModelHasTheOverview()
{
    DataStorage::instance().addPlaylist(u"Lake"_s);
    const PlaylistModel model;
    QCOMPARE(model.activeId(), -1LL);
    QCOMPARE(model.mode(), PlaylistModel::AllViewMode);
    QCOMPARE(model.count(), 1);
    QVERIFY(!model.parent());
}

void tst_PlaylistModel::noPlaylists()
{
    QCOMPARE(m_test->model->count(), 0);
    QCOMPARE(m_test->model->rowCount(), 0);
    QCOMPARE(m_test->model->getIndexById(1), -1);
    QCOMPARE(m_test->model->getImagesById(1), QStringList());
    QCOMPARE(m_test->model->getImage(1, 0), QString());
    QVERIFY(!m_test->model->hasExistsImage(1));
    QVERIFY(!m_test->model->hasImage(1, QString()));
    QVERIFY(!cell(*m_test->model, 0, PlaylistModel::TitleRole).isValid());
}

void tst_PlaylistModel::rolesHaveNamesAndValues()
{
    const qlonglong id = m_test->model->addItem(u"@DefaultPlaylist"_s);
    m_test->model->setActiveId(id);
    m_test->model->addImagesToPlaylist(
        {m_test->picture(u"a.jpg"_s), m_test->picture(u"b.jpg"_s, false), m_test->picture(u"c.jpg"_s)});

    const QHash<int, QByteArray> names{
        {0, "title"}, {257, "playlist_id"}, {258, "count"}, {259, "count_exists"}};
    QCOMPARE(m_test->model->roleNames(), names);
    QCOMPARE(cell(*m_test->model, 0, 0), QVariant(u"@DefaultPlaylist"_s));
    QCOMPARE(cell(*m_test->model, 0, Qt::DisplayRole), QVariant(u"@DefaultPlaylist"_s));
    QCOMPARE(cell(*m_test->model, 0, 257), QVariant::fromValue<qlonglong>(id));
    QCOMPARE(cell(*m_test->model, 0, 258), QVariant(3));
    QCOMPARE(cell(*m_test->model, 0, 259), QVariant(2));
    QCOMPARE(cell(*m_test->model, 0, 257).metaType(), QMetaType::fromType<qlonglong>());
    QCOMPARE(cell(*m_test->model, 0, 258).metaType(), QMetaType::fromType<int>());
    QCOMPARE(cell(*m_test->model, 0, 259).metaType(), QMetaType::fromType<int>());
}

void tst_PlaylistModel::placesWithoutDataAreInvalid()
{
    m_test->model->addItem(u"Lake"_s);
    const QModelIndex last = m_test->model->index(0, 0);
    for (int role : {Qt::EditRole + 0, 256, 260, -1})
        QVERIFY(!m_test->model->data(last, role).isValid());
    QVERIFY(!m_test->model->data(QModelIndex(), PlaylistModel::TitleRole).isValid());
    QVERIFY(!cell(*m_test->model, -1, PlaylistModel::TitleRole).isValid());
    QVERIFY(!cell(*m_test->model, 1, PlaylistModel::TitleRole).isValid());
    QVERIFY(!m_test->model
                 ->data(m_test->model->index(m_test->model->getIndexById(-1), 0), PlaylistModel::TitleRole)
                 .isValid());
    // An index that was valid before the row went.
    QVERIFY(m_test->model->data(last, PlaylistModel::TitleRole).isValid());
    m_test->model->deleteItem(1);
    QVERIFY(!m_test->model->data(last, PlaylistModel::TitleRole).isValid());
    // Rows have no children, and yet the count does not ask for the parent.
    m_test->model->addItem(u"Lake"_s);
    QCOMPARE(m_test->model->rowCount(m_test->model->index(0, 0)), 1);
}

void tst_PlaylistModel::titlesStayAsTheyAre_data()
{
    QTest::addColumn<QString>("title");

    QTest::newRow("a conversion") << u"%s %n %d %%"_s;
    QTest::newRow("markup") << u"<b>Lake</b>"_s;
    QTest::newRow("quotes") << u"Anna's \"best\""_s;
    QTest::newRow("outside the first plane") << u"\U0001F3D6 Strand"_s;
    QTest::newRow("a key") << u"@DefaultPlaylist"_s;
    QTest::newRow("empty") << u""_s;
    QTest::newRow("long") << QString(5000, u'w');
}

void tst_PlaylistModel::titlesStayAsTheyAre()
{
    QFETCH(QString, title);

    const qlonglong id = m_test->model->addItem(title);
    QCOMPARE(cell(*m_test->model, 0, PlaylistModel::TitleRole).toString(), title);
    m_test->model->editItem(id, u"another"_s);
    QCOMPARE(cell(*m_test->model, 0, PlaylistModel::TitleRole).toString(), u"another"_s);
    m_test->model->editItem(id, title);
    QCOMPARE(cell(*m_test->model, 0, PlaylistModel::TitleRole).toString(), title);
}

void tst_PlaylistModel::refreshingResetsOnce()
{
    PlaylistSignals log(m_test->model.get());
    QVERIFY(stored_database::execute({u"INSERT INTO playlists VALUES(8, 'Lake')"_s}));
    m_test->model->refreshData();
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"reset 1"_s, u"count 1"_s}));
    QCOMPARE(m_test->model->getIndexById(8), 0);
}

void tst_PlaylistModel::refreshingSatisfiesTheModelTester()
{
    const QAbstractItemModelTester tester(m_test->model.get(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QVERIFY(stored_database::execute(
        {u"INSERT INTO playlists VALUES(8, 'Lake')"_s, u"INSERT INTO playlists VALUES(9, 'Wood')"_s}));
    m_test->model->refreshData();
    QCOMPARE(m_test->model->count(), 2);
    QVERIFY(stored_database::execute({u"DELETE FROM playlists"_s}));
    m_test->model->refreshData();
    QCOMPARE(m_test->model->count(), 0);
}

void tst_PlaylistModel::addingAPlaylistResetsTwice()
{
    PlaylistSignals log(m_test->model.get());
    const qlonglong id = m_test->model->addItem(u"Lake"_s);
    QCOMPARE(log.taken(),
             QStringList({u"about"_s, u"about"_s, u"reset 1"_s, u"count 1"_s, u"reset 1"_s, u"count 1"_s}));
    QCOMPARE(m_test->model->getIndexById(id), 0);
    QCOMPARE(m_test->model->getImagesById(id), QStringList());
    QCOMPARE(m_test->model->activeId(), -1LL);
}

void tst_PlaylistModel::deletingAPlaylistResetsTwice()
{
    const qlonglong lake = m_test->model->addItem(u"Lake"_s);
    const qlonglong wood = m_test->model->addItem(u"Wood"_s);
    PlaylistSignals log(m_test->model.get());
    m_test->model->deleteItem(lake);
    QCOMPARE(log.taken(),
             QStringList({u"about"_s, u"about"_s, u"reset 1"_s, u"count 1"_s, u"reset 1"_s, u"count 1"_s}));
    QCOMPARE(m_test->model->getIndexById(lake), -1);
    QCOMPARE(m_test->model->getIndexById(wood), 0);
}

void tst_PlaylistModel::renamingAPlaylistResetsTwiceAndCountsOnce()
{
    const qlonglong id = m_test->model->addItem(u"Lake"_s);
    PlaylistSignals log(m_test->model.get());
    m_test->model->editItem(id, u"Wood"_s);
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"about"_s, u"reset 1"_s, u"count 1"_s, u"reset 1"_s}));
    QCOMPARE(cell(*m_test->model, 0, PlaylistModel::TitleRole).toString(), u"Wood"_s);
}

void tst_PlaylistModel::renamingAnUnknownPlaylistStillResets()
{
    m_test->model->addItem(u"Lake"_s);
    PlaylistSignals log(m_test->model.get());
    m_test->model->editItem(99, u"Wood"_s);
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"about"_s, u"reset 1"_s, u"count 1"_s, u"reset 1"_s}));
    QCOMPARE(stored_database::rows(u"SELECT title FROM playlists"_s), QStringList(u"Lake"_s));
}

void tst_PlaylistModel::aFailedWriteStillResets()
{
    QVERIFY(stored_database::execute(
        {u"CREATE TRIGGER refuse BEFORE INSERT ON playlists BEGIN SELECT RAISE(ABORT, 'refused'); END"_s}));
    PlaylistSignals log(m_test->model.get());
    QCOMPARE(m_test->model->addItem(u"Lake"_s), -1LL);
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"reset 0"_s, u"count 0"_s}));
    QCOMPARE(m_test->output->logLines(logSource).size(), 1);
    QVERIFY(stored_database::execute({u"DROP TRIGGER refuse"_s}));
}

void tst_PlaylistModel::changesOfTheStoreArrive()
{
    PlaylistSignals log(m_test->model.get());
    DataStorage::instance().addPlaylist(u"Lake"_s);
    QCOMPARE(m_test->model->count(), 1); // at once, not with the next turn of the loop
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"reset 1"_s, u"count 1"_s}));
}

void tst_PlaylistModel::severalModelsShareTheStore()
{
    auto other = std::make_unique<PlaylistModel>();
    other->addItem(u"Lake"_s);
    QCOMPARE(m_test->model->count(), 1);
    other.reset();
    m_test->model->addItem(u"Wood"_s);
    QCOMPARE(m_test->model->count(), 2);
}

void tst_PlaylistModel::settersNotifyOnChangeOnly()
{
    PlaylistSignals log(m_test->model.get());
    m_test->model->setActiveId(-1);
    m_test->model->setMode(PlaylistModel::AllViewMode);
    QCOMPARE(log.taken(), QStringList());
    QVERIFY(m_test->model->setProperty("activeId", 1LL << 40));
    QCOMPARE(log.taken(), QStringList(u"active 1099511627776"_s));
    QVERIFY(m_test->model->setProperty("mode", PlaylistModel::CreateMode));
    QCOMPARE(log.taken(), QStringList(u"mode 2"_s));
    m_test->model->setActiveId(1LL << 40);
    m_test->model->setMode(PlaylistModel::CreateMode);
    QCOMPARE(log.taken(), QStringList());
    m_test->model->addItem(u"Lake"_s);
    QCOMPARE(m_test->model->activeId(), 1LL << 40);
    QCOMPARE(m_test->model->mode(), PlaylistModel::CreateMode);
}

QTEST_GUILESS_MAIN(tst_PlaylistModel)
#include "tst_playlist_model.moc"
