// A list of pictures in place of a folder.

#include "folder_fixture.h"

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;
using lindenreed::picture_stand::Storage;

class tst_FolderList : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_test.reset(); }

    void rowsInTheOrderOfTheList();
    void whatIsToldInOrder();
    void noRows_data();
    void noRows();
    void duplicatesStay();
    void selectionOfADuplicate();
    void pathsAreUnchanged_data();
    void pathsAreUnchanged();
    void vanishedFilesReturn();
    void listOfACard();
    void ignoredFilesAreForgotten();
    void storagesForgetTheIgnored();
    void theFolderIsRemembered();
    void listAfterTheStorages();

private:
    QString path(const QString &entry) const { return m_test->path(entry); }

    std::unique_ptr<FolderFixture> m_test;
};

void tst_FolderList::initTestCase()
{
    const MediaFixture media;
    QVERIFY(MediaFixture::settled());
}

void tst_FolderList::init()
{
    m_test = std::make_unique<FolderFixture>();
    m_test->tree.make({u"sub/d.jpg"_s, u"a.jpg"_s, u"b.jpg"_s, u"notes.txt"_s});
}

void tst_FolderList::rowsInTheOrderOfTheList()
{
    m_test->model.loadFromList({path(u"sub/d.jpg"_s), path(u"gone.jpg"_s), path(u"b.jpg"_s),
                                path(u"notes.txt"_s), path(u"a.jpg"_s), path(u"sub"_s)});
    QCOMPARE(m_test->rows(),
             QStringList({u"d.jpg /mnt/ext1/album/sub/d.jpg 5"_s, u"b.jpg /mnt/ext1/album/b.jpg 5"_s,
                          u"notes.txt /mnt/ext1/album/notes.txt 5"_s, u"a.jpg /mnt/ext1/album/a.jpg 5"_s,
                          u"sub /mnt/ext1/album/sub 5"_s})); // whatever is there is taken for a picture
    QCOMPARE(m_test->model.countFiles(), 5);
}

void tst_FolderList::whatIsToldInOrder()
{
    const QSignalSpy thumbnails(&Storage::instance(), &Storage::listFilesChanged);
    int countThen = -1;
    const QObject context;
    connect(&m_test->model, &FolderModel::modelReset, &context,
            [&] { countThen = m_test->model.countFiles(); });
    m_test->model.loadFromList({path(u"a.jpg"_s)});
    QCOMPARE(m_test->told.taken(), QStringList({u"about"_s, u"reset 1"_s, u"files 1"_s}));
    QCOMPARE(countThen, 0); // counted behind the reset
    m_test->model.loadFromList({path(u"b.jpg"_s)}); // told also where the number is the same
    QCOMPARE(m_test->told.taken(), QStringList({u"about"_s, u"reset 1"_s, u"files 1"_s}));
    QVERIFY(thumbnails.isEmpty());
}

void tst_FolderList::noRows_data()
{
    QTest::addColumn<QStringList>("files");

    QTest::newRow("empty list") << QStringList();
    QTest::newRow("nothing is there") << QStringList{u"/gone.jpg"_s, u"/mnt/ext2/gone.jpg"_s};
    QTest::newRow("no path") << QStringList{QString()};
    QTest::newRow("a link to nothing") << QStringList{u"/mnt/ext1/album/link.jpg"_s};
}

void tst_FolderList::noRows()
{
    QFETCH(QStringList, files);

    QVERIFY(QFile::link(u"/nowhere"_s, path(u"link.jpg"_s)));
    m_test->model.changeFolder(m_test->tree.top);
    m_test->told.taken();
    m_test->model.loadFromList(files);
    QCOMPARE(m_test->told.taken(), QStringList({u"about"_s, u"reset 0"_s, u"files 0"_s}));
    QCOMPARE(m_test->model.countFiles(), 0);
}

void tst_FolderList::duplicatesStay()
{
    const QString a = path(u"a.jpg"_s);
    m_test->model.loadFromList({a, path(u"b.jpg"_s), a});
    QCOMPARE(m_test->names(), QStringList({u"a.jpg"_s, u"b.jpg"_s, u"a.jpg"_s}));
    QCOMPARE(m_test->model.countFiles(), 3);
}

void tst_FolderList::selectionOfADuplicate()
{
    const QString a = path(u"a.jpg"_s);
    m_test->model.loadFromList({path(u"b.jpg"_s), a, a});
    m_test->told.taken();
    m_test->model.selectFile(a, true);
    QCOMPARE(m_test->told.taken(), QStringList({u"row 1 to 1: 263"_s, u"selected 1"_s})); // the first
    QCOMPARE(m_test->selectedNames(), QStringList({u"a.jpg"_s, u"a.jpg"_s}));
    m_test->model.selectAllFiles();
    QCOMPARE(
        m_test->told.taken(),
        QStringList({u"row 0 to 0: 263"_s, u"row 1 to 1: 263"_s, u"row 2 to 2: 263"_s, u"selected 2"_s}));
    m_test->model.clearSelection();
    QCOMPARE(m_test->told.taken(),
             QStringList({u"row 0 to 0: 263"_s, u"row 1 to 1: 263"_s, u"selected 0"_s}));
}

void tst_FolderList::pathsAreUnchanged_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");

    QTest::newRow("a way around") << u"/mnt/ext1/album/../album//a.jpg"_s << u"a.jpg"_s;
    QTest::newRow("relative") << u"a.jpg"_s << u"a.jpg"_s;
    QTest::newRow("a percent sign") << u"/mnt/ext1/album/50%.jpg"_s << u"50%.jpg"_s;
    QTest::newRow("other letters") << u"/mnt/ext1/album/日本 ä.jpg"_s << u"日本 ä.jpg"_s;
}

void tst_FolderList::pathsAreUnchanged()
{
    QFETCH(QString, path);
    QFETCH(QString, name);

    m_test->tree.make({name});
    const auto working = workIn(m_test->tree.top);
    m_test->model.loadFromList({path});
    QCOMPARE(m_test->rows(), QStringList{u"%1 %2 5"_s.arg(name, path)});
}

void tst_FolderList::vanishedFilesReturn()
{
    m_test->model.loadFromList({path(u"later.jpg"_s), path(u"a.jpg"_s), path(u"b.jpg"_s)});
    QCOMPARE(m_test->names(), QStringList({u"a.jpg"_s, u"b.jpg"_s}));
    m_test->tree.make({u"later.jpg"_s});
    QVERIFY(QFile::remove(path(u"a.jpg"_s)));
    QCOMPARE(m_test->names(), QStringList({u"a.jpg"_s, u"b.jpg"_s})); // nobody has looked
    m_test->told.taken();
    m_test->model.storageChanged();
    QCOMPARE(m_test->names(), QStringList({u"later.jpg"_s, u"b.jpg"_s}));
    QCOMPARE(m_test->told.taken(), QStringList({u"about"_s, u"reset 2"_s, u"files 2"_s}));
    m_test->tree.make({u"a.jpg"_s});
    m_test->model.storageChanged(); // the whole list was kept
    QCOMPARE(m_test->names(), QStringList({u"later.jpg"_s, u"a.jpg"_s, u"b.jpg"_s}));
}

void tst_FolderList::listOfACard()
{
    m_test->followStorages();
    MediaFixture::plug(true, false);
    const FolderTree trip(u"/mnt/ext2/trip"_s);
    trip.make({u"f.jpg"_s});
    MediaFixture::plug(false, false);
    m_test->model.loadFromList({path(u"a.jpg"_s), trip.path(u"f.jpg"_s)});
    QCOMPARE(m_test->names(), QStringList{u"a.jpg"_s});
    MediaFixture::plug(true, false);
    QVERIFY(MediaFixture::look());
    QCOMPARE(m_test->names(), QStringList({u"a.jpg"_s, u"f.jpg"_s}));
    MediaFixture::plug(false, false);
    QVERIFY(MediaFixture::look());
    QCOMPARE(m_test->names(), QStringList{u"a.jpg"_s});
    QCOMPARE(m_test->model.countFiles(), 1);
    MediaFixture::plug(true, false);
}

void tst_FolderList::ignoredFilesAreForgotten()
{
    FolderModel &model = m_test->model;
    model.setListIgnoreSelection({path(u"a.jpg"_s)});
    QStringList selectedThen;
    const QObject context;
    // The list is there until the rows are; it is gone when the count is told.
    connect(&model, &FolderModel::countFilesChanged, &context, [&] {
        model.selectAllFiles();
        selectedThen = m_test->selectedNames();
    });
    model.loadFromList({path(u"a.jpg"_s), path(u"b.jpg"_s)});
    QCOMPARE(model.countFiles(), 2); // the ignored one counts
    QCOMPARE(selectedThen, QStringList({u"a.jpg"_s, u"b.jpg"_s}));
    model.clearSelection();
    model.changeFolder(m_test->tree.top);
    QCOMPARE(model.countFiles(), 2);
}

void tst_FolderList::storagesForgetTheIgnored()
{
    FolderModel &model = m_test->model;
    model.loadFromList({path(u"a.jpg"_s)});
    model.setListIgnoreSelection({path(u"a.jpg"_s)});
    model.storageChanged(); // shows the list again
    model.restore();
    model.changeFolder(m_test->tree.top);
    QCOMPARE(model.countFiles(), 2);
    // In a folder they are kept.
    model.setListIgnoreSelection({path(u"a.jpg"_s)});
    model.storageChanged();
    model.restore();
    QCOMPARE(model.countFiles(), 1);
}

void tst_FolderList::theFolderIsRemembered()
{
    FolderModel &model = m_test->model;
    model.changeFolder(path(u"sub"_s));
    model.loadFromList({path(u"a.jpg"_s)});
    model.storageChanged();
    QCOMPARE(m_test->names(), QStringList{u"a.jpg"_s});
    model.restore();
    QCOMPARE(m_test->names(), QStringList{u"d.jpg"_s});
}

void tst_FolderList::listAfterTheStorages()
{
    FolderModel &model = m_test->model;
    model.changeFolder({});
    model.loadFromList({path(u"a.jpg"_s)});
    m_test->told.taken();
    model.storageChanged(); // the list alone is shown anew, although the storages were listed last
    QCOMPARE(m_test->told.taken(), QStringList({u"about"_s, u"reset 1"_s, u"files 1"_s}));
    model.restore();
    QCOMPARE(m_test->names(), QStringList{u"This device"_s});
}

QTEST_GUILESS_MAIN(tst_FolderList)
#include "tst_folder_list.moc"
