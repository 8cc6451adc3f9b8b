// The playlist workflow on the models, walked at random beside a plain model of it: after each step both hold
// the same playlists, modes, selection and rows, and so does the database file.

#include "breadcrumbs_model.h"
#include "folder_model.h"
#include "media_fixture.h"
#include "playlist_fixture.h"
#include "settings_model.h"
#include "workflow_walk.h"
#include "workflow_witness.h"

#include <QAbstractItemModelTester>
#include <QScopeGuard>

using namespace Qt::StringLiterals;
using namespace lindenreed::picture_stand;

namespace {

constexpr int stepCount = 2000;

const WorkflowWalk::Bounds bounds{{u"Holiday"_s, u"Holiday"_s, u""_s, u" "_s,
                                   u"'; DROP TABLE playlists; --"_s, u"%s %1 %n %"_s, u"@DefaultPlaylist"_s,
                                   u"<b>\"x\"</b> & | \\"_s, u"two\nlines\tand a tab"_s,
                                   u"a\u0308 \u96ea \U0001F5BC"_s, u"\u05e9\u05dc\u05d5\u05dd"_s,
                                   QString(3000, u'\u00e4'), u"NULL"_s, u"-1"_s},
                                  6,
                                  1000,
                                  1000,
                                  true};

/// The models as the program connects them, and what its screens do with them.
class Frame
{
public:
    Frame()
    {
        settings.loadConfig();
        QObject::connect(&folders, &FolderModel::changedFolder, &crumbs, &BreadcrumbsModel::changeFolder);
        QObject::connect(&crumbs, &BreadcrumbsModel::changedFolder, &folders, &FolderModel::changeFolder);
        QObject::connect(&Storage::instance(), &Storage::storageChanged, &folders,
                         &FolderModel::storageChanged);
        QObject::connect(&playlists, &PlaylistModel::activeIdChanged, &settings,
                         [this] { settings.setActivePlaylist(static_cast<int>(playlists.activeId())); });
        folders.changeFolder(u"/mnt/ext1/Photo"_s);
    }

    void act(const WorkflowWalk::Step &step);

    PlaylistModel playlists;
    FolderModel folders;
    BreadcrumbsModel crumbs;
    SettingsModel settings;
    QString message;

private:
    QStringList activePictures() { return playlists.getImagesById(playlists.activeId()); }
    void cancel();
    void addSelected();
    void pick(PlaylistModel::PlaylistMode mode);
};

// In the order of the screens' own calls.
void Frame::act(const WorkflowWalk::Step &step)
{
    switch (step.action) {
    case WorkflowWalk::Open:
        playlists.setActiveId(step.playlist);
        playlists.setMode(PlaylistModel::ViewMode);
        folders.setMode(FolderModel::NormalMode);
        folders.clearListIgnoreSelection();
        folders.loadFromList(activePictures());
        break;
    case WorkflowWalk::Create:
        if (!step.text.isEmpty()) {
            playlists.setActiveId(playlists.addItem(step.text));
            pick(PlaylistModel::CreateMode);
        }
        break;
    case WorkflowWalk::Rename:
        playlists.setActiveId(step.playlist);
        if (!step.text.isEmpty())
            playlists.editItem(playlists.activeId(), step.text);
        break;
    case WorkflowWalk::LeaveMenu:
        playlists.setActiveId(-1);
        break;
    case WorkflowWalk::AddByMenu:
        playlists.setActiveId(step.playlist);
        pick(PlaylistModel::AddMode);
        break;
    case WorkflowWalk::DeleteByMenu:
        playlists.setActiveId(step.playlist);
        playlists.deleteItem(playlists.activeId());
        playlists.setActiveId(-1);
        break;
    case WorkflowWalk::Back:
        folders.clearListIgnoreSelection();
        folders.restore();
        playlists.setMode(PlaylistModel::AllViewMode);
        playlists.setActiveId(-1);
        break;
    case WorkflowWalk::Plus:
        folders.setListIgnoreSelection(activePictures());
        folders.restore();
        playlists.setMode(PlaylistModel::AddMode);
        folders.setMode(FolderModel::SelectionMode);
        folders.clearSelection();
        break;
    case WorkflowWalk::SelectSeveral:
        folders.setMode(FolderModel::SelectionMode);
        break;
    case WorkflowWalk::DeletePicture:
        playlists.deleteImage(playlists.activeId(), step.text);
        folders.loadFromList(activePictures());
        break;
    case WorkflowWalk::DeleteSelected:
        playlists.deleteImages(playlists.activeId(), folders.getSelected());
        folders.loadFromList(activePictures());
        folders.clearSelection();
        folders.setMode(FolderModel::NormalMode);
        break;
    case WorkflowWalk::Toggle:
        folders.selectFile(step.text, !folders.getSelected().contains(step.text));
        break;
    case WorkflowWalk::PressBox:
        if (folders.countFiles() > 0 && folders.countSelected() == folders.countFiles())
            folders.clearSelection();
        else
            folders.selectAllFiles();
        break;
    case WorkflowWalk::Cancel:
        cancel();
        break;
    case WorkflowWalk::AddSelected:
        addSelected();
        break;
    case WorkflowWalk::ChangeFolder:
        folders.changeFolder(step.text);
        break;
    case WorkflowWalk::PressCrumb:
        crumbs.changeFolderByIndex(step.number);
        break;
    case WorkflowWalk::SetInterval:
        settings.setProperty("change_picture_time", step.number);
        settings.saveConfig(u"change_picture_time"_s);
        break;
    case WorkflowWalk::MoveMedium: {
        using namespace lindenreed::device;
        Media &media = Device::instance()->media;
        const Medium medium = step.number == WorkflowWorld::Card ? Medium::Card : Medium::Usb;
        QCOMPARE(media.plug(medium, !media.present(medium)), PlugResult::Done);
        break;
    }
    case WorkflowWalk::LookAtStorages:
        QVERIFY(MediaFixture::look());
        break;
    case WorkflowWalk::VanishOrReturn:
        break;
    }
}

void Frame::pick(PlaylistModel::PlaylistMode mode)
{
    playlists.setMode(mode);
    folders.setMode(FolderModel::SelectionMode);
    folders.setListIgnoreSelection(activePictures());
    folders.restore();
}

void Frame::cancel()
{
    if (playlists.mode() == PlaylistModel::CreateMode) {
        playlists.deleteItem(playlists.activeId());
        playlists.setActiveId(-1);
        folders.clearSelection();
        playlists.setMode(PlaylistModel::AllViewMode);
        return;
    }
    folders.clearSelection();
    if (playlists.mode() == PlaylistModel::ViewMode) {
        folders.setMode(FolderModel::NormalMode);
        return;
    }
    playlists.setMode(PlaylistModel::ViewMode);
    folders.setMode(FolderModel::NormalMode);
    folders.clearListIgnoreSelection();
    folders.loadFromList(activePictures());
}

void Frame::addSelected()
{
    playlists.addImagesToPlaylist(folders.getSelected());
    message = playlists.getImagesAddedMessage();
    folders.clearSelection();
    playlists.setMode(PlaylistModel::ViewMode);
    folders.setMode(FolderModel::NormalMode);
    folders.clearListIgnoreSelection();
    folders.loadFromList(activePictures());
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

} // namespace

class tst_WorkflowWalk : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void sameAsTheModel_data() { WorkflowWalk::addSeeds(5, 50); }
    void sameAsTheModel();

private:
    static void comparePlaylists(Frame &frame, const WorkflowModel &model);
    static void compareFolders(const Frame &frame, const WorkflowModel &model);
};

void tst_WorkflowWalk::initTestCase()
{
    const MediaFixture media;
    QVERIFY(MediaFixture::settled());
}

void tst_WorkflowWalk::comparePlaylists(Frame &frame, const WorkflowModel &model)
{
    PlaylistModel &playlists = frame.playlists;
    QStringList rows;
    QStringList expected;
    for (int row = 0; row < playlists.rowCount(); ++row)
        rows.append(u"%1 %2 %3 "_s.arg(cell(playlists, row, PlaylistModel::IdRole).toLongLong())
                        .arg(cell(playlists, row, PlaylistModel::CountRole).toInt())
                        .arg(cell(playlists, row, PlaylistModel::CountExistsRole).toInt())
                    + cell(playlists, row, PlaylistModel::TitleRole).toString());
    for (const qlonglong id : model.titles.keys())
        expected.append(u"%1 %2 %3 "_s.arg(id).arg(model.pictures.value(id).size()).arg(model.countThere(id))
                        + model.titles.value(id));
    QCOMPARE(rows, expected);
    QCOMPARE(playlists.count(), model.titles.size());
    QCOMPARE(playlists.activeId(), model.activeId);
    QCOMPARE(int(playlists.mode()), int(model.mode));
    QCOMPARE(playlists.getImagesById(model.activeId), model.picturesOf(model.activeId));
    QCOMPARE(frame.settings.changePictureTime(), model.interval());
}

void tst_WorkflowWalk::compareFolders(const Frame &frame, const WorkflowModel &model)
{
    const FolderModel &folders = frame.folders;
    QStringList rows;
    QStringList expected;
    for (int row = 0; row < folders.rowCount(); ++row) {
        const auto is = [&](int role) { return folders.data(folders.index(row), role); };
        rows.append(u"%1 %2 %3"_s.arg(is(FolderModel::PathRole).toString())
                        .arg(is(FolderModel::TypeRole).toInt())
                        .arg(is(FolderModel::IsSelectedRole).toBool()));
    }
    for (const WorkflowModel::Row &row : model.rows)
        expected.append(u"%1 %2 %3"_s.arg(row.path).arg(row.kind).arg(model.selected.contains(row.path)));
    QCOMPARE(rows, expected);
    QCOMPARE(int(folders.mode()), model.selecting ? 1 : 0);
    QCOMPARE(folders.countFiles(), model.countFiles);
    QCOMPARE(folders.countSelected(), model.selected.size());
    QCOMPARE(sorted(folders.getSelected()), sorted(model.selected.values()));

    QStringList names;
    for (int row = 0; row < frame.crumbs.rowCount(); ++row)
        names.append(frame.crumbs.data(frame.crumbs.index(row), BreadcrumbsModel::NameRole).toString());
    QStringList way;
    for (const QString &path : model.crumbs) {
        const QMap<QString, QString> storages{{u"/mnt/ext1"_s, u"This device"_s},
                                              {u"/mnt/ext2"_s, u"SD card"_s},
                                              {u"/mnt/ext3"_s, u"USB drive"_s}};
        way.append(storages.value(path, path.section(u'/', -1)));
    }
    QCOMPARE(names, way);
}

void tst_WorkflowWalk::sameAsTheModel()
{
    QFETCH(quint32, seed);

    QTest::failOnWarning(QRegularExpression(u".?"_s));
    const MediaFixture media;
    QVERIFY(MediaFixture::look());
    DataStorage::instance();
    stored_database::hurry();
    QVERIFY(
        stored_database::execute({u"DELETE FROM playlists"_s, u"DELETE FROM playlist_images"_s,
                                  u"DELETE FROM settings WHERE playlist <> -1"_s,
                                  u"UPDATE settings SET value = 30 WHERE name = 'change_picture_time'"_s}));
    const WorkflowWitness witness;

    WorkflowWorld world;
    WorkflowModel model(world);
    Frame frame;
    const QAbstractItemModelTester folderTester(&frame.folders,
                                                QAbstractItemModelTester::FailureReportingMode::QtTest);
    WorkflowWalk walk(seed, bounds);
    QStringList lately;
    const auto tell = qScopeGuard([&] {
        if (QTest::currentTestFailed())
            qInfo("last: %s", qUtf8Printable(lately.join("; "_L1)));
    });
    for (int i = 0; i < stepCount && !QTest::currentTestFailed(); ++i) {
        const WorkflowWalk::Step step = walk.next(model);
        lately = lately.mid(qMax(0, lately.size() - 9)) << u"%1 "_s.arg(i) + step.asText();
        WorkflowWalk::apply(step, model);
        frame.act(step);
        if (step.action == WorkflowWalk::AddSelected)
            QVERIFY(frame.message.startsWith(QString::number(model.added) + u' '));
        comparePlaylists(frame, model);
        compareFolders(frame, model);
        QCOMPARE(witness.stored(), model.stored());
    }
}

QTEST_GUILESS_MAIN(tst_WorkflowWalk)
#include "tst_workflow_walk.moc"
