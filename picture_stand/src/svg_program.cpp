// Draws one SVG for the frame: picture_stand_svg BYTES within|cover WIDTH HEIGHT FAMILY. Reads so many bytes
// of text from standard input, and writes width, height and pixels to standard output, or nothing. Its end is
// nobody's loss.

#include <QBuffer>
#include <QFont>
#include <QGuiApplication>
#include <QImageReader>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

constexpr unsigned mostSeconds = 10;

void limit([[maybe_unused]] rlim_t bytes)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::alarm(mostSeconds);
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
#ifndef __SANITIZE_ADDRESS__ // which reserves more than there is
    const rlimit memory{bytes, bytes};
    ::setrlimit(RLIMIT_DATA, &memory);
#endif
}

QImage draw(QByteArray &text, bool cover, QSize box)
{
    QBuffer buffer(&text);
    QImageReader reader(&buffer, "svg");
    const QSize size = reader.size();
    if (!cover && (size.width() > box.width() || size.height() > box.height()))
        reader.setScaledSize(size.scaled(box, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
    QImage picture = reader.read();
    if (cover && !picture.isNull())
        picture = picture.scaled(box, Qt::KeepAspectRatio, Qt::FastTransformation);
    return std::move(picture).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

int main(int argc, char **argv)
{
    limit(argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 0);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QGuiApplication application(argc, argv);
    const QStringList words = QGuiApplication::arguments();
    if (words.size() != 7)
        return 2;
    QGuiApplication::setFont(QFont(words.at(6), -1, -1, false));
    QByteArray text(words.at(2).toInt(), Qt::Uninitialized);
    if (std::fread(text.data(), 1, std::size_t(text.size()), stdin) != std::size_t(text.size()))
        return 1;
    const QImage picture
        = draw(text, words.at(3) == QLatin1String("cover"), QSize(words.at(4).toInt(), words.at(5).toInt()));
    if (picture.isNull())
        return 1;
    const qint32 size[2] = {picture.width(), picture.height()};
    std::fwrite(size, sizeof size, 1, stdout);
    std::fwrite(picture.constBits(), std::size_t(picture.sizeInBytes()), 1, stdout);
    // What the drawing has left behind goes with the process.
    std::_Exit(std::fflush(stdout) == 0 ? 0 : 1);
}
