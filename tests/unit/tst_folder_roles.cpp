// What the interface reads from the browser's rows, and the properties beside them.

#include "folder_fixture.h"
#include "meta_object_lines.h"

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;
using lindenreed::picture_stand::StorageItem;

class tst_FolderRoles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { m_test = std::make_unique<FolderFixture>(); }
    void cleanup() { m_test.reset(); }

    void metaObject();
    void atTheBeginning();
    void roleNames();
    void valuesOfAStorage();
    void valuesOfAFolder();
    void nothingOutside();
    void rowsWhateverTheParent();
    void settersTellOfChangesAlone();
    void modesStay();
    void extensions_data();
    void extensions();

private:
    QVariantList values(int row) const
    {
        QVariantList found;
        for (int role = FolderModel::PathRole; role <= FolderModel::IsSelectedRole; ++role)
            found.append(m_test->cell(row, role));
        return found;
    }

    std::unique_ptr<FolderFixture> m_test;
};

void tst_FolderRoles::initTestCase()
{
    const MediaFixture media;
    QVERIFY(MediaFixture::settled());
}

void tst_FolderRoles::metaObject()
{
    const QMetaObject &meta = FolderModel::staticMetaObject;
    QCOMPARE(meta.className(), "lindenreed::picture_stand::FolderModel");
    QCOMPARE(meta.superClass(), &QAbstractListModel::staticMetaObject);

    QCOMPARE(methodLines(meta),
             QByteArrayList({
                 "signal void changedFolder(QString) ",
                 "signal void modeChanged() ",
                 "signal void countSelectedChanged() ",
                 "signal void countFilesChanged() ",
                 "signal void viewModeChanged() ",
                 "slot void changeFolder(QString) path",
                 "slot void selectFile(QString,bool) path,value",
                 "slot int countSelected() ",
                 "slot void clearSelection() ",
                 "slot void selectAllFiles() ",
                 "slot QStringList getSelected() ",
                 "slot void loadFromList(QStringList) files",
                 "slot void restore() ",
                 "slot QString getExtension(QString) name",
                 "slot void storageChanged() ",
                 "slot void setListIgnoreSelection(QStringList) list",
                 "slot void clearListIgnoreSelection() ",
             }));

    QCOMPARE(propertyLines(meta),
             QByteArrayList(
                 {"mode FolderModelMode rw modeChanged", "viewMode FolderModelViewMode rw viewModeChanged",
                  "countSelected int r countSelectedChanged", "countFiles int r countFilesChanged"}));

    QCOMPARE(enumeratorLines(meta),
             QByteArrayList({"ContentDataRoles PathRole 257", "ContentDataRoles NameRole 258",
                             "ContentDataRoles TypeRole 259", "ContentDataRoles FreeSpaceRole 260",
                             "ContentDataRoles TotalSpaceRole 261", "ContentDataRoles MemoryRole 262",
                             "ContentDataRoles IsSelectedRole 263", "FolderModelMode NormalMode 0",
                             "FolderModelMode SelectionMode 1", "FolderModelViewMode GridViewMode 0",
                             "FolderModelViewMode ListViewMode 1"}));
}

void tst_FolderRoles::atTheBeginning()
{
    FolderModel &model = m_test->model;
    QVERIFY(!model.parent());
    QCOMPARE(model.mode(), FolderModel::SelectionMode);
    QCOMPARE(model.viewMode(), FolderModel::GridViewMode);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.countFiles(), 0);
    QCOMPARE(model.countSelected(), 0);
    QCOMPARE(model.getSelected(), QStringList());
    // An empty list is on show, not the storages, although no folder has been listed.
    model.storageChanged();
    QCOMPARE(m_test->told.taken(), QStringList({u"about"_s, u"reset 0"_s, u"files 0"_s}));
}

void tst_FolderRoles::roleNames()
{
    const QHash<int, QByteArray> names{{257, "path"},      {258, "name"},       {259, "type"},
                                       {260, "freeSpace"}, {261, "totalSpace"}, {262, "memory"},
                                       {263, "selected"}};
    QCOMPARE(m_test->model.roleNames(), names);
}

void tst_FolderRoles::valuesOfAStorage()
{
    m_test->model.changeFolder({});
    const StorageItem root = MediaFixture::roots().constFirst();
    QVERIFY(!root.freeSpace().isEmpty()); // all of it, where the device is in memory
    QCOMPARE(values(0),
             QVariantList({u"/mnt/ext1"_s, u"This device"_s, 1, root.freeSpace(), root.totalSpace(),
                           u"%1 free\nof %2"_s.arg(root.freeSpace(), root.totalSpace()), false}));
}

void tst_FolderRoles::valuesOfAFolder()
{
    m_test->tree.make({u"folder/"_s, u"a.jpg"_s});
    m_test->model.changeFolder(m_test->tree.top);
    m_test->model.selectFile(m_test->path(u"a.jpg"_s), true);
    const QString noSpace = u" free\nof "_s;
    const QString empty = u""_s;
    QCOMPARE(values(0),
             QVariantList({m_test->path(u"folder"_s), u"folder"_s, 4, empty, empty, noSpace, false}));
    QCOMPARE(values(1), QVariantList({empty, empty, 6, empty, empty, noSpace, false}));
    QCOMPARE(values(2), values(1));
    QCOMPARE(values(3), QVariantList({m_test->path(u"a.jpg"_s), u"a.jpg"_s, 5, empty, empty, noSpace, true}));
    QCOMPARE(m_test->cell(0, FolderModel::TypeRole).typeId(), int(QMetaType::Int));
}

void tst_FolderRoles::nothingOutside()
{
    m_test->tree.make({u"a.jpg"_s, u"b.jpg"_s});
    m_test->model.changeFolder(m_test->tree.top);
    const QModelIndex second = m_test->model.index(1);
    QVERIFY(m_test->model.data(second, FolderModel::PathRole).isValid());
    for (const int role : {256, 264, int(Qt::DisplayRole), int(Qt::DecorationRole), -1})
        QVERIFY2(!m_test->model.data(second, role).isValid(), qPrintable(QString::number(role)));

    QVERIFY(!m_test->model.data({}, FolderModel::PathRole).isValid());
    QVERIFY(QFile::remove(m_test->path(u"b.jpg"_s)));
    m_test->model.restore();
    QVERIFY(!m_test->model.data(second, FolderModel::PathRole).isValid()); // right behind the end
    m_test->model.loadFromList({});
    QVERIFY(!m_test->model.data(second, FolderModel::PathRole).isValid());
}

void tst_FolderRoles::rowsWhateverTheParent()
{
    m_test->tree.make({u"a.jpg"_s, u"b.jpg"_s});
    m_test->model.changeFolder(m_test->tree.top);
    QCOMPARE(m_test->model.rowCount(), 2);
    QCOMPARE(m_test->model.rowCount(m_test->model.index(1)), 2);
}

void tst_FolderRoles::settersTellOfChangesAlone()
{
    FolderModel &model = m_test->model;
    model.setMode(FolderModel::SelectionMode);
    model.setViewMode(FolderModel::GridViewMode);
    QCOMPARE(m_test->told.taken(), QStringList());
    model.setMode(FolderModel::NormalMode);
    model.setViewMode(FolderModel::ListViewMode);
    model.setMode(FolderModel::NormalMode);
    model.setViewMode(FolderModel::ListViewMode);
    QCOMPARE(m_test->told.taken(), QStringList({u"mode 0"_s, u"view 1"_s}));
    QVERIFY(model.setProperty("mode", 1));
    QVERIFY(model.setProperty("viewMode", 0));
    QCOMPARE(m_test->told.taken(), QStringList({u"mode 1"_s, u"view 0"_s}));
}

void tst_FolderRoles::modesStay()
{
    m_test->tree.make({u"a.jpg"_s});
    FolderModel &model = m_test->model;
    model.setViewMode(FolderModel::ListViewMode);
    model.selectFile(m_test->path(u"a.jpg"_s), true);
    model.setMode(FolderModel::NormalMode); // the selection is for the screens to clear
    QCOMPARE(model.countSelected(), 1);
    model.changeFolder(m_test->tree.top);
    model.loadFromList({});
    model.restore();
    model.clearSelection();
    QCOMPARE(model.mode(), FolderModel::NormalMode);
    QCOMPARE(model.viewMode(), FolderModel::ListViewMode);
}

void tst_FolderRoles::extensions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("extension");

    QTest::newRow("one dot") << u"a.jpg"_s << u"jpg"_s;
    QTest::newRow("two dots") << u"a.b.jpg"_s << u"b.jpg"_s;
    QTest::newRow("none") << u"a"_s << u""_s;
    QTest::newRow("empty") << u""_s << u""_s;
    QTest::newRow("a dot at the end") << u"a."_s << u""_s;
    QTest::newRow("a dot at the beginning") << u".jpg"_s << u"jpg"_s;
    QTest::newRow("in the letter case that it has") << u"a.JPG"_s << u"JPG"_s;
    QTest::newRow("of a path") << u"/x.y/a.jpg"_s << u"jpg"_s;
    QTest::newRow("only in the folder") << u"/x.y/a"_s << u""_s;
}

void tst_FolderRoles::extensions()
{
    QFETCH(QString, name);
    QFETCH(QString, extension);

    QCOMPARE(m_test->model.getExtension(name), extension);
}

QTEST_GUILESS_MAIN(tst_FolderRoles)
#include "tst_folder_roles.moc"
