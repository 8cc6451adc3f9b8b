#include "run_folder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <array>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

void setMode(const QString &path, mode_t mode)
{
    QVERIFY(::chmod(QFile::encodeName(path).constData(), mode) == 0);
}

/// Restores the environment.
class Variable
{
public:
    explicit Variable(const char *name)
        : m_name(name)
        , m_wasSet(qEnvironmentVariableIsSet(name))
        , m_value(qgetenv(name))
    {
    }
    ~Variable()
    {
        if (m_wasSet)
            qputenv(m_name, m_value);
        else
            qunsetenv(m_name);
    }
    Variable(const Variable &) = delete;
    Variable &operator=(const Variable &) = delete;

private:
    const char *m_name;
    bool m_wasSet;
    QByteArray m_value;
};

/// Acts as a user whose folder in /tmp nobody else uses.
class OtherUser
{
public:
    OtherUser() { m_isOther = ::geteuid() == 0 && ::seteuid(number) == 0; }
    ~OtherUser() { leave(); }
    OtherUser(const OtherUser &) = delete;
    OtherUser &operator=(const OtherUser &) = delete;

    bool isOther() const { return m_isOther; }
    void leave()
    {
        if (m_isOther && ::seteuid(0) == 0)
            m_isOther = false;
    }
    static constexpr uid_t number = 54'321;
    static QString folder() { return u"/tmp/picture_stand-54321"_s; }

private:
    bool m_isOther = false;
};

} // namespace

class tst_RunFolder : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void defaultRoot();
    void defaultRootWithoutData_data();
    void defaultRootWithoutData();

    void inTheRuntimeFolder();
    void existingFolderIsUsed();
    void unusualUmask();
    void otherFolders_data();
    void otherFolders();
    void runtimeFolderOfSomebodyElse();
    void openFolderIsRefused_data();
    void openFolderIsRefused();
    void linkIsRefused();
    void fileIsRefused();
    void folderOfSomebodyElseIsRefused();
    void fallbackIsPrivate();
    void fallbackOfSomebodyElseIsRefused();

    void nameOfTheRoot_data();
    void nameOfTheRoot();
    void everyWayToTheRootIsTheSame();
    void missingRoot_data();
    void missingRoot();
    void refusedBaseIsTold();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<std::array<Variable, 3>> m_variables;
};

void tst_RunFolder::init()
{
    m_variables.reset(new std::array<Variable, 3>{Variable("XDG_RUNTIME_DIR"), Variable("XDG_DATA_HOME"),
                                                  Variable("HOME")});
    m_folder = std::make_unique<QTemporaryDir>();
    setMode(m_folder->path(), 0700);
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder->path()));
}

void tst_RunFolder::cleanup()
{
    m_variables.reset();
    m_folder.reset();
    ::rmdir(QFile::encodeName(OtherUser::folder()).constData());
}

void tst_RunFolder::defaultRoot()
{
    qputenv("XDG_DATA_HOME", "/somewhere/data/");
    QCOMPARE(defaultDeviceRoot(), u"/somewhere/data/picture_stand/device"_s);
}

void tst_RunFolder::defaultRootWithoutData_data()
{
    QTest::addColumn<bool>("isSet");
    QTest::addColumn<QByteArray>("value");

    QTest::newRow("not set") << false << QByteArray();
    QTest::newRow("empty") << true << QByteArray();
    QTest::newRow("relative") << true << QByteArray("data");
}

void tst_RunFolder::defaultRootWithoutData()
{
    QFETCH(bool, isSet);
    QFETCH(QByteArray, value);

    qputenv("HOME", "/home/anna");
    qunsetenv("XDG_DATA_HOME");
    if (isSet)
        qputenv("XDG_DATA_HOME", value);
    QCOMPARE(defaultDeviceRoot(), u"/home/anna/.local/share/picture_stand/device"_s);
}

void tst_RunFolder::inTheRuntimeFolder()
{
    QString error;
    const std::optional<QString> base = runBase(&error);
    QVERIFY2(base, qPrintable(error));
    QCOMPARE(*base, m_folder->filePath(u"picture_stand"_s));
    QVERIFY(QFileInfo(*base).isDir());
    QCOMPARE(modeOf(*base), 0700u);
}

void tst_RunFolder::existingFolderIsUsed()
{
    const QString base = *runBase(nullptr);
    QVERIFY(QDir(base).mkdir(u"inside"_s));
    QCOMPARE(*runBase(nullptr), base);
    QVERIFY(QFile::exists(base + u"/inside"_s));
}

void tst_RunFolder::unusualUmask()
{
    const mode_t before = ::umask(0777);
    const std::optional<QString> base = runBase(nullptr);
    ::umask(before);
    QVERIFY(base);
    QCOMPARE(modeOf(*base), 0700u);
}

void tst_RunFolder::otherFolders_data()
{
    QTest::addColumn<QString>("runtime"); ///< "%1" is a folder of ours

    QTest::newRow("not set") << QString();
    QTest::newRow("empty") << u""_s;
    QTest::newRow("relative") << u"runtime"_s;
    QTest::newRow("missing") << u"%1/none"_s;
    QTest::newRow("a file") << u"%1/file"_s;
    QTest::newRow("readable for others") << u"%1/mode0755"_s;
    QTest::newRow("readable for the group") << u"%1/mode0740"_s;
    QTest::newRow("sticky") << u"%1/mode1700"_s;
    QTest::newRow("not to be written") << u"%1/mode0500"_s;
}

void tst_RunFolder::otherFolders()
{
    QFETCH(QString, runtime);

    QFile file(m_folder->filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    setMode(file.fileName(), 0700);
    for (const mode_t mode : {0755U, 0740U, 01700U, 0500U}) {
        const QString name = u"mode%1"_s.arg(mode, 4, 8, QChar(u'0'));
        QVERIFY(QDir(m_folder->path()).mkdir(name));
        setMode(m_folder->filePath(name), mode);
    }
    if (runtime.isNull())
        qunsetenv("XDG_RUNTIME_DIR");
    else
        qputenv("XDG_RUNTIME_DIR",
                QFile::encodeName(runtime.contains(u'%') ? runtime.arg(m_folder->path()) : runtime));

    QString error;
    const std::optional<QString> base = runBase(&error);
    QVERIFY2(base, qPrintable(error));
    QCOMPARE(*base, u"/tmp/picture_stand-%1"_s.arg(::geteuid()));
    QCOMPARE(modeOf(*base), 0700u);
}

void tst_RunFolder::runtimeFolderOfSomebodyElse()
{
    OtherUser other;
    if (!other.isOther())
        QSKIP("only root can become another user");
    const std::optional<QString> base = runBase(nullptr); // the runtime folder is root's
    other.leave();
    QVERIFY(base);
    QCOMPARE(*base, OtherUser::folder());
}

void tst_RunFolder::openFolderIsRefused_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("told");

    QTest::newRow("readable for others") << 0755 << u"0755"_s;
    QTest::newRow("to be entered by the group") << 0710 << u"0710"_s;
    QTest::newRow("not to be written") << 0500 << u"0500"_s;
}

void tst_RunFolder::openFolderIsRefused()
{
    QFETCH(int, mode);
    QFETCH(QString, told);

    const QString base = *runBase(nullptr);
    setMode(base, mode_t(mode));
    QString error;
    QVERIFY(!runBase(&error));
    QVERIFY2(error.contains(base) && error.contains(told), qPrintable(error));
    QCOMPARE(modeOf(base), mode_t(mode)); // not ours to change
}

void tst_RunFolder::linkIsRefused()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"target"_s));
    setMode(m_folder->filePath(u"target"_s), 0700);
    QVERIFY(QFile::link(m_folder->filePath(u"target"_s), m_folder->filePath(u"picture_stand"_s)));
    QString error;
    QVERIFY(!runBase(&error));
    QVERIFY2(error.contains(u"is not a folder"_s), qPrintable(error));
}

void tst_RunFolder::fileIsRefused()
{
    QFile file(m_folder->filePath(u"picture_stand"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QString error;
    QVERIFY(!runBase(&error));
    QVERIFY2(error.contains(u"is not a folder"_s), qPrintable(error));
}

void tst_RunFolder::folderOfSomebodyElseIsRefused()
{
    const QString base = *runBase(nullptr);
    if (::chown(QFile::encodeName(base).constData(), OtherUser::number, gid_t(-1)) != 0)
        QSKIP("only root can give a folder away");
    QString error;
    QVERIFY(!runBase(&error));
    QVERIFY2(error.contains(u"belongs to somebody else"_s), qPrintable(error));
}

void tst_RunFolder::fallbackIsPrivate()
{
    qunsetenv("XDG_RUNTIME_DIR");
    OtherUser other;
    if (!other.isOther())
        QSKIP("only root can become another user");
    const std::optional<QString> base = runBase(nullptr);
    other.leave();
    QCOMPARE(base.value_or(QString()), OtherUser::folder());
    QCOMPARE(modeOf(OtherUser::folder()), 0700u);
}

void tst_RunFolder::fallbackOfSomebodyElseIsRefused()
{
    qunsetenv("XDG_RUNTIME_DIR");
    QVERIFY(::mkdir(QFile::encodeName(OtherUser::folder()).constData(), 0700) == 0);
    OtherUser other;
    if (!other.isOther())
        QSKIP("only root can become another user");
    QString error;
    const std::optional<QString> base = runBase(&error);
    other.leave();
    QVERIFY(!base);
    QVERIFY2(error.contains(OtherUser::folder()) && error.contains(u"somebody else"_s), qPrintable(error));
}

void tst_RunFolder::nameOfTheRoot_data()
{
    QTest::addColumn<QString>("root");
    QTest::addColumn<QString>("name");

    // The first 16 digits of the SHA-256 of "/" and of "/tmp".
    QTest::newRow("one character") << u"/"_s << u"8a5edab282632443"_s;
    QTest::newRow("a folder") << u"/tmp"_s << u"e9671acd244849c5"_s;
    QTest::newRow("slash at the end") << u"/tmp/"_s << u"e9671acd244849c5"_s;
}

void tst_RunFolder::nameOfTheRoot()
{
    QFETCH(QString, root);
    QFETCH(QString, name);

    QString error;
    const std::optional<QString> folder = runFolderOf(root, &error);
    QVERIFY2(folder, qPrintable(error));
    QCOMPARE(*folder, m_folder->filePath(u"picture_stand/"_s + name));
    QVERIFY(!QFile::exists(*folder)); // the launcher's to make
}

void tst_RunFolder::everyWayToTheRootIsTheSame()
{
    const QString root = m_folder->filePath(u"Gerät mit ä und Leerzeichen"_s);
    QVERIFY(QDir().mkpath(root));
    QVERIFY(QFile::link(root, m_folder->filePath(u"link"_s)));
    const QString expected = *runFolderOf(root, nullptr);
    QCOMPARE(*runFolderOf(m_folder->filePath(u"link"_s), nullptr), expected);
    QCOMPARE(*runFolderOf(root + u"/../link/."_s, nullptr), expected);
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(root));
    const std::optional<QString> relative = runFolderOf(u"."_s, nullptr);
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(*relative, expected);
    QVERIFY(*runFolderOf(m_folder->path(), nullptr) != expected);
}

void tst_RunFolder::missingRoot_data()
{
    QTest::addColumn<QString>("root");

    QTest::newRow("missing") << u"none"_s;
    QTest::newRow("a file") << u"file"_s;
    QTest::newRow("a link to nothing") << u"link"_s;
}

void tst_RunFolder::missingRoot()
{
    QFETCH(QString, root);

    QFile file(m_folder->filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(m_folder->filePath(u"nowhere"_s), m_folder->filePath(u"link"_s)));
    QString error;
    QVERIFY(!runFolderOf(m_folder->filePath(root), &error));
    QCOMPARE(error, u"There is no device root %1."_s.arg(m_folder->filePath(root)));
    QVERIFY(!runFolderOf(m_folder->filePath(root), nullptr));
}

void tst_RunFolder::refusedBaseIsTold()
{
    setMode(*runBase(nullptr), 0755);
    QString error;
    QVERIFY(!runFolderOf(u"/tmp"_s, &error));
    QVERIFY2(error.contains(u"0755"_s), qPrintable(error));
}

QTEST_GUILESS_MAIN(tst_RunFolder)
#include "tst_run_folder.moc"
