// Odd names of real files through a real engine, as the show's screen draws them.

#include "panel_application.h"
#include "picture_show_test.h"

#include <QFile>
#include <QSet>

#include <filesystem>

class tst_PictureNamesOnScreen : public PictureShowTest
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { begin(); }
    void cleanup()
    {
        std::filesystem::remove_all(m_folder->path().toStdString()); // Qt cannot remove every name
        end();
    }

    void oddNames_data();
    void oddNames();
    void namesThatAreEachOthersEscapes();
    void shownThoughTheFileHasGone();
    void oneEntryForAVanishedFile();
    void nameThatIsNoText();
    void everyByte();

private:
    void showsOnce(const QString &path);
};

/// Under the name that prefetching uses: one entry for the one file.
void tst_PictureNamesOnScreen::showsOnce(const QString &path)
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        m_log->forget();
                        running.startShow({path});
                        QCOMPARE(status(running), int(Ready));
                        QCOMPARE(m_log->text().count("add image"), 1);
                        QVERIFY(m_log->text().contains("add image " + path.toLocal8Bit().replace('\n', "\\n")
                                                       + " size(1200)"));
                    }),
             0);
}

void tst_PictureNamesOnScreen::oddNames_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("plain") << u"plain.png"_s;
    QTest::newRow("spaces") << u"two  words .png"_s;
    QTest::newRow("percent before a letter that is no digit") << u"50%.png"_s;
    QTest::newRow("percent before digits that are an escape") << u"100%25.png"_s;
    QTest::newRow("percent before digits that are another letter") << u"a%20b%41%C3%BC%2F%00.png"_s;
    QTest::newRow("percent at the end") << u"png%"_s;
    QTest::newRow("hash and question mark") << u"a#b?.png"_s;
    QTest::newRow("question mark and hash") << u"a?b#c.png"_s;
    QTest::newRow("all of them") << u"50% #1? & more=%.png"_s;
    QTest::newRow("quotes") << u"\"it's\".png"_s;
    QTest::newRow("a newline") << u"two\nlines.png"_s;
    QTest::newRow("backslash and brackets") << u"a\\b[c]{d}|^`.png"_s;
    QTest::newRow("other scripts") << u"Grüße 山 фото 🌄.png"_s;
    QTest::newRow("plus and colon") << u"1+1: two.png"_s;
    QTest::newRow("255 bytes") << QString(251, u'n') + u".png"_s;
}

void tst_PictureNamesOnScreen::oddNames()
{
    QFETCH(QString, name);

    const QString path = m_folder->filePath(name);
    QVERIFY(write(QFile::encodeName(path), encoded(twoGreys(), "PNG")));
    showsOnce(path);
}

void tst_PictureNamesOnScreen::namesThatAreEachOthersEscapes()
{
    const QStringList names{u"a b.png"_s, u"a%20b.png"_s, u"a%2520b.png"_s};
    for (const QString &name : names)
        QVERIFY(twoGreys().save(m_folder->filePath(name), "PNG"));
    for (const QString &name : names)
        showsOnce(m_folder->filePath(name));
}

void tst_PictureNamesOnScreen::shownThoughTheFileHasGone()
{
    const QString path = m_folder->filePath(u"50% gone.png"_s);
    const QString other = m_folder->filePath(u"other.png"_s);
    QVERIFY(write(QFile::encodeName(path), encoded(twoGreys(), "PNG")));
    QVERIFY(write(QFile::encodeName(other), encoded(twoGreys(), "PNG")));
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList({path, other}, 30);
                        running.slideshow()->shuffleChange(false); // loads the first ahead
                        QThreadPool::globalInstance()->waitForDone();
                        QVERIFY(QFile::remove(path));
                        app.changeView(u"slideshow"_s);
                        QCOMPARE(status(running), int(Ready));
                    }),
             0);
}

void tst_PictureNamesOnScreen::oneEntryForAVanishedFile()
{
    // Gone before anybody has read it: what prefetching noted is what the request finds.
    const QString path = m_folder->filePath(u"a#1.png"_s);
    const QString other = m_folder->filePath(u"other.png"_s);
    QVERIFY(twoGreys().save(path) && twoGreys().save(other));
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList({path, other}, 30);
                        QVERIFY(QFile::remove(path));
                        m_log->forget();
                        running.slideshow()->shuffleChange(false);
                        QThreadPool::globalInstance()->waitForDone();
                        app.changeView(u"slideshow"_s);
                        QCOMPARE(status(running), int(Error));
                        QCOMPARE(m_log->text().count("add image"), 1);
                        QVERIFY(m_log->text().contains("add image " + path.toLocal8Bit() + " size(0)"));
                    }),
             0);
}

void tst_PictureNamesOnScreen::nameThatIsNoText()
{
    QVERIFY(write(m_folder->path().toUtf8() + "/a\xff\xfe.png", encoded(twoGreys(), "PNG")));
    QVERIFY(write(m_folder->path().toUtf8() + "/b.png", encoded(twoGreys(), "PNG")));
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromFolder(m_folder->path(), 30);
                        running.slideshow()->shuffleChange(false);
                        app.changeView(u"slideshow"_s);
                        // Shown or black; the next one is shown.
                        for (int i = 0; i < 4; ++i) {
                            QVERIFY(m_device->fire("nextImageEvent"));
                            if (running.slideshow()->currentImage().endsWith(u"/b.png"))
                                QCOMPARE(status(running), int(Ready));
                        }
                    }),
             0);
}

void tst_PictureNamesOnScreen::everyByte()
{
    // Those above 127 are no UTF-8 by themselves, which Qt cannot open: a show leaves them out.
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/')
            QVERIFY(
                write(m_folder->path().toUtf8() + "/a" + char(byte) + ".png", encoded(twoGreys(), "PNG")));
    }
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        m_log->forget();
                        running.slideshow()->initFromFolder(m_folder->path(), 30);
                        running.slideshow()->shuffleChange(false);
                        app.changeView(u"slideshow"_s);
                        QSet<QString> shown;
                        for (int i = 0; i < 254; ++i) {
                            if (status(running) == Ready)
                                shown.insert(running.slideshow()->currentImage());
                            QVERIFY(m_device->fire("nextImageEvent"));
                        }
                        QCOMPARE(shown.size(), 126); // 127 less the slash
                    }),
             0);
    QThreadPool::globalInstance()->waitForDone();
    // One line for each picture, which steers no terminal.
    const QByteArray log = m_log->text();
    QVERIFY(log.count("add image ") >= 126);
    for (const QByteArray &line : log.split('\n')) {
        if (!line.contains("image"))
            continue;
        QVERIFY2(line.startsWith("add image /") && line.endsWith(" \r"), line.constData());
        for (const char character : line.chopped(1))
            QVERIFY2(uchar(character) >= 0x20 && character != 0x7f, line.constData());
    }
}

PANEL_TEST_MAIN(tst_PictureNamesOnScreen)
#include "tst_picture_names_on_screen.moc"
