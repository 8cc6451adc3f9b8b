// The theme's numbers: every one is checked.

#include <theme.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

class tst_Theme : public QObject
{
    Q_OBJECT

private slots:
    void refused_data();
    void refused();
    void missingFile();
    void usable();
};

void tst_Theme::refused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("complaint");

    const QString width = u"\"e3.galery_cover.width\" must be a whole number from 1 to 10000"_s;
    const QString height = u"\"e3.galery_cover.height\" must be a whole number from 1 to 10000"_s;
    const QByteArray right = "e3.galery_cover.width=220\n";
    QTest::newRow("empty") << QByteArray() << width;
    QTest::newRow("one number missing") << right << height;
    QTest::newRow("0 pixels") << right + "e3.galery_cover.height=0\n" << height;
    QTest::newRow("below 0") << right + "e3.galery_cover.height=-1\n" << height;
    QTest::newRow("more than a panel has") << right + "e3.galery_cover.height=10001\n" << height;
    QTest::newRow("beyond int") << right + "e3.galery_cover.height=99999999999\n" << height;
    QTest::newRow("no number") << right + "e3.galery_cover.height=tall\n" << height;
    QTest::newRow("one too many") << right + "e3.galery_cover.height=1\ncolour=1\n"
                                  << u"\"colour\" is not known"_s;
    QTest::newRow("a name that steers a terminal") << right + "e3.galery_cover.height=1\n\x1b[2J\r\t=1\n"
                                                   << uR"("\x1b[2J\r\t" is not known)"_s;
}

void tst_Theme::refused()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, complaint);

    const QTemporaryDir folder;
    QFile file(folder.filePath(u"theme.cfg"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    QString error;
    QVERIFY(!theme::load(&error, file.fileName()));
    QCOMPARE(error, u"The theme %1 is not usable: %2."_s.arg(file.fileName(), complaint));
    QCOMPARE(theme::integer("e3.galery_cover.width", 7), 7);
}

void tst_Theme::missingFile()
{
    QString error;
    QVERIFY(!theme::load(&error, u"/nowhere/theme.cfg"_s));
    QVERIFY(error.startsWith(u"The theme /nowhere/theme.cfg is not usable: "_s));
    QVERIFY(!theme::load(nullptr, u"/nowhere/theme.cfg"_s));
}

// Last: a theme that is loaded stays.
void tst_Theme::usable()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"theme.cfg"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("# note\ne3.galery_cover.width=1\ne3.galery_cover.height=10000\n");
    file.close();
    QVERIFY(theme::load(nullptr, file.fileName()));
    QCOMPARE(theme::integer("e3.galery_cover.width", 7), 1);
    QCOMPARE(theme::integer("e3.galery_cover.height", 7), 10'000);
    QCOMPARE(theme::integer("e3.other", 7), 7);
    QVERIFY(theme::load(nullptr, u"/nowhere/theme.cfg"_s));
    QCOMPARE(theme::integer("e3.galery_cover.width", 7), 1);
}

QTEST_GUILESS_MAIN(tst_Theme)
#include "tst_theme.moc"
