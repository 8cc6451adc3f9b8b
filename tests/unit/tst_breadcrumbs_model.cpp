// The way to the folder on show, crumb by crumb.

#include "breadcrumbs_model.h"
#include "folder_fixture.h"
#include "meta_object_lines.h"

#include <QMetaEnum>

#include <limits>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::BreadcrumbsModel;
using lindenreed::picture_stand::FolderModel;
using lindenreed::picture_stand::Storage;

class tst_BreadcrumbsModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void beforeTheFirstReport(); // first: there is one storage object in a process
    void metaObject();
    void roles();
    void nothingOutside();
    void ways_data();
    void ways();
    void folderOnACard();
    void storageWhosePathIsInside();
    void storageThatIsGoneIsOnEachWay();
    void resetsOnce();
    void taps();
    void tapOnThePresentFolder();
    void tapsBesideTheCrumbs_data();
    void tapsBesideTheCrumbs();
    void steersTheFolders();
    void listLeavesTheWay();
    void storagesAloneLeaveTheWay();

private:
    QStringList names() const
    {
        QStringList found;
        for (int row = 0; row < m_model->rowCount(); ++row)
            found.append(m_model->data(m_model->index(row), BreadcrumbsModel::NameRole).toString());
        return found;
    }
    /// Connects both models as the application does.
    void joinFolders() const
    {
        connect(&m_test->model, &FolderModel::changedFolder, m_model.get(), &BreadcrumbsModel::changeFolder);
        connect(m_model.get(), &BreadcrumbsModel::changedFolder, &m_test->model, &FolderModel::changeFolder);
    }
    /// What tapping on each crumb asks for.
    QStringList askedFor()
    {
        QStringList paths;
        for (int row = 0; row < m_model->rowCount(); ++row) {
            QSignalSpy asked(m_model.get(), &BreadcrumbsModel::changedFolder);
            m_model->changeFolderByIndex(row);
            paths.append(asked.isEmpty() ? u"nothing"_s : asked.constFirst().constFirst().toString());
        }
        return paths;
    }

    bool m_first = true;
    std::unique_ptr<FolderFixture> m_test;
    std::unique_ptr<BreadcrumbsModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void tst_BreadcrumbsModel::init()
{
    m_model = std::make_unique<BreadcrumbsModel>();
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_model.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    if (std::exchange(m_first, false))
        return;
    m_test = std::make_unique<FolderFixture>();
    m_test->tree.make({u"a/b/c.jpg"_s, u"2023.01/June/"_s, u"x.jpg/"_s, u"file"_s});
}

void tst_BreadcrumbsModel::cleanup()
{
    m_tester.reset();
    m_model.reset();
    m_test.reset();
}

void tst_BreadcrumbsModel::beforeTheFirstReport()
{
    const MediaFixture media;
    QCOMPARE(m_model->rowCount(), 0);
    m_model->changeFolderByIndex(0); // nothing to tap on
    m_model->changeFolder(u"/mnt/ext1"_s);
    QCOMPARE(names(), QStringList{QString()});
    QVERIFY(MediaFixture::settled());
    QCOMPARE(names(), QStringList{QString()}); // the report alone does not change it
    m_model->changeFolder(u"/mnt/ext1"_s);
    QCOMPARE(names(), QStringList({QString(), u"This device"_s}));
}

void tst_BreadcrumbsModel::metaObject()
{
    const QMetaObject &meta = BreadcrumbsModel::staticMetaObject;
    QCOMPARE(meta.className(), "lindenreed::picture_stand::BreadcrumbsModel");
    QCOMPARE(meta.superClass(), &QAbstractListModel::staticMetaObject);
    QVERIFY(!m_model->parent());

    QCOMPARE(methodLines(meta),
             QByteArrayList({"signal void changedFolder(QString) ", "slot void changeFolder(QString) folder",
                             "slot void changeFolderByIndex(int) index"}));
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());

    QCOMPARE(meta.enumeratorCount() - meta.enumeratorOffset(), 1);
    const QMetaEnum roles = meta.enumerator(meta.enumeratorOffset());
    QCOMPARE(QByteArray(roles.name()), QByteArray("ContentDataRoles"));
    QCOMPARE(roles.keyCount(), 3);
    QCOMPARE(roles.keyToValue("IndexRole"), 257);
    QCOMPARE(roles.keyToValue("NameRole"), 258);
    QCOMPARE(roles.keyToValue("DisplayRole"), 259);
}

void tst_BreadcrumbsModel::roles()
{
    const QHash<int, QByteArray> expected{{257, "index"}, {258, "name"}, {259, "display"}};
    QCOMPARE(m_model->roleNames(), expected);
    m_model->changeFolder(m_test->path(u"a"_s));
    QCOMPARE(m_model->rowCount(), 4);
    const QStringList shown{QString(), u"This device"_s, u"album"_s, u"a"_s};
    for (int row = 0; row < 4; ++row) {
        QCOMPARE(m_model->data(m_model->index(row), 257), QVariant(row));
        QCOMPARE(m_model->data(m_model->index(row), 258), QVariant(shown.at(row)));
        QCOMPARE(m_model->data(m_model->index(row), 259), QVariant(shown.at(row)));
    }
    QCOMPARE(m_model->rowCount(m_model->index(0)), 4); // whatever the parent
}

void tst_BreadcrumbsModel::nothingOutside()
{
    m_model->changeFolder(m_test->tree.top);
    const QModelIndex last = m_model->index(2);
    QVERIFY(m_model->data(last, BreadcrumbsModel::NameRole).isValid());
    for (const int role : {256, 260, int(Qt::DisplayRole), -1})
        QVERIFY2(!m_model->data(last, role).isValid(), qPrintable(QString::number(role)));
    QVERIFY(!m_model->data({}, BreadcrumbsModel::NameRole).isValid());
    m_model->changeFolder(u"/mnt/ext1"_s);
    QVERIFY(!m_model->data(last, BreadcrumbsModel::NameRole).isValid()); // right behind the end
    m_model->changeFolder({});
    QVERIFY(!m_model->data(last, BreadcrumbsModel::NameRole).isValid());
}

void tst_BreadcrumbsModel::ways_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QStringList>("expected"); // behind the first
    QTest::addColumn<QStringList>("taps"); // what each of them asks for

    const QString root = u"This device"_s;
    const QString path = u"/mnt/ext1"_s;
    const QString no = u"nothing"_s;
    QTest::newRow("no folder") << QString() << QStringList() << QStringList{no};
    QTest::newRow("not there") << path + u"/nothing"_s << QStringList() << QStringList{QString()};
    QTest::newRow("a file") << path + u"/album/file"_s << QStringList() << QStringList{QString()};
    QTest::newRow("on none of the storages") << u"/usr"_s << QStringList() << QStringList{QString()};
    QTest::newRow("a card that is out") << u"/mnt/ext2"_s << QStringList() << QStringList{QString()};
    QTest::newRow("the storage") << path << QStringList{root} << QStringList{QString(), no};
    QTest::newRow("one level") << path + u"/album"_s << QStringList{root, u"album"_s}
                               << QStringList{QString(), path, no};
    QTest::newRow("two levels") << path + u"/album/a"_s << QStringList{root, u"album"_s, u"a"_s}
                                << QStringList{QString(), path, path + u"/album"_s, no};
    QTest::newRow("three levels, with a slash at the end")
        << path + u"/album/a/b/"_s << QStringList{root, u"album"_s, u"a"_s, u"b"_s}
        << QStringList{QString(), path, path + u"/album"_s, path + u"/album/a"_s, path + u"/album/a/b"_s};
    QTest::newRow("a dot on the way")
        << path + u"/album/2023.01/June"_s << QStringList{root} << QStringList{QString(), path};
    QTest::newRow("a dot at its end")
        << path + u"/album/x.jpg"_s << QStringList{root} << QStringList{QString(), path};
}

void tst_BreadcrumbsModel::ways()
{
    QFETCH(QString, folder);
    QFETCH(QStringList, expected);
    QFETCH(QStringList, taps);

    m_model->changeFolder(folder);
    QCOMPARE(names(), QStringList{QString()} + expected);
    QCOMPARE(askedFor(), taps);
}

void tst_BreadcrumbsModel::folderOnACard()
{
    MediaFixture::plug(true, true);
    QVERIFY(MediaFixture::look());
    const FolderTree trip(u"/mnt/ext2/trip"_s);
    m_model->changeFolder(trip.top);
    QCOMPARE(names(), QStringList({QString(), u"SD card"_s, u"trip"_s}));
    QCOMPARE(askedFor(), QStringList({QString(), u"/mnt/ext2"_s, u"nothing"_s}));
    m_model->changeFolder(u"/mnt/ext3"_s);
    QCOMPARE(names(), QStringList({QString(), u"USB drive"_s}));
}

void tst_BreadcrumbsModel::storageWhosePathIsInside()
{
    m_test->tree.make({u"MNT/Ext2/"_s});
    MediaFixture::plug(true, true);
    QVERIFY(MediaFixture::look());
    m_model->changeFolder(m_test->path(u"MNT/Ext2"_s)); // in any letter case, and anywhere
    QCOMPARE(names(),
             QStringList({QString(), u"This device"_s, u"album"_s, u"MNT"_s, u"Ext2"_s, u"SD card"_s}));
}

void tst_BreadcrumbsModel::storageThatIsGoneIsOnEachWay()
{
    m_test->media.device.setMounted(true, false); // so it is said, but nothing is there
    QVERIFY(MediaFixture::look());
    m_model->changeFolder(m_test->tree.top);
    QCOMPARE(names(), QStringList({QString(), u"This device"_s, u"album"_s, u"SD card"_s}));
    QCOMPARE(askedFor(), QStringList({QString(), u"/mnt/ext1"_s, u"nothing"_s, u"/mnt/ext2"_s}));
    m_test->media.device.setMounted(false, false);
}

void tst_BreadcrumbsModel::resetsOnce()
{
    const QSignalSpy about(m_model.get(), &QAbstractItemModel::modelAboutToBeReset);
    const QSignalSpy reset(m_model.get(), &QAbstractItemModel::modelReset);
    const QSignalSpy asked(m_model.get(), &BreadcrumbsModel::changedFolder);
    int rowsThen = -1;
    connect(m_model.get(), &QAbstractItemModel::modelReset, this, [&] { rowsThen = m_model->rowCount(); });
    m_model->changeFolder(m_test->tree.top);
    QCOMPARE(about.count(), 1);
    QCOMPARE(reset.count(), 1);
    QCOMPARE(rowsThen, 3);
    m_model->changeFolder(m_test->tree.top); // the same again
    QCOMPARE(reset.count(), 2);
    QCOMPARE(asked.count(), 0); // so that nothing goes in circles
}

void tst_BreadcrumbsModel::taps()
{
    m_model->changeFolder(m_test->path(u"a/b"_s));
    const QSignalSpy reset(m_model.get(), &QAbstractItemModel::modelReset);
    QCOMPARE(
        askedFor(),
        QStringList({QString(), u"/mnt/ext1"_s, u"/mnt/ext1/album"_s, u"/mnt/ext1/album/a"_s, u"nothing"_s}));
    QCOMPARE(reset.count(), 0); // a wish alone
    QCOMPARE(names().size(), 5);
}

void tst_BreadcrumbsModel::tapOnThePresentFolder()
{
    const QSignalSpy asked(m_model.get(), &BreadcrumbsModel::changedFolder);
    m_model->changeFolder({});
    QCOMPARE(names(), QStringList{QString()});
    m_model->changeFolderByIndex(0);
    QCOMPARE(asked.count(), 0);
    m_model->changeFolder(m_test->path(u"a/"_s)); // compared as it was given
    m_model->changeFolderByIndex(3);
    QCOMPARE(asked.count(), 1);
    QCOMPARE(asked.constFirst().constFirst().toString(), m_test->path(u"a"_s));
}

void tst_BreadcrumbsModel::tapsBesideTheCrumbs_data()
{
    QTest::addColumn<int>("index");

    QTest::newRow("right behind the last") << 3;
    QTest::newRow("far behind") << std::numeric_limits<int>::max();
    QTest::newRow("none") << -1;
    QTest::newRow("far before") << std::numeric_limits<int>::min();
}

void tst_BreadcrumbsModel::tapsBesideTheCrumbs()
{
    QFETCH(int, index);

    m_model->changeFolder(m_test->tree.top);
    QCOMPARE(m_model->rowCount(), 3);
    const QSignalSpy asked(m_model.get(), &BreadcrumbsModel::changedFolder);
    m_model->changeFolderByIndex(index);
    QCOMPARE(asked.count(), 0);
}

void tst_BreadcrumbsModel::steersTheFolders()
{
    joinFolders();
    m_test->model.changeFolder(m_test->path(u"a/b"_s));
    QCOMPARE(names(), QStringList({QString(), u"This device"_s, u"album"_s, u"a"_s, u"b"_s}));
    m_test->told.taken();

    m_model->changeFolderByIndex(2);
    QCOMPARE(names(), QStringList({QString(), u"This device"_s, u"album"_s}));
    QCOMPARE(m_test->told.taken().filter(u"folder"_s), QStringList{u"folder /mnt/ext1/album"_s}); // once
    m_model->changeFolderByIndex(1);
    QCOMPARE(names(), QStringList({QString(), u"This device"_s}));
    QVERIFY(m_test->names().contains(u"album"_s));
    m_model->changeFolderByIndex(0);
    QCOMPARE(names(), QStringList{QString()});
    QCOMPARE(m_test->rows(), QStringList{u"This device /mnt/ext1 1"_s});
}

void tst_BreadcrumbsModel::listLeavesTheWay()
{
    joinFolders();
    m_test->model.changeFolder(m_test->path(u"a/b"_s));
    const QSignalSpy reset(m_model.get(), &QAbstractItemModel::modelReset);
    m_test->model.loadFromList({m_test->path(u"a/b/c.jpg"_s)});
    m_test->model.storageChanged();
    QCOMPARE(reset.count(), 0);
    QCOMPARE(names().size(), 5);
    m_test->model.restore();
    QCOMPARE(reset.count(), 1);
    QCOMPARE(names().size(), 5);
}

void tst_BreadcrumbsModel::storagesAloneLeaveTheWay()
{
    joinFolders();
    m_test->followStorages();
    MediaFixture::plug(true, false);
    QVERIFY(MediaFixture::look());
    m_test->model.changeFolder(u"/mnt/ext2"_s);
    QCOMPARE(names(), QStringList({QString(), u"SD card"_s}));
    MediaFixture::plug(false, false);
    QVERIFY(MediaFixture::look());
    QCOMPARE(names(), QStringList({QString(), u"SD card"_s}));
    m_test->model.restore();
    QCOMPARE(names(), QStringList{QString()});
    QCOMPARE(askedFor(), QStringList{QString()}); // out of it, to the storages
}

QTEST_GUILESS_MAIN(tst_BreadcrumbsModel)
#include "tst_breadcrumbs_model.moc"
