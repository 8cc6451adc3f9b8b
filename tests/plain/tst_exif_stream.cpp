// The streams that the EXIF reader reads from.

#include "exif_orders.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <stdexcept>

using namespace TinyEXIF;

namespace {

/// Bytes in memory, with a note of what was asked for. The call named by `failing` (from 1) fails, and no
/// other.
class NotedStream : public EXIFStream
{
public:
    explicit NotedStream(std::string bytes)
        : m_bytes(std::move(bytes))
    {
    }

    bool IsValid() const override { return valid; }
    const std::uint8_t *GetBuffer(unsigned n) override
    {
        calls.push_back("get " + std::to_string(n));
        if (int(calls.size()) == failing || m_position + n > m_bytes.size())
            return nullptr;
        const auto *bytes = reinterpret_cast<const std::uint8_t *>(m_bytes.data()) + m_position;
        m_position += n;
        return bytes;
    }
    bool SkipBuffer(unsigned n) override
    {
        calls.push_back("skip " + std::to_string(n));
        if (int(calls.size()) == failing)
            return false;
        m_position += n;
        return true;
    }

    bool valid = true;
    int failing = 0;
    std::vector<std::string> calls;

private:
    std::string m_bytes;
    std::size_t m_position = 0;
};

/// A buffer that throws where a file would fail.
class ThrowingBuffer : public std::stringbuf
{
public:
    ThrowingBuffer(const std::string &bytes, bool reading)
        : std::stringbuf(bytes, std::ios::in | std::ios::binary)
        , m_reading(reading)
    {
    }

protected:
    int_type underflow() override
    {
        if (m_reading)
            throw std::runtime_error("read");
        return std::stringbuf::underflow();
    }
    pos_type seekoff(off_type, std::ios::seekdir, std::ios::openmode) override
    {
        throw std::runtime_error("seek");
    }

private:
    bool m_reading;
};

class SeekCounter : public std::stringbuf
{
public:
    using std::stringbuf::stringbuf;
    int seeks = 0;

protected:
    pos_type seekoff(off_type offset, std::ios::seekdir direction, std::ios::openmode which) override
    {
        ++seeks;
        return std::stringbuf::seekoff(offset, direction, which);
    }
};

/// A file of many segments that are skipped, `head` before each, and of `last` behind them. Nothing is read
/// ahead.
class LongFile : public std::streambuf
{
public:
    LongFile(const std::string &head, std::int64_t segment, std::int64_t count, const std::string &last)
        : m_head(head)
        , m_segment(segment)
        , m_count(count)
        , m_last(last)
    {
    }

protected:
    std::streamsize xsgetn(char *to, std::streamsize size) override
    {
        for (std::streamsize i = 0; i < size; ++i, ++m_position) {
            const int byte = byteAt(m_position);
            if (byte < 0)
                return i;
            to[i] = char(byte);
        }
        return size;
    }
    int_type underflow() override { return byteAt(m_position); }
    int_type uflow() override { return byteAt(m_position++); }
    pos_type seekoff(off_type offset, std::ios::seekdir, std::ios::openmode) override
    {
        return m_position += offset; // the reader only seeks from where it is
    }

private:
    int byteAt(std::int64_t position) const
    {
        if (position < 2)
            return position == 0 ? 0xFF : 0xD8;
        position -= 2;
        const std::int64_t inLast = position - m_segment * m_count;
        if (inLast >= 0)
            return inLast < std::int64_t(m_last.size()) ? std::uint8_t(m_last[std::size_t(inLast)]) : -1;
        const auto inSegment = std::size_t(position % m_segment);
        return inSegment < m_head.size() ? std::uint8_t(m_head[inSegment]) : 'x';
    }

    std::string m_head;
    std::int64_t m_segment;
    std::int64_t m_count;
    std::string m_last;
    std::int64_t m_position = 0;
};

const std::string dated = app1(datedSegment(ByteOrder::Big));

} // namespace

class tst_ExifStream : public QObject
{
    Q_OBJECT

private slots:
    void asksForNoMoreThanIsThere();
    void readsOnAfterFillBytesThatFail();
    void failure_data();
    void failure();
    void invalid();
    void cannotBeRead_data();
    void cannotBeRead();
    void endsInsideSkippedSegment();
    void setToThrow_data();
    void setToThrow();
    void throwingBuffer_data();
    void throwingBuffer();
    void skipsWhatIsReadAheadWithoutSeeking();
    void dateBeyondFourGibibytes();
};

void tst_ExifStream::asksForNoMoreThanIsThere()
{
    NotedStream stream(jpegFile("\xFF" + jpegSegment(0xE0, "JFIF") + dated));
    QCOMPARE(EXIFInfo().parseFrom(stream), int(ParseSuccess));
    const std::vector<std::string> expected
        = {"get 2",  "get 2", "get 1", "get 2",
           "skip 4", "get 2", "get 2", "get " + std::to_string(dated.size() - 4),
           "get 2"};
    QCOMPARE(stream.calls, expected);
}

void tst_ExifStream::readsOnAfterFillBytesThatFail()
{
    NotedStream stream(jpegFile(std::string(2, '\xFF') + dated));
    stream.failing = 3;
    EXIFInfo info;
    QCOMPARE(info.parseFrom(stream), int(ParseSuccess));
    QCOMPARE(info.DateTimeOriginal, date);
}

void tst_ExifStream::failure_data()
{
    QTest::addColumn<int>("call");
    QTest::addColumn<int>("expected");
    QTest::addColumn<bool>("afterDate");

    // The calls: start, marker, length, skip or content; three more for each segment.
    QTest::newRow("start") << 1 << int(ParseInvalidJpeg) << false;
    QTest::newRow("marker") << 2 << int(ParseAbsentData) << false;
    QTest::newRow("length") << 3 << int(ParseInvalidJpeg) << false;
    QTest::newRow("skipping") << 4 << int(ParseInvalidJpeg) << false;
    QTest::newRow("content") << 7 << int(ParseInvalidJpeg) << false;
    QTest::newRow("marker after the date") << 8 << int(ParseSuccess) << true;
    QTest::newRow("length after the date") << 9 << int(ParseSuccess) << true;
    QTest::newRow("skipping after the date") << 10 << int(ParseSuccess) << true;
}

void tst_ExifStream::failure()
{
    QFETCH(int, call);
    QFETCH(int, expected);
    QFETCH(bool, afterDate);

    NotedStream stream(jpegFile(jpegSegment(0xE0, "JFIF") + dated + jpegSegment(0xE2, "more")));
    stream.failing = call;
    EXIFInfo info;
    QCOMPARE(info.parseFrom(stream), expected);
    QCOMPARE(info.Fields, afterDate ? 1u : 0u);
    QCOMPARE(int(stream.calls.size()), call);
}

void tst_ExifStream::invalid()
{
    NotedStream stream(jpegFile(dated));
    stream.valid = false;
    EXIFInfo info;
    info.Make = "of the file before";
    QCOMPARE(info.parseFrom(stream), int(ParseInvalidJpeg));
    QVERIFY(stream.calls.empty());
    QVERIFY(info.Make.empty());
}

void tst_ExifStream::cannotBeRead_data()
{
    QTest::addColumn<int>("state");

    QTest::newRow("failed") << int(std::ios::failbit);
    QTest::newRow("bad") << int(std::ios::badbit);
    QTest::newRow("at its end") << int(std::ios::eofbit);
}

void tst_ExifStream::cannotBeRead()
{
    QFETCH(int, state);

    std::istringstream stream(jpegFile(dated));
    stream.setstate(std::ios::iostate(state));
    EXIFInfo info;
    QCOMPARE(info.parseFrom(stream), int(ParseInvalidJpeg));
    QCOMPARE(info.Fields, 0u);

    std::ifstream missing("/no/such/file", std::ios::binary);
    QCOMPARE(info.parseFrom(missing), int(ParseInvalidJpeg));
    std::ifstream folder("/", std::ios::binary);
    QCOMPARE(info.parseFrom(folder), int(ParseInvalidJpeg));
    std::istream nothing(nullptr);
    QCOMPARE(info.parseFrom(nothing), int(ParseInvalidJpeg));
}

void tst_ExifStream::endsInsideSkippedSegment()
{
    const std::string cut = jpegSegment(0xE0, std::string(100, 'x')).substr(0, 10);
    for (const std::string &before : {std::string(), dated}) {
        std::istringstream stream("\xFF\xD8" + before + cut);
        EXIFInfo info;
        QCOMPARE(info.parseFrom(stream), int(before.empty() ? ParseInvalidJpeg : ParseSuccess));
    }
}

void tst_ExifStream::setToThrow_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("expected");

    const auto row = [](const char *name, const std::string &file, int expected) {
        QTest::newRow(name) << QByteArray::fromStdString(file) << expected;
    };
    row("empty", std::string(), ParseInvalidJpeg);
    row("start alone", "\xFF\xD8", ParseAbsentData);
    row("cut inside the data", "\xFF\xD8" + dated.substr(0, 20), ParseInvalidJpeg);
    row("cut inside another segment", "\xFF\xD8" + jpegSegment(0xE0, "JFIF").substr(0, 5), ParseInvalidJpeg);
    row("cut after the date", "\xFF\xD8" + dated, ParseSuccess);
}

void tst_ExifStream::setToThrow()
{
    QFETCH(QByteArray, file);
    QFETCH(int, expected);

    std::istringstream stream(file.toStdString());
    stream.exceptions(std::ios::failbit | std::ios::badbit | std::ios::eofbit);
    QCOMPARE(EXIFInfo().parseFrom(stream), expected);
}

void tst_ExifStream::throwingBuffer_data()
{
    QTest::addColumn<bool>("reading");

    QTest::newRow("at its end and when it is asked to seek") << true;
    QTest::newRow("when it is asked to seek") << false;
}

void tst_ExifStream::throwingBuffer()
{
    QFETCH(bool, reading);

    for (const std::string &before : {std::string(), dated}) {
        ThrowingBuffer buffer("\xFF\xD8" + before + jpegSegment(0xE0, std::string(9, 'x')).substr(0, 8),
                              reading);
        std::istream stream(&buffer);
        stream.exceptions(std::ios::badbit);
        EXIFInfo info;
        QCOMPARE(info.parseFrom(stream), int(before.empty() ? ParseInvalidJpeg : ParseSuccess));
        ThrowingBuffer cut("\xFF\xD8" + before + "\xFF", reading);
        std::istream ends(&cut);
        ends.exceptions(std::ios::badbit);
        QCOMPARE(info.parseFrom(ends), int(before.empty() ? ParseAbsentData : ParseSuccess));
    }
}

void tst_ExifStream::skipsWhatIsReadAheadWithoutSeeking()
{
    std::string segments;
    for (int i = 0; i < 1000; ++i)
        segments += jpegSegment(0xFE, "x");
    SeekCounter buffer(jpegFile(segments + dated), std::ios::in | std::ios::binary);
    std::istream stream(&buffer);
    EXIFInfo info;
    QCOMPARE(info.parseFrom(stream), int(ParseSuccess));
    QCOMPARE(info.DateTimeOriginal, date);
    QCOMPARE(buffer.seeks, 0);
}

void tst_ExifStream::dateBeyondFourGibibytes()
{
    const std::string head = "\xFF\xFE\xFF\xFF";
    constexpr std::int64_t segment = 2 + 65535;
    constexpr std::int64_t count = (std::int64_t(1) << 32) / segment + 10;
    LongFile buffer(head, segment, count, dated + "\xFF\xD9");
    std::istream stream(&buffer);
    EXIFInfo info;
    QCOMPARE(info.parseFrom(stream), int(ParseSuccess));
    QCOMPARE(info.DateTimeOriginal, date);
}

QTEST_APPLESS_MAIN(tst_ExifStream)
#include "tst_exif_stream.moc"
