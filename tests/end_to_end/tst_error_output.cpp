// A show whose standard error is a pipe that is not read, or that nobody reads any more.

#include "named_screen.h"
#include "stored_database.h"

#include <QTest>

#include <array>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A pipe for the program's standard error, of the smallest size that there is.
class ErrorPipe
{
public:
    ErrorPipe()
    {
        if (::pipe2(m_ends.data(), O_CLOEXEC) == 0)
            ::fcntl(m_ends[1], F_SETPIPE_SZ, 1);
    }
    ~ErrorPipe()
    {
        closeReader();
        ::close(m_ends[1]);
    }
    ErrorPipe(const ErrorPipe &) = delete;
    ErrorPipe &operator=(const ErrorPipe &) = delete;

    void giveTo(QProcess &process) const
    {
        process.setChildProcessModifier([end = m_ends[1]] { ::dup2(end, STDERR_FILENO); });
    }

    /// Until nothing goes in any more.
    void fill() const
    {
        setBlocking(m_ends[1], false);
        while (::write(m_ends[1], "x", 1) == 1) { }
        setBlocking(m_ends[1], true);
    }
    QByteArray readAll() const
    {
        setBlocking(m_ends[0], false);
        QByteArray all;
        std::array<char, 4096> bytes;
        ssize_t length = 0;
        while ((length = ::read(m_ends[0], bytes.data(), bytes.size())) > 0)
            all.append(bytes.data(), length);
        return all;
    }
    void closeReader()
    {
        if (m_ends[0] >= 0)
            ::close(m_ends[0]);
        m_ends[0] = -1;
    }
    /// Of what the test shares with the program.
    bool isBlocking() const { return (::fcntl(m_ends[1], F_GETFL) & O_NONBLOCK) == 0; }

private:
    static void setBlocking(int descriptor, bool blocking)
    {
        ::fcntl(descriptor, F_SETFL, blocking ? 0 : O_NONBLOCK);
    }

    std::array<int, 2> m_ends{-1, -1};
};

} // namespace

class tst_ErrorOutput : public QObject
{
    Q_OBJECT

private slots:
    void init() { stored_database::remove(); }
    void pipeThatIsNotRead();
    void pipeWithoutReader();

private:
    static void endsWell(NamedScreen &device);
};

void tst_ErrorOutput::endsWell(NamedScreen &device)
{
    QVERIFY(device.does(u"quit"_s));
    QVERIFY(device.program().state() == QProcess::NotRunning || device.program().waitForFinished());
    QCOMPARE(device.program().exitStatus(), QProcess::NormalExit);
    QCOMPARE(device.program().exitCode(), 0);
}

void tst_ErrorOutput::pipeThatIsNotRead()
{
    ErrorPipe pipe;
    NamedScreen device;
    pipe.giveTo(device.program());
    pipe.fill();
    QVERIFY(device.start());
    QVERIFY(device.play());
    for (int i = 0; i < 10; ++i)
        QVERIFY(device.does(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}}));
    QVERIFY(pipe.isBlocking());

    // Read again, it has whole lines from there on.
    QVERIFY(pipe.readAll().count('x') >= 4096);
    endsWell(device);
    const QByteArray lines = pipe.readAll();
    QVERIFY2(lines.startsWith("FRONTLIGHT \t save") && lines.endsWith('\n'), lines.constData());
}

void tst_ErrorOutput::pipeWithoutReader()
{
    ErrorPipe pipe;
    NamedScreen device;
    pipe.giveTo(device.program());
    pipe.closeReader();
    QVERIFY(device.start()); // has told how much memory there is
    QVERIFY(device.play());
    endsWell(device);
}

QTEST_GUILESS_MAIN(tst_ErrorOutput)
#include "tst_error_output.moc"
