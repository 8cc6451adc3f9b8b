#include <datastorage.h>
#include <device.h>
#include <playlist_model.h>
#include <slateview_testing.h>
#include <stderr_capture.h>
#include <stored_database.h>

#include <QAbstractItemModelTester>
#include <QMetaEnum>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;

namespace {

const QString logSource = u"picture_stand/src/datastorage"_s;

/// Notes a model's signals in the order in which they come, with its count then.
class SignalLog : public QObject
{
public:
    explicit SignalLog(PlaylistModel *model)
    {
        connect(model, &PlaylistModel::modelAboutToBeReset, this, [this] { m_names.append(u"about"_s); });
        connect(model, &PlaylistModel::modelReset, this,
                [this, model] { m_names.append(u"reset %1"_s.arg(model->count())); });
        connect(model, &PlaylistModel::countChanged, this,
                [this, model] { m_names.append(u"count %1"_s.arg(model->count())); });
        connect(model, &PlaylistModel::activeIdChanged, this,
                [this, model] { m_names.append(u"active %1"_s.arg(model->activeId())); });
        connect(model, &PlaylistModel::modeChanged, this,
                [this, model] { m_names.append(u"mode %1"_s.arg(model->mode())); });
    }

    QStringList taken() { return std::exchange(m_names, {}); }

private:
    QStringList m_names;
};

QVariant cell(const PlaylistModel &model, int row, int role)
{
    return model.data(model.index(row, 0), role);
}

void make(const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

} // namespace

/// Each test starts without playlists and with a folder of its own for pictures.
class tst_PlaylistModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

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
    void addingPicturesReadsThePlaylistsEachTime();
    void addingPicturesGoesToTheActivePlaylist();
    void deletingPicturesGoesByTheirOrder();
    void deletingOnePicture();
    void changesOfTheStoreArrive();
    void severalModelsShareTheStore();

    void getImageSkipsVanishedFiles();
    void getImageWithoutAPicture_data();
    void getImageWithoutAPicture();
    void getImageComparesTheWholeId();
    void countsWithVanishedFiles();
    void foldersAndLinksCountAsTheyExist();
    void lookUpsByUnknownIds();
    void hasImageIsExact();
    void openImageHandsTheBytesOver_data();
    void openImageHandsTheBytesOver();
    void settersNotifyOnChangeOnly();

private:
    QString picture(const QString &name, bool there = true);

    std::unique_ptr<DeviceForTest> m_device;
    std::unique_ptr<StderrCapture> m_output;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<PlaylistModel> m_model;
};

void tst_PlaylistModel::init()
{
    m_device = std::make_unique<DeviceForTest>();
    DataStorage::instance();
    stored_database::hurry();
    QVERIFY(stored_database::execute({u"DELETE FROM playlists"_s, u"DELETE FROM playlist_images"_s}));
    m_output = std::make_unique<StderrCapture>();
    m_folder = std::make_unique<QTemporaryDir>(u"/mnt/ext1/pictures-XXXXXX"_s);
    QVERIFY(m_folder->isValid());
    m_model = std::make_unique<PlaylistModel>();
}

void tst_PlaylistModel::cleanup()
{
    m_model.reset();
    m_folder.reset();
    m_output.reset();
    m_device.reset();
}

/// A path in the test's folder, with a file or without.
QString tst_PlaylistModel::picture(const QString &name, bool there)
{
    const QString path = m_folder->filePath(name);
    if (there)
        make(path);
    return path;
}

void tst_PlaylistModel::theMetaObjectIsInOrder()
{
    const QMetaObject &meta = PlaylistModel::staticMetaObject;
    QCOMPARE(meta.className(), "PlaylistModel");
    QCOMPARE(meta.superClass(), &QAbstractListModel::staticMetaObject);

    QByteArrayList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        methods.append(QByteArray(method.methodType() == QMetaMethod::Signal ? "signal " : "slot ")
                       + method.typeName() + ' ' + method.methodSignature() + ' '
                       + method.parameterNames().join(','));
        QCOMPARE(method.access(), QMetaMethod::Public);
    }
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
    QCOMPARE(methods, expected);
    QVERIFY(meta.method(meta.indexOfMethod("countExistsImages(QStringList)")).isConst());

    QByteArrayList properties;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        const QByteArray type = property.isEnumType() ? property.enumerator().name() : property.typeName();
        properties.append(QByteArray(property.name()) + ' ' + type + (property.isWritable() ? " rw " : " r ")
                          + property.notifySignal().name());
    }
    QCOMPARE(properties,
             QByteArrayList({"activeId qlonglong rw activeIdChanged", "mode PlaylistMode rw modeChanged",
                             "count int r countChanged"}));

    QByteArrayList enumerators;
    for (int i = meta.enumeratorOffset(); i < meta.enumeratorCount(); ++i) {
        const QMetaEnum enumerator = meta.enumerator(i);
        for (int key = 0; key < enumerator.keyCount(); ++key)
            enumerators.append(QByteArray(enumerator.name()) + ' ' + enumerator.key(key) + ' '
                               + QByteArray::number(enumerator.value(key)));
    }
    QCOMPARE(enumerators,
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
    QCOMPARE(m_model->count(), 0);
    QCOMPARE(m_model->rowCount(), 0);
    QCOMPARE(m_model->getIndexById(1), -1);
    QCOMPARE(m_model->getImagesById(1), QStringList());
    QCOMPARE(m_model->getImage(1, 0), QString());
    QVERIFY(!m_model->hasExistsImage(1));
    QVERIFY(!m_model->hasImage(1, QString()));
    QVERIFY(!cell(*m_model, 0, PlaylistModel::TitleRole).isValid());
}

void tst_PlaylistModel::rolesHaveNamesAndValues()
{
    const qlonglong id = m_model->addItem(u"@DefaultPlaylist"_s);
    m_model->setActiveId(id);
    m_model->addImagesToPlaylist({picture(u"a.jpg"_s), picture(u"b.jpg"_s, false), picture(u"c.jpg"_s)});

    const QHash<int, QByteArray> names{
        {0, "title"}, {257, "playlist_id"}, {258, "count"}, {259, "count_exists"}};
    QCOMPARE(m_model->roleNames(), names);
    QCOMPARE(cell(*m_model, 0, 0), QVariant(u"@DefaultPlaylist"_s));
    QCOMPARE(cell(*m_model, 0, Qt::DisplayRole), QVariant(u"@DefaultPlaylist"_s));
    QCOMPARE(cell(*m_model, 0, 257), QVariant::fromValue<qlonglong>(id));
    QCOMPARE(cell(*m_model, 0, 258), QVariant(3));
    QCOMPARE(cell(*m_model, 0, 259), QVariant(2));
    QCOMPARE(cell(*m_model, 0, 257).metaType(), QMetaType::fromType<qlonglong>());
    QCOMPARE(cell(*m_model, 0, 258).metaType(), QMetaType::fromType<int>());
    QCOMPARE(cell(*m_model, 0, 259).metaType(), QMetaType::fromType<int>());
}

void tst_PlaylistModel::placesWithoutDataAreInvalid()
{
    m_model->addItem(u"Lake"_s);
    const QModelIndex last = m_model->index(0, 0);
    for (int role : {Qt::EditRole + 0, 256, 260, -1})
        QVERIFY(!m_model->data(last, role).isValid());
    QVERIFY(!m_model->data(QModelIndex(), PlaylistModel::TitleRole).isValid());
    QVERIFY(!cell(*m_model, -1, PlaylistModel::TitleRole).isValid());
    QVERIFY(!cell(*m_model, 1, PlaylistModel::TitleRole).isValid());
    QVERIFY(!m_model->data(m_model->index(m_model->getIndexById(-1), 0), PlaylistModel::TitleRole).isValid());
    // An index that was valid before the row went.
    QVERIFY(m_model->data(last, PlaylistModel::TitleRole).isValid());
    m_model->deleteItem(1);
    QVERIFY(!m_model->data(last, PlaylistModel::TitleRole).isValid());
    // Rows have no children, and yet the count does not ask for the parent.
    m_model->addItem(u"Lake"_s);
    QCOMPARE(m_model->rowCount(m_model->index(0, 0)), 1);
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

    const qlonglong id = m_model->addItem(title);
    QCOMPARE(cell(*m_model, 0, PlaylistModel::TitleRole).toString(), title);
    m_model->editItem(id, u"another"_s);
    QCOMPARE(cell(*m_model, 0, PlaylistModel::TitleRole).toString(), u"another"_s);
    m_model->editItem(id, title);
    QCOMPARE(cell(*m_model, 0, PlaylistModel::TitleRole).toString(), title);
}

void tst_PlaylistModel::refreshingResetsOnce()
{
    SignalLog log(m_model.get());
    QVERIFY(stored_database::execute({u"INSERT INTO playlists VALUES(8, 'Lake')"_s}));
    m_model->refreshData();
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"reset 1"_s, u"count 1"_s}));
    QCOMPARE(m_model->getIndexById(8), 0);
}

// The nested reset brackets of the writing operations are no tester's idea of a model; reading keeps to its
// rules.
void tst_PlaylistModel::refreshingSatisfiesTheModelTester()
{
    const QAbstractItemModelTester tester(m_model.get(),
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(stored_database::execute(
        {u"INSERT INTO playlists VALUES(8, 'Lake')"_s, u"INSERT INTO playlists VALUES(9, 'Wood')"_s}));
    m_model->refreshData();
    QCOMPARE(m_model->count(), 2);
    QVERIFY(stored_database::execute({u"DELETE FROM playlists"_s}));
    m_model->refreshData();
    QCOMPARE(m_model->count(), 0);
}

void tst_PlaylistModel::addingAPlaylistResetsTwice()
{
    SignalLog log(m_model.get());
    const qlonglong id = m_model->addItem(u"Lake"_s);
    QCOMPARE(log.taken(),
             QStringList({u"about"_s, u"about"_s, u"reset 1"_s, u"count 1"_s, u"reset 1"_s, u"count 1"_s}));
    QCOMPARE(m_model->getIndexById(id), 0);
    QCOMPARE(m_model->getImagesById(id), QStringList());
    QCOMPARE(m_model->activeId(), -1LL);
}

void tst_PlaylistModel::deletingAPlaylistResetsTwice()
{
    const qlonglong lake = m_model->addItem(u"Lake"_s);
    const qlonglong wood = m_model->addItem(u"Wood"_s);
    SignalLog log(m_model.get());
    m_model->deleteItem(lake);
    QCOMPARE(log.taken(),
             QStringList({u"about"_s, u"about"_s, u"reset 1"_s, u"count 1"_s, u"reset 1"_s, u"count 1"_s}));
    QCOMPARE(m_model->getIndexById(lake), -1);
    QCOMPARE(m_model->getIndexById(wood), 0);
}

void tst_PlaylistModel::renamingAPlaylistResetsTwiceAndCountsOnce()
{
    const qlonglong id = m_model->addItem(u"Lake"_s);
    SignalLog log(m_model.get());
    m_model->editItem(id, u"Wood"_s);
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"about"_s, u"reset 1"_s, u"count 1"_s, u"reset 1"_s}));
    QCOMPARE(cell(*m_model, 0, PlaylistModel::TitleRole).toString(), u"Wood"_s);
}

void tst_PlaylistModel::renamingAnUnknownPlaylistStillResets()
{
    m_model->addItem(u"Lake"_s);
    SignalLog log(m_model.get());
    m_model->editItem(99, u"Wood"_s);
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"about"_s, u"reset 1"_s, u"count 1"_s, u"reset 1"_s}));
    QCOMPARE(stored_database::rows(u"SELECT title FROM playlists"_s), QStringList(u"Lake"_s));
}

void tst_PlaylistModel::aFailedWriteStillResets()
{
    QVERIFY(stored_database::execute(
        {u"CREATE TRIGGER refuse BEFORE INSERT ON playlists BEGIN SELECT RAISE(ABORT, 'refused'); END"_s}));
    SignalLog log(m_model.get());
    QCOMPARE(m_model->addItem(u"Lake"_s), -1LL);
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"reset 0"_s, u"count 0"_s}));
    QCOMPARE(m_output->logLines(logSource).size(), 1);
    QVERIFY(stored_database::execute({u"DROP TRIGGER refuse"_s}));
}

void tst_PlaylistModel::addingPicturesReadsThePlaylistsEachTime()
{
    m_model->setActiveId(m_model->addItem(u"Lake"_s));
    SignalLog log(m_model.get());
    m_model->addImagesToPlaylist({u"/b.jpg"_s, u"/a.jpg"_s, u"/b.jpg"_s});
    const QStringList once{u"about"_s, u"reset 1"_s, u"count 1"_s};
    QCOMPARE(log.taken(), once + once); // the third was there already
    m_model->addImagesToPlaylist({});
    QCOMPARE(log.taken(), QStringList());
    QCOMPARE(stored_database::rows(u"SELECT url FROM playlist_images ORDER BY id"_s),
             QStringList({u"/b.jpg"_s, u"/a.jpg"_s}));
    QCOMPARE(m_model->getImagesById(m_model->activeId()), QStringList({u"/a.jpg"_s, u"/b.jpg"_s}));
}

void tst_PlaylistModel::addingPicturesGoesToTheActivePlaylist()
{
    const qlonglong lake = m_model->addItem(u"Lake"_s);
    const qlonglong wood = m_model->addItem(u"Wood"_s);
    m_model->setActiveId(lake);
    m_model->addImagesToPlaylist({u"/a.jpg"_s});
    m_model->setActiveId(wood);
    m_model->addImagesToPlaylist({u"/b.jpg"_s});
    QCOMPARE(m_model->getImagesById(lake), QStringList(u"/a.jpg"_s));
    QCOMPARE(m_model->getImagesById(wood), QStringList(u"/b.jpg"_s));

    m_model->setActiveId(-1);
    m_model->addImagesToPlaylist({u"/c.jpg"_s});
    QCOMPARE(stored_database::rows(u"SELECT playlist FROM playlist_images WHERE url = '/c.jpg'"_s),
             QStringList(u"-1"_s));
}

void tst_PlaylistModel::deletingPicturesGoesByTheirOrder()
{
    const qlonglong id = m_model->addItem(u"Lake"_s);
    m_model->setActiveId(id);
    m_model->addImagesToPlaylist({u"/a.jpg"_s, u"/b.jpg"_s, u"/c.jpg"_s});
    m_model->setActiveId(-1); // the playlist is named, not the active one

    QStringList left;
    connect(m_model.get(), &PlaylistModel::countChanged, m_model.get(),
            [&] { left.append(m_model->getImagesById(id).join(u' ')); });
    m_model->deleteImages(id, {u"/c.jpg"_s, u"/gone.jpg"_s, u"/a.jpg"_s});
    QCOMPARE(left, QStringList({u"/a.jpg /b.jpg"_s, u"/a.jpg /b.jpg"_s, u"/b.jpg"_s}));
}

void tst_PlaylistModel::deletingOnePicture()
{
    const qlonglong id = m_model->addItem(u"Lake"_s);
    m_model->setActiveId(id);
    m_model->addImagesToPlaylist({u"/a.jpg"_s, u"/b.jpg"_s});
    SignalLog log(m_model.get());
    m_model->deleteImage(id, u"/a.jpg"_s);
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"reset 1"_s, u"count 1"_s}));
    QCOMPARE(m_model->getImagesById(id), QStringList(u"/b.jpg"_s));
    m_model->deleteImage(99, u"/b.jpg"_s);
    QCOMPARE(m_model->getImagesById(id), QStringList(u"/b.jpg"_s));
}

void tst_PlaylistModel::changesOfTheStoreArrive()
{
    SignalLog log(m_model.get());
    DataStorage::instance().addPlaylist(u"Lake"_s);
    QCOMPARE(m_model->count(), 1); // at once, not with the next turn of the loop
    QCOMPARE(log.taken(), QStringList({u"about"_s, u"reset 1"_s, u"count 1"_s}));
}

void tst_PlaylistModel::severalModelsShareTheStore()
{
    auto other = std::make_unique<PlaylistModel>();
    other->addItem(u"Lake"_s);
    QCOMPARE(m_model->count(), 1);
    other.reset();
    m_model->addItem(u"Wood"_s);
    QCOMPARE(m_model->count(), 2);
}

void tst_PlaylistModel::getImageSkipsVanishedFiles()
{
    const qlonglong id = m_model->addItem(u"Lake"_s);
    m_model->setActiveId(id);
    QStringList paths;
    for (int i = 1; i <= 6; ++i)
        paths.append(picture(u"%1.jpg"_s.arg(i), i > 2));
    m_model->addImagesToPlaylist(paths);

    const int playlist = static_cast<int>(id);
    QCOMPARE(m_model->getImage(playlist, 0), paths.at(2));
    QCOMPARE(m_model->getImage(playlist, 1), paths.at(3));
    QCOMPARE(m_model->getImage(playlist, 3), paths.at(5));
    QCOMPARE(m_model->getImage(playlist, 4), QString());
    QCOMPARE(m_model->getImage(playlist, 5), QString());
    QCOMPARE(m_model->getImage(playlist, 6), QString());

    // A picture on a card comes back with the card, one in the middle leaves no hole.
    make(paths.at(0));
    QVERIFY(QFile::remove(paths.at(3)));
    QCOMPARE(m_model->getImage(playlist, 0), paths.at(0));
    QCOMPARE(m_model->getImage(playlist, 1), paths.at(2));
    QCOMPARE(m_model->getImage(playlist, 2), paths.at(4));
}

void tst_PlaylistModel::getImageWithoutAPicture_data()
{
    QTest::addColumn<int>("playlist");
    QTest::addColumn<int>("index");

    QTest::newRow("an unknown playlist") << 2 << 0;
    QTest::newRow("no playlist") << -1 << 0;
    QTest::newRow("behind the last") << 1 << 2;
    QTest::newRow("far behind") << 1 << 2147483647;
    QTest::newRow("before the first") << 1 << -1;
}

void tst_PlaylistModel::getImageWithoutAPicture()
{
    QFETCH(int, playlist);
    QFETCH(int, index);

    QVERIFY(stored_database::execute({u"INSERT INTO playlists VALUES(1, 'Lake')"_s}));
    m_model->setActiveId(1);
    m_model->addImagesToPlaylist({picture(u"a.jpg"_s), picture(u"b.jpg"_s)});
    QCOMPARE(m_model->getImage(1, 1), m_folder->filePath(u"b.jpg"_s));
    QCOMPARE(m_model->getImage(playlist, index), QString());
}

void tst_PlaylistModel::getImageComparesTheWholeId()
{
    const QString path = picture(u"a.jpg"_s);
    QVERIFY(stored_database::execute({u"INSERT INTO playlists VALUES(4294967297, 'one and 2^32')"_s,
                                      u"INSERT INTO playlists VALUES(-5, 'below zero')"_s,
                                      u"INSERT INTO playlist_images VALUES(1, '%1', 4294967297)"_s.arg(path),
                                      u"INSERT INTO playlist_images VALUES(2, '%1', -5)"_s.arg(path)}));
    m_model->refreshData();
    QCOMPARE(m_model->getImage(1, 0), QString());
    QCOMPARE(m_model->getImage(-5, 0), path);
    QCOMPARE(m_model->getIndexById(4294967297LL), 1);
    QCOMPARE(m_model->getImagesById(4294967297LL), QStringList(path));
}

void tst_PlaylistModel::countsWithVanishedFiles()
{
    const qlonglong id = m_model->addItem(u"Lake"_s);
    m_model->setActiveId(id);
    const QString a = picture(u"a.jpg"_s);
    const QString b = picture(u"b.jpg"_s);
    m_model->addImagesToPlaylist({a, b});
    QVERIFY(m_model->hasExistsImage(id));
    QCOMPARE(m_model->countExistsImages({a, b, a, u"/nowhere"_s, QString()}), 3);
    QCOMPARE(m_model->countExistsImages({}), 0);

    SignalLog log(m_model.get());
    QVERIFY(QFile::remove(a));
    QCOMPARE(cell(*m_model, 0, PlaylistModel::CountRole).toInt(), 2);
    QCOMPARE(cell(*m_model, 0, PlaylistModel::CountExistsRole).toInt(), 1);
    QVERIFY(m_model->hasExistsImage(id));
    QVERIFY(QFile::remove(b));
    QCOMPARE(cell(*m_model, 0, PlaylistModel::CountRole).toInt(), 2);
    QCOMPARE(cell(*m_model, 0, PlaylistModel::CountExistsRole).toInt(), 0);
    QVERIFY(!m_model->hasExistsImage(id));
    QCOMPARE(m_model->getImagesById(id), QStringList({a, b}));
    make(b);
    QVERIFY(m_model->hasExistsImage(id));
    QCOMPARE(log.taken(), QStringList()); // nobody tells the model of files
    QCOMPARE(stored_database::rows(u"SELECT count(*) FROM playlist_images"_s), QStringList(u"2"_s));
}

void tst_PlaylistModel::foldersAndLinksCountAsTheyExist()
{
    const QString folder = m_folder->filePath(u"folder"_s);
    QVERIFY(QDir().mkdir(folder));
    const QString link = m_folder->filePath(u"link"_s);
    QVERIFY(QFile::link(m_folder->filePath(u"gone"_s), link));
    QCOMPARE(m_model->countExistsImages({folder, link}), 1);
}

void tst_PlaylistModel::lookUpsByUnknownIds()
{
    m_model->addItem(u"Lake"_s);
    for (qlonglong id : {-1LL, 0LL, 99LL, (1LL << 32) + 1}) {
        QCOMPARE(m_model->getIndexById(id), -1);
        QCOMPARE(m_model->getImagesById(id), QStringList());
        QVERIFY(!m_model->hasImage(id, u"/a.jpg"_s));
        QVERIFY(!m_model->hasExistsImage(id));
    }
}

void tst_PlaylistModel::hasImageIsExact()
{
    const qlonglong id = m_model->addItem(u"Lake"_s);
    m_model->setActiveId(id);
    m_model->addImagesToPlaylist({u"/p/a.jpg"_s});
    QVERIFY(m_model->hasImage(id, u"/p/a.jpg"_s)); // stored, whether the file is there or not
    QVERIFY(!m_model->hasImage(id, u"/p/A.jpg"_s));
    QVERIFY(!m_model->hasImage(id, u"/p/a.jp"_s));
    QVERIFY(!m_model->hasImage(id, u"/p//a.jpg"_s));
}

void tst_PlaylistModel::openImageHandsTheBytesOver_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("plain") << u"/mnt/ext1/Photo/01.jpg"_s;
    QTest::newRow("blanks and signs") << u"/mnt/ext1/50% of #1?.jpg"_s;
    QTest::newRow("umlauts") << u"/mnt/ext1/K\u00fcste.jpg"_s;
    QTest::newRow("a missing file") << u"/nowhere"_s;
}

void tst_PlaylistModel::openImageHandsTheBytesOver()
{
    QFETCH(QString, path);

    m_device->forgetCalls();
    m_model->openImage(path);
    const QList<lindenreed::device::SdkCall> calls = m_device->calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.first().name, "OpenBook");
    QCOMPARE(calls.first().arguments, QByteArrayList({path.toLocal8Bit(), "null", "0"}));
    QCOMPARE(lindenreed::device::Device::instance()->viewer.opened().last(), path);
}

void tst_PlaylistModel::settersNotifyOnChangeOnly()
{
    SignalLog log(m_model.get());
    m_model->setActiveId(-1);
    m_model->setMode(PlaylistModel::AllViewMode);
    QCOMPARE(log.taken(), QStringList());
    QVERIFY(m_model->setProperty("activeId", 1LL << 40));
    QCOMPARE(log.taken(), QStringList(u"active 1099511627776"_s));
    QVERIFY(m_model->setProperty("mode", PlaylistModel::CreateMode));
    QCOMPARE(log.taken(), QStringList(u"mode 2"_s));
    m_model->setActiveId(1LL << 40);
    m_model->setMode(PlaylistModel::CreateMode);
    QCOMPARE(log.taken(), QStringList());
    m_model->addItem(u"Lake"_s);
    QCOMPARE(m_model->activeId(), 1LL << 40);
    QCOMPARE(m_model->mode(), PlaylistModel::CreateMode);
}

QTEST_GUILESS_MAIN(tst_PlaylistModel)
#include "tst_playlist_model.moc"
