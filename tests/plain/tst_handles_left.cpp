// Whether handles are left is told without taking those that others need.

#include "regular_file.h"

#include <QTest>

#include <cerrno>

#include <fcntl.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

using lindenreed::picture_stand::lacksHandles;

namespace {

int handlesTaken = 0;
bool machineHasNone = false;

/// The process keeps what it has, and has `left` handles more while this lives.
class HandlesLeft
{
public:
    explicit HandlesLeft(int left)
    {
        ::getrlimit(RLIMIT_NOFILE, &m_usual);
        rlimit limit{0, m_usual.rlim_max};
        for (; left > 0 || ::fcntl(int(limit.rlim_cur), F_GETFD) >= 0; ++limit.rlim_cur)
            left -= ::fcntl(int(limit.rlim_cur), F_GETFD) < 0 ? 1 : 0;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~HandlesLeft() { ::setrlimit(RLIMIT_NOFILE, &m_usual); }
    HandlesLeft(const HandlesLeft &) = delete;
    HandlesLeft &operator=(const HandlesLeft &) = delete;

private:
    rlimit m_usual = {};
};

} // namespace

/// In place of the C library's.
int eventfd(unsigned value, int flags) noexcept
{
    ++handlesTaken;
    if (machineHasNone) {
        errno = ENFILE;
        return -1;
    }
    return int(::syscall(SYS_eventfd2, value, flags));
}

class tst_HandlesLeft : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        handlesTaken = 0;
        machineHasNone = false;
    }
    void ofTheProcess_data();
    void ofTheProcess();
    void noneOfTheMachine();
};

void tst_HandlesLeft::ofTheProcess_data()
{
    QTest::addColumn<int>("left");
    QTest::addColumn<bool>("lacks");

    QTest::newRow("none") << 0 << true;
    QTest::newRow("one") << 1 << true;
    QTest::newRow("one too few") << 15 << true;
    QTest::newRow("just enough") << 16 << false;
    QTest::newRow("many") << 200 << false;
}

void tst_HandlesLeft::ofTheProcess()
{
    QFETCH(int, left);
    QFETCH(bool, lacks);

    const int between = ::dup(STDERR_FILENO);
    const int used = ::dup(STDERR_FILENO); // with a hole before it
    QVERIFY(between >= 0 && used > between);
    ::close(between);
    bool found = false;
    {
        const HandlesLeft few(left);
        found = lacksHandles();
    }
    ::close(used);
    QCOMPARE(found, lacks);
    QVERIFY2(handlesTaken <= (lacks ? 0 : 1), QByteArray::number(handlesTaken).constData());
}

void tst_HandlesLeft::noneOfTheMachine()
{
    machineHasNone = true;
    QVERIFY(lacksHandles());
}

QTEST_APPLESS_MAIN(tst_HandlesLeft)
#include "tst_handles_left.moc"
