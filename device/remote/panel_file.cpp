#include "panel_file.h"

#include <QFile>
#include <QTransform>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lindenreed::remote {

using namespace Qt::StringLiterals;

namespace {

constexpr char panelMagic[] = "SLATEPNL";
constexpr std::uint32_t panelVersion = 1;
constexpr std::uint32_t longestSide
    = 16384; ///< keeps every product below in 32 bits; far above any real panel
constexpr std::size_t strideUnit = 64;
constexpr int readTries = 100;

static_assert(std::atomic_ref<std::uint32_t>::is_always_lock_free, "a lock would not be shared by processes");

/// Closes its descriptor.
class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_number(number)
    {
    }
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int number() const { return m_number; }

private:
    int m_number;
};

// The thread sanitizer does not follow fences and says so at compile time. Reader and writer are different
// mappings, mostly of different processes, so it has nothing to follow here.
#if defined(__SANITIZE_THREAD__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wtsan"
#endif
void fence(std::memory_order order)
{
    std::atomic_thread_fence(order);
}
#if defined(__SANITIZE_THREAD__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

std::size_t strideOf(int width, int bytesPerPixel)
{
    const std::size_t bytes = std::size_t(width) * std::size_t(bytesPerPixel);
    return (bytes + strideUnit - 1) / strideUnit * strideUnit;
}

void tell(QString *error, const QString &sentence)
{
    if (error)
        *error = sentence;
}

/// One sentence that says why these bytes are not a panel that can be shown; empty where they are one.
QString complaintAbout(const PanelHeader &header, std::uint64_t fileLength, const QString &path)
{
    if (std::memcmp(header.magic, panelMagic, sizeof(header.magic)) != 0)
        return u"%1 is not a panel file."_s.arg(path);
    if (header.version != panelVersion)
        return u"%1 has panel version %2; this program reads version 1."_s.arg(path).arg(header.version);

    const bool knownFormat = header.format == 1 || header.format == 2;
    const std::uint64_t bytesPerPixel = header.format == 2 ? 3 : 1;
    const bool sane = knownFormat && header.width > 0 && header.width <= longestSide && header.height > 0
        && header.height <= longestSide && header.stride % strideUnit == 0
        && header.stride >= header.width * bytesPerPixel && (header.levels == 16 || header.levels == 256)
        && header.orientation <= 3;
    if (!sane)
        return u"%1 describes a panel that cannot be."_s.arg(path);
    if (fileLength != panelPixelsOffset + std::uint64_t(header.stride) * header.height)
        return u"%1 has not the length that its panel needs."_s.arg(path);
    return {};
}

} // namespace

struct PanelWriter::Mapping
{
    ~Mapping()
    {
        if (memory)
            ::munmap(memory, length);
    }

    std::uint8_t *memory = nullptr;
    std::size_t length = 0;
    std::size_t stride = 0;
    int bytesPerPixel = 1;
    QByteArray path; ///< empty: in memory
    dev_t device = 0; ///< with inode: which file is ours
    ino_t inode = 0;

    PanelHeader &header() { return *static_cast<PanelHeader *>(static_cast<void *>(memory)); }
};

std::unique_ptr<PanelWriter> PanelWriter::create(const PanelShape &shape, const QString &path, QString *error)
{
    const int longest = int(longestSide);
    if (shape.size.width() < 1 || shape.size.height() < 1 || shape.size.width() > longest
        || shape.size.height() > longest || (shape.levels != 16 && shape.levels != 256)) {
        tell(error,
             u"A panel of %1 by %2 pixels with %3 levels cannot be made."_s.arg(shape.size.width())
                 .arg(shape.size.height())
                 .arg(shape.levels));
        return nullptr;
    }

    auto mapping = std::make_unique<Mapping>();
    mapping->bytesPerPixel = shape.colour ? 3 : 1;
    mapping->stride = strideOf(shape.size.width(), mapping->bytesPerPixel);
    mapping->length = panelPixelsOffset + mapping->stride * std::size_t(shape.size.height());

    int flags = MAP_PRIVATE | MAP_ANONYMOUS;
    QByteArray newName; // of the file while it is not complete
    if (!path.isEmpty())
        newName = QFile::encodeName(path) + ".XXXXXX";
    const Descriptor file(path.isEmpty() ? -1 : ::mkostemp(newName.data(), O_CLOEXEC));
    const auto failure = [&](int number) {
        tell(error, u"The panel %1 cannot be made: %2."_s.arg(path, qt_error_string(number)));
        if (file.number() >= 0)
            ::unlink(newName.constData());
        return nullptr;
    };
    if (!path.isEmpty()) {
        if (file.number() < 0)
            return failure(errno);
        // Every page gets its place on the disk now: a full disk would end the device later, at a drawing.
        int result = 0;
        do {
            result = ::posix_fallocate(file.number(), 0, off_t(mapping->length));
        } while (result == EINTR);
        if (result != 0)
            return failure(result);
        struct stat status = {};
        if (::fstat(file.number(), &status) != 0)
            return failure(errno);
        mapping->device = status.st_dev;
        mapping->inode = status.st_ino;
        flags = MAP_SHARED;
    }

    void *memory = ::mmap(nullptr, mapping->length, PROT_READ | PROT_WRITE, flags, file.number(), 0);
    if (memory == MAP_FAILED)
        return failure(errno);
    mapping->memory = static_cast<std::uint8_t *>(memory);

    std::memset(mapping->memory + panelPixelsOffset, 255, mapping->length - panelPixelsOffset);
    PanelHeader &header = mapping->header();
    std::memcpy(header.magic, panelMagic, sizeof(header.magic));
    header.version = panelVersion;
    header.format = shape.colour ? 2 : 1;
    header.width = std::uint32_t(shape.size.width());
    header.height = std::uint32_t(shape.size.height());
    header.stride = std::uint32_t(mapping->stride);
    header.levels = std::uint32_t(shape.levels);
    header.dpi = std::uint32_t(shape.dpi);

    if (!path.isEmpty()) {
        if (::rename(newName.constData(), QFile::encodeName(path).constData()) != 0)
            return failure(errno);
        mapping->path = QFile::encodeName(path);
    }

    std::unique_ptr<PanelWriter> writer(new PanelWriter);
    writer->m_mapping = std::move(mapping);
    return writer;
}

PanelWriter::~PanelWriter()
{
    // A device that was started after us has put its own file there.
    struct stat status = {};
    if (!m_mapping->path.isEmpty() && ::lstat(m_mapping->path.constData(), &status) == 0
        && status.st_dev == m_mapping->device && status.st_ino == m_mapping->inode)
        ::unlink(m_mapping->path.constData());
}

std::uint8_t *PanelWriter::pixels()
{
    return m_mapping->memory + panelPixelsOffset;
}

std::size_t PanelWriter::stride() const
{
    return m_mapping->stride;
}

int PanelWriter::bytesPerPixel() const
{
    return m_mapping->bytesPerPixel;
}

void PanelWriter::beginWrite()
{
    const std::atomic_ref sequence(m_mapping->header().sequence);
    Q_ASSERT(sequence.load(std::memory_order_relaxed) % 2 == 0);
    sequence.fetch_add(1, std::memory_order_relaxed);
    fence(std::memory_order_release);
}

PanelHeader &PanelWriter::header()
{
    return m_mapping->header();
}

void PanelWriter::endWrite()
{
    const std::atomic_ref sequence(m_mapping->header().sequence);
    Q_ASSERT(sequence.load(std::memory_order_relaxed) % 2 == 1);
    sequence.fetch_add(1, std::memory_order_release);
}

QImage PanelSnapshot::upright() const
{
    // What the glass shows turned clockwise is turned back by the rest of the circle.
    static constexpr int backTurns[] = {0, 270, 90, 180};
    const int degrees = backTurns[header.orientation & 3];
    return degrees == 0 ? glass : glass.transformed(QTransform().rotate(degrees));
}

std::optional<PanelSnapshot> readPanel(const QString &path, QString *error)
{
    // O_NONBLOCK: a pipe under this name must not hold us up.
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.number() < 0) {
        tell(error, u"The panel %1 cannot be read: %2."_s.arg(path, qt_error_string(errno)));
        return std::nullopt;
    }
    struct stat status = {};
    if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        tell(error, u"%1 is not a panel file."_s.arg(path));
        return std::nullopt;
    }

    PanelHeader shape = {};
    if (std::uint64_t(status.st_size) < panelPixelsOffset
        || ::pread(file.number(), &shape, sizeof(shape), 0) != ssize_t(sizeof(shape))) {
        tell(error, u"%1 is not a panel file."_s.arg(path));
        return std::nullopt;
    }
    shape.orientation &= 3; // may be in the middle of a write; looked at again below
    if (const QString complaint = complaintAbout(shape, std::uint64_t(status.st_size), path);
        !complaint.isEmpty()) {
        tell(error, complaint);
        return std::nullopt;
    }

    const auto length = std::size_t(status.st_size);
    const auto unmap = [length](void *memory) { ::munmap(memory, length); };
    void *memory = ::mmap(nullptr, length, PROT_READ, MAP_SHARED, file.number(), 0);
    if (memory == MAP_FAILED) {
        tell(error, u"The panel %1 cannot be read: %2."_s.arg(path, qt_error_string(errno)));
        return std::nullopt;
    }
    const std::unique_ptr<void, decltype(unmap)> mapping(memory, unmap);
    const auto *bytes = static_cast<const std::uint8_t *>(memory);
    // The mapping is read only and so is every use of the reference; atomic_ref takes no const before C++26.
    const std::atomic_ref sequence(static_cast<PanelHeader *>(memory)->sequence);

    const bool colour = shape.format == 2;
    const std::size_t rowBytes = std::size_t(shape.width) * (colour ? 3 : 1);
    PanelSnapshot snapshot;
    snapshot.glass = QImage(int(shape.width), int(shape.height),
                            colour ? QImage::Format_RGB888 : QImage::Format_Grayscale8);
    if (snapshot.glass.isNull()) {
        tell(error, u"There is no memory for the panel %1."_s.arg(path));
        return std::nullopt;
    }

    for (int attempt = 0; attempt < readTries; ++attempt) {
        const std::uint32_t before = sequence.load(std::memory_order_acquire);
        if (before % 2 != 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            continue;
        }
        std::memcpy(&snapshot.header, bytes, sizeof(snapshot.header));
        for (std::uint32_t y = 0; y < shape.height; ++y) {
            std::memcpy(snapshot.glass.scanLine(int(y)),
                        bytes + panelPixelsOffset + std::size_t(y) * shape.stride, rowBytes);
        }
        fence(std::memory_order_acquire);
        if (sequence.load(std::memory_order_relaxed) != before)
            continue;

        QString complaint = complaintAbout(snapshot.header, length, path);
        if (complaint.isEmpty()
            && (snapshot.header.width != shape.width || snapshot.header.height != shape.height
                || snapshot.header.stride != shape.stride || snapshot.header.format != shape.format))
            complaint = u"%1 describes a panel that cannot be."_s.arg(path);
        if (!complaint.isEmpty()) {
            tell(error, complaint);
            return std::nullopt;
        }
        return snapshot;
    }
    tell(error, u"The device is busy with its panel %1."_s.arg(path));
    return std::nullopt;
}

} // namespace lindenreed::remote
