// The gallery of the controls: every page is there, and nothing on it complains.

#include "launcher_run.h"

#include "control_client.h"
#include "run_folder.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using lindenreed::remote::ControlClient;

namespace {

constexpr int pageCount = 12;

} // namespace

class tst_Gallery : public QObject
{
    Q_OBJECT

private slots:
    void everyPage();
};

void tst_Gallery::everyPage()
{
    const QTemporaryDir folder;
    LauncherPlace place(folder.path());
    const QString root = place.path(u"device"_s);
    QVERIFY(QDir().mkdir(root));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(place.runtimeFolder()));
    const QString runFolder = lindenreed::remote::runFolderOf(root, nullptr).value_or(QString());

    QProcess launcher;
    place.start(launcher,
                {u"--root"_s, root, u"--temporary"_s, u"--headless"_s, u"--"_s,
                 QCoreApplication::applicationDirPath() + u"/device_gallery"_s});
    std::optional<ControlClient> client;
    QTRY_VERIFY_WITH_TIMEOUT((client = ControlClient::connectTo(runFolder, nullptr)), 60'000);
    const auto does = [&](const QString &command, const QJsonObject &members = {}) {
        return client->ask(command, members).value("ok"_L1).toBool();
    };

    const auto page = [&] { // without the status panel, whose clock goes on
        return does(u"idle"_s, {{u"ms"_s, 150}}) ? client->screenshot().copy(0, 45, 758, 979) : QImage();
    };
    QList<QImage> pages;
    for (int i = 0; i < pageCount; ++i) {
        const QImage shown = page();
        QVERIFY(!shown.isNull());
        QVERIFY2(!pages.contains(shown), qPrintable(u"page %1"_s.arg(i)));
        pages.append(shown);
        QVERIFY(does(u"key"_s, {{u"name"_s, u"next"_s}}));
    }
    QCOMPARE(page(), pages.constFirst()); // once round
    QVERIFY(does(u"key"_s, {{u"name"_s, u"prev"_s}}));
    QCOMPARE(page(), pages.constLast());

    QVERIFY(does(u"quit"_s));
    const LauncherEnd end = LauncherPlace::end(launcher);
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.status, 0);
}

QTEST_GUILESS_MAIN(tst_Gallery)
#include "tst_gallery.moc"
