// What a folder has, as QDir tells it: also where names are links.

#include "folder_names.h"
#include "folder_tree.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::filesBelow;
using lindenreed::picture_stand::folderNames;

namespace {

/// A folder with files, folders and a FIFO, and with links to each and to nothing.
class Links
{
public:
    Links()
        : m_tree(m_folder.path() + u"/top"_s)
    {
        m_tree.make(
            {u"a.png"_s, u"B.PNG"_s, u"c.txt"_s, u".hidden.png"_s, u"sub.png/d.png"_s, u"sub.png/e.txt"_s});
        if (::mkfifo(QFile::encodeName(m_tree.path(u"fifo.png"_s)).constData(), 0600) != 0)
            qFatal("no FIFO");
        link(u"a.png"_s, u"to a file.png"_s);
        link(u"sub.png"_s, u"to a folder.png"_s);
        link(u"fifo.png"_s, u"to a FIFO.png"_s);
        link(u"to a file.png"_s, u"to a link.png"_s);
        link(u"nowhere.png"_s, u"to nothing.png"_s);
        link(u"to itself.png"_s, u"to itself.png"_s);
        link(u"."_s, u"to the top"_s);
        link(u"a.png"_s, u".hidden link.png"_s);
    }

    QString top() const { return m_tree.top; }

private:
    void link(const QString &target, const QString &name) const
    {
        if (!QFile::link(target, m_tree.path(name)))
            qFatal("no link");
    }

    QTemporaryDir m_folder;
    FolderTree m_tree;
};

} // namespace

class tst_FolderNames : public QObject
{
    Q_OBJECT

private slots:
    void asQDirTellsThem_data();
    void asQDirTellsThem();
    void linksByWhatTheyLeadTo();
    void filesBelowFollowNoLinkToAFolder();

private:
    Links m_links;
};

void tst_FolderNames::asQDirTellsThem_data()
{
    QTest::addColumn<QDir::Filters>("kinds");
    QTest::addColumn<QStringList>("filters");

    QTest::newRow("folders") << QDir::Filters(QDir::Dirs) << QStringList();
    QTest::newRow("files") << QDir::Filters(QDir::Files) << QStringList();
    QTest::newRow("both") << QDir::Filters(QDir::Dirs | QDir::Files) << QStringList();
    QTest::newRow("folders called pictures") << QDir::Filters(QDir::Dirs) << QStringList{u"*.png"_s};
    QTest::newRow("pictures") << QDir::Filters(QDir::Files) << QStringList{u"*.png"_s};
    QTest::newRow("both, called pictures")
        << QDir::Filters(QDir::Dirs | QDir::Files) << QStringList{u"*.jpg"_s, u"*.png"_s};
}

void tst_FolderNames::asQDirTellsThem()
{
    QFETCH(QDir::Filters, kinds);
    QFETCH(QStringList, filters);

    QStringList names = QDir(m_links.top()).entryList(filters, kinds | QDir::NoDotAndDotDot, QDir::Name);
    if (!kinds.testFlag(QDir::Files))
        names.removeAll(u"to a FIFO.png"_s); // to QDir whatever is no file
    QVERIFY(!names.isEmpty());
    QCOMPARE(folderNames(m_links.top(), kinds, filters), names);
}

void tst_FolderNames::linksByWhatTheyLeadTo()
{
    const auto links = [this](QDir::Filters kinds) { return folderNames(m_links.top(), kinds, {u"to *"_s}); };
    QCOMPARE(links(QDir::Dirs), (QStringList{u"to a folder.png"_s, u"to the top"_s}));
    QCOMPARE(links(QDir::Files), (QStringList{u"to a FIFO.png"_s, u"to a file.png"_s, u"to a link.png"_s}));
}

void tst_FolderNames::filesBelowFollowNoLinkToAFolder()
{
    QStringList paths = filesBelow(m_links.top(), {u"*.png"_s});
    paths.sort();
    QStringList expected{u"B.PNG"_s,         u"a.png"_s,         u"sub.png/d.png"_s,
                         u"to a FIFO.png"_s, u"to a file.png"_s, u"to a link.png"_s};
    for (QString &path : expected)
        path.prepend(m_links.top() + u'/');
    QCOMPARE(paths, expected);
}

QTEST_GUILESS_MAIN(tst_FolderNames)
#include "tst_folder_names.moc"
