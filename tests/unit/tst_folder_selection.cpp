// Pictures that are selected in the browser.

#include "folder_fixture.h"

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

class tst_FolderSelection : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_test.reset(); }

    void oneFile();
    void sameAgain();
    void pathWithoutARow();
    void firstRowOfAPathIsTold();
    void ignoredFileCanBePicked();
    void acrossFolders();
    void acrossStorages();
    void allFiles();
    void allFilesAddToTheRest();
    void allFilesAreIgnored();
    void allOfNothing();
    void clear();
    void clearWithoutASelection();
    void clearLeavesFolders();
    void rowsThatChangeKeepTheSelection();
    void selectedPaths();

private:
    QString path(const QString &entry) const { return m_test->path(entry); }
    QStringList selected() const
    {
        QStringList paths = m_test->model.getSelected();
        paths.sort(); // they come in no order
        return paths;
    }

    std::unique_ptr<FolderFixture> m_test;
};

void tst_FolderSelection::initTestCase()
{
    const MediaFixture media;
    QVERIFY(MediaFixture::settled());
}

/// Rows: sub, two cells that are empty, a.jpg, b.jpg, c.jpg.
void tst_FolderSelection::init()
{
    m_test = std::make_unique<FolderFixture>();
    m_test->tree.make({u"sub/d.jpg"_s, u"sub/e.jpg"_s, u"a.jpg"_s, u"b.jpg"_s, u"c.jpg"_s});
    m_test->model.changeFolder(m_test->tree.top);
    m_test->told.taken();
}

void tst_FolderSelection::oneFile()
{
    FolderModel &model = m_test->model;
    model.selectFile(path(u"b.jpg"_s), true);
    QCOMPARE(m_test->told.taken(), QStringList({u"row 4 to 4: 263"_s, u"selected 1"_s}));
    QCOMPARE(m_test->selectedNames(), QStringList{u"b.jpg"_s});
    QCOMPARE(model.countSelected(), 1);
    QCOMPARE(model.property("countSelected").toInt(), 1);
    QCOMPARE(model.getSelected(), QStringList{path(u"b.jpg"_s)});
    QCOMPARE(model.countFiles(), 3); // what can be picked stays

    model.selectFile(path(u"b.jpg"_s), false);
    QCOMPARE(m_test->told.taken(), QStringList({u"row 4 to 4: 263"_s, u"selected 0"_s}));
    QCOMPARE(m_test->selectedNames(), QStringList());
    QCOMPARE(model.getSelected(), QStringList());
}

void tst_FolderSelection::sameAgain()
{
    const QStringList once{u"row 3 to 3: 263"_s, u"selected 1"_s};
    m_test->model.selectFile(path(u"a.jpg"_s), true);
    QCOMPARE(m_test->told.taken(), once);
    m_test->model.selectFile(path(u"a.jpg"_s), true);
    QCOMPARE(m_test->told.taken(), once);
    m_test->model.selectFile(path(u"c.jpg"_s), false);
    QCOMPARE(m_test->told.taken(), QStringList({u"row 5 to 5: 263"_s, u"selected 1"_s}));
}

void tst_FolderSelection::pathWithoutARow()
{
    m_test->model.selectFile(u"/elsewhere.jpg"_s, true);
    QCOMPARE(m_test->told.taken(), QStringList{u"selected 1"_s});
    QCOMPARE(selected(), QStringList{u"/elsewhere.jpg"_s});
    m_test->model.selectFile(path(u"A.jpg"_s), true); // another letter case is another file
    QCOMPARE(m_test->told.taken(), QStringList{u"selected 2"_s});
    QCOMPARE(m_test->selectedNames(), QStringList());
    m_test->model.selectFile(u"/elsewhere.jpg"_s, false);
    QCOMPARE(m_test->told.taken(), QStringList{u"selected 1"_s});
    QCOMPARE(selected(), QStringList{path(u"A.jpg"_s)});
}

void tst_FolderSelection::firstRowOfAPathIsTold()
{
    m_test->tree.make({u"t/"_s, u"x.jpg/"_s});
    m_test->model.changeFolder(m_test->tree.top);
    m_test->told.taken();
    m_test->model.selectFile(path(u"x.jpg"_s), true);
    // Among the folders; the picture of the same name is row 6.
    QCOMPARE(m_test->told.taken(), QStringList({u"row 2 to 2: 263"_s, u"selected 1"_s}));
    QCOMPARE(m_test->selectedNames(), QStringList({u"x.jpg"_s, u"x.jpg"_s}));
    m_test->model.clearSelection(); // pictures alone
    QCOMPARE(m_test->told.taken(), QStringList({u"row 6 to 6: 263"_s, u"selected 0"_s}));
}

void tst_FolderSelection::ignoredFileCanBePicked()
{
    m_test->model.setListIgnoreSelection({path(u"a.jpg"_s)});
    m_test->model.selectFile(path(u"a.jpg"_s), true);
    QCOMPARE(m_test->selectedNames(), QStringList{u"a.jpg"_s});
}

void tst_FolderSelection::acrossFolders()
{
    FolderModel &model = m_test->model;
    model.selectFile(path(u"a.jpg"_s), true);
    model.selectFile(path(u"c.jpg"_s), true);
    model.changeFolder(path(u"sub"_s));
    QCOMPARE(model.countSelected(), 2);
    QCOMPARE(m_test->selectedNames(), QStringList());
    model.selectFile(path(u"sub/e.jpg"_s), true);
    QCOMPARE(model.countSelected(), 3);
    QCOMPARE(m_test->selectedNames(), QStringList{u"e.jpg"_s});
    model.changeFolder(m_test->tree.top);
    QCOMPARE(m_test->selectedNames(), QStringList({u"a.jpg"_s, u"c.jpg"_s}));
}

void tst_FolderSelection::acrossStorages()
{
    FolderModel &model = m_test->model;
    MediaFixture::plug(true, false);
    QVERIFY(MediaFixture::look());
    const FolderTree trip(u"/mnt/ext2/trip"_s);
    trip.make({u"f.jpg"_s});
    model.selectAllFiles();
    model.changeFolder(trip.top);
    model.selectAllFiles();
    QCOMPARE(selected(),
             QStringList({path(u"a.jpg"_s), path(u"b.jpg"_s), path(u"c.jpg"_s), u"/mnt/ext2/trip/f.jpg"_s}));
    // A card that is pulled leaves the selection alone.
    m_test->followStorages();
    MediaFixture::plug(false, false);
    QVERIFY(MediaFixture::look());
    QCOMPARE(model.countSelected(), 4);
    MediaFixture::plug(true, false);
}

void tst_FolderSelection::allFiles()
{
    m_test->model.setListIgnoreSelection({path(u"b.jpg"_s), path(u"C.jpg"_s)});
    m_test->model.selectAllFiles();
    QCOMPARE(m_test->told.taken(),
             QStringList({u"row 3 to 3: 263"_s, u"row 5 to 5: 263"_s, u"selected 2"_s}));
    QCOMPARE(m_test->selectedNames(), QStringList({u"a.jpg"_s, u"c.jpg"_s})); // no folder, no empty cell
    QCOMPARE(selected(), QStringList({path(u"a.jpg"_s), path(u"c.jpg"_s)}));
    m_test->model.clearListIgnoreSelection();
    QCOMPARE(m_test->told.taken(), QStringList());
    m_test->model.selectAllFiles(); // each picture is told, also where it was selected before
    QCOMPARE(
        m_test->told.taken(),
        QStringList({u"row 3 to 3: 263"_s, u"row 4 to 4: 263"_s, u"row 5 to 5: 263"_s, u"selected 3"_s}));
}

void tst_FolderSelection::allFilesAddToTheRest()
{
    m_test->model.selectFile(u"/elsewhere.jpg"_s, true);
    m_test->model.setListIgnoreSelection({path(u"a.jpg"_s)});
    m_test->model.selectFile(path(u"a.jpg"_s), true);
    m_test->model.selectAllFiles();
    QCOMPARE(selected(),
             QStringList({u"/elsewhere.jpg"_s, path(u"a.jpg"_s), path(u"b.jpg"_s), path(u"c.jpg"_s)}));
}

void tst_FolderSelection::allFilesAreIgnored()
{
    m_test->model.setListIgnoreSelection({path(u"a.jpg"_s), path(u"b.jpg"_s), path(u"c.jpg"_s)});
    m_test->model.selectAllFiles();
    QCOMPARE(m_test->told.taken(), QStringList{u"selected 0"_s});
    QCOMPARE(m_test->selectedNames(), QStringList());
}

void tst_FolderSelection::allOfNothing()
{
    m_test->model.changeFolder({});
    m_test->told.taken();
    m_test->model.selectAllFiles(); // storages are no pictures
    QCOMPARE(m_test->told.taken(), QStringList{u"selected 0"_s});
    m_test->model.loadFromList({});
    m_test->told.taken();
    m_test->model.selectAllFiles();
    QCOMPARE(m_test->told.taken(), QStringList{u"selected 0"_s});
}

void tst_FolderSelection::clear()
{
    FolderModel &model = m_test->model;
    model.changeFolder(path(u"sub"_s));
    model.selectAllFiles();
    model.changeFolder(m_test->tree.top);
    model.selectFile(path(u"a.jpg"_s), true);
    model.selectFile(path(u"c.jpg"_s), true);
    m_test->told.taken();
    model.clearSelection();
    QCOMPARE(m_test->told.taken(),
             QStringList({u"row 3 to 3: 263"_s, u"row 5 to 5: 263"_s, u"selected 0"_s}));
    QCOMPARE(m_test->selectedNames(), QStringList());
    QCOMPARE(model.getSelected(), QStringList()); // those of the other folder are gone, too
    model.changeFolder(path(u"sub"_s));
    QCOMPARE(m_test->selectedNames(), QStringList());
}

void tst_FolderSelection::clearWithoutASelection()
{
    m_test->model.clearSelection();
    QCOMPARE(m_test->told.taken(), QStringList{u"selected 0"_s});
}

void tst_FolderSelection::clearLeavesFolders()
{
    m_test->model.selectFile(path(u"sub"_s), true);
    QCOMPARE(m_test->told.taken(), QStringList({u"row 0 to 0: 263"_s, u"selected 1"_s}));
    m_test->model.clearSelection();
    QCOMPARE(m_test->told.taken(), QStringList{u"selected 0"_s}); // rows of pictures alone are told
    QCOMPARE(m_test->selectedNames(), QStringList());
}

void tst_FolderSelection::rowsThatChangeKeepTheSelection()
{
    FolderModel &model = m_test->model;
    model.selectFile(path(u"a.jpg"_s), true);
    m_test->told.taken();
    model.loadFromList({path(u"sub/d.jpg"_s), path(u"a.jpg"_s)});
    QCOMPARE(m_test->selectedNames(), QStringList{u"a.jpg"_s});
    model.storageChanged();
    model.restore();
    QCOMPARE(m_test->selectedNames(), QStringList{u"a.jpg"_s});
    QVERIFY(!m_test->told.taken().join(u'\n').contains(u"selected"_s));
    QVERIFY(QFile::remove(path(u"a.jpg"_s)));
    model.restore();
    QCOMPARE(selected(), QStringList{path(u"a.jpg"_s)}); // also without its file
}

void tst_FolderSelection::selectedPaths()
{
    QStringList paths;
    for (int i = 0; i < 100; ++i) {
        paths.append(u"/p/%1.jpg"_s.arg(i, 3, 10, QChar(u'0')));
        m_test->model.selectFile(paths.constLast(), true);
    }
    QCOMPARE(m_test->model.countSelected(), 100);
    QCOMPARE(selected(), paths);
}

QTEST_GUILESS_MAIN(tst_FolderSelection)
#include "tst_folder_selection.moc"
