// The pictures of a long show: many small ones, some of a camera's size, in every format, and one in fifty
// that cannot be shown. A picture is told from the others by four greys around its middle.

#pragma once

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QString>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <optional>
#include <random>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

/// Greys around the middle, from the top left clockwise.
using SoakMark = std::array<int, 4>;

/// What the panel has to show of a picture.
struct SoakPicture
{
    QString path;
    std::optional<SoakMark> mark; ///< nothing: black
    bool mayBeBlack = false; ///< cut off
    bool onCard = false; ///< which comes and goes
};

class SoakLibrary
{
public:
    static constexpr int count = 2000;
    static inline const QString folder = QStringLiteral("/mnt/ext1/Library");
    static inline const QString card = QStringLiteral("/mnt/ext2/Library");

    /// Writes the files; the card has to be in. False where that fails. Of one content there are many hard
    /// links.
    bool make()
    {
        if (!QDir().mkpath(folder) || !QDir().mkpath(card))
            return false;
        makeContents();
        for (int i = 0; i < count; ++i) {
            if (!add(i))
                return false;
        }
        // What a playlist is made of on the way.
        const QString others = QStringLiteral("/mnt/ext1/Photo");
        QDir().mkpath(others);
        for (int i = 0; i < 10; ++i) {
            if (!write(others + QStringLiteral("/%1.jpg").arg(i), m_small.at(std::size_t(i)).bytes))
                return false;
        }
        return true;
    }

    const std::vector<SoakPicture> &pictures() const { return m_pictures; }
    bool mayBeBlack(const QString &path) const
    {
        const auto found = std::ranges::find(m_pictures, path, &SoakPicture::path);
        return found != m_pictures.cend() && (!found->mark || found->mayBeBlack || found->onCard);
    }

private:
    struct Content
    {
        QByteArray bytes;
        const char *suffix;
        std::optional<SoakMark> mark;
        bool mayBeBlack = false;
        std::array<QString, 2> first = {}; ///< the file that others link to, in the folder and on the card
    };

    static constexpr SoakMark markOf(int number)
    {
        // Seven greys, far enough from each other and from black.
        SoakMark mark = {};
        for (int &grey : mark) {
            grey = 48 + number % 7 * 32;
            number = number / 7 + 3;
        }
        return mark;
    }

    static void drawMark(QPainter &painter, const QSize &size, const SoakMark &mark)
    {
        const int x = size.width() / 4;
        const int y = size.height() / 4;
        // Exactly around the middle: in a small picture that fills the screen a pixel is as wide as a quarter
        // of what is looked at.
        const QPoint middle(size.width() / 2, size.height() / 2);
        const auto fill = [&](int left, int top, int grey) {
            painter.fillRect(middle.x() + left, middle.y() + top, x, y, qRgb(grey, grey, grey));
        };
        fill(-x, -y, mark[0]);
        fill(0, -y, mark[1]);
        fill(0, 0, mark[2]);
        fill(-x, 0, mark[3]);
    }

    static QImage drawn(const QSize &size, const SoakMark &mark)
    {
        static const QImage tile = [] {
            QImage noise(128, 128, QImage::Format_RGB32);
            std::mt19937 random(3);
            for (int y = 0; y < noise.height(); ++y) {
                for (int x = 0; x < noise.width(); ++x) {
                    const int grain = int(random() % 16);
                    noise.setPixel(x, y, qRgb(60 + x + grain, 50 + y + grain, 190 - (x + y) / 2 + grain));
                }
            }
            return noise;
        }();
        QImage image(size, QImage::Format_RGB32);
        QPainter painter(&image);
        painter.fillRect(image.rect(), QBrush(tile));
        drawMark(painter, size, mark);
        return image;
    }

    static QByteArray encoded(const QImage &image, const char *format, bool progressive = false)
    {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, format);
        writer.setProgressiveScanWrite(progressive);
        if (qstrcmp(format, "png") == 0)
            writer.setQuality(90); // little compression: generated once, read often
        writer.write(image);
        return bytes;
    }

    static QByteArray svg(const QSize &size, const SoakMark &mark)
    {
        const int x = size.width() / 4;
        const int y = size.height() / 4;
        const QString rectangle
            = QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" fill=\"rgb(%5,%5,%5)\"/>");
        const auto quarter = [&](int column, int row, int grey) {
            return rectangle.arg(column * x).arg(row * y).arg(x).arg(y).arg(grey);
        };
        return (QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%2\">")
                    .arg(size.width())
                    .arg(size.height())
                + rectangle.arg(0).arg(0).arg(size.width()).arg(size.height()).arg(200)
                + quarter(1, 1, mark[0]) + quarter(2, 1, mark[1]) + quarter(2, 2, mark[2])
                + quarter(1, 2, mark[3])
                + QStringLiteral(
                    "<circle cx=\"40\" cy=\"40\" r=\"30\" fill=\"none\" stroke=\"black\"/></svg>"))
            .toUtf8();
    }

    /// A PNG file whose header says more than the file has.
    static QByteArray enormous()
    {
        QByteArray bytes = encoded(QImage(8, 8, QImage::Format_RGB32), "png");
        qToBigEndian<quint32>(30'000, bytes.data() + 16);
        qToBigEndian<quint32>(30'000, bytes.data() + 20);
        // Of the header's chunk, so that nobody stops at it.
        quint32 crc = 0xFFFFFFFF;
        for (const char byte : bytes.sliced(12, 17)) {
            crc ^= uchar(byte);
            for (int bit = 0; bit < 8; ++bit)
                crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
        }
        qToBigEndian<quint32>(~crc, bytes.data() + 29);
        return bytes;
    }

    void makeContents()
    {
        int number = 0;
        const auto addContent = [&](std::vector<Content> &contents, const char *suffix, const auto &bytesOf) {
            const SoakMark mark = markOf(number++);
            contents.push_back({bytesOf(mark), suffix, mark});
        };
        const auto picture = [&](std::vector<Content> &contents, const char *suffix, const QSize &size,
                                 const char *format, bool progressive = false) {
            addContent(contents, suffix,
                       [&](const SoakMark &mark) { return encoded(drawn(size, mark), format, progressive); });
        };
        for (int i = 0; i < 9; ++i) {
            picture(m_small, "jpg", {1600 - i * 40, 1200 + i * 20}, "jpg");
            picture(m_small, "jpeg", {720 + i * 10, 1080 - i * 20}, "jpg", true);
            picture(m_small, "jpg", {1024, 768 + i}, "jpg");
            picture(m_small, "png", {640 + i * 16, 800}, "png");
            picture(m_small, "JPG", {300 + i * 8, 400}, "jpg");
            if (i % 3 == 0) {
                picture(m_small, "bmp", {640, 480 + i}, "bmp");
                picture(m_small, "tiff", {800 - i, 600}, "tiff");
                picture(m_small, "jpg", {512, 700}, "png"); // the content tells, not the name
                addContent(m_small, "svg", [&](const SoakMark &mark) { return svg({400 + i, 300}, mark); });
                picture(m_small, "tif", {90 + i, 70}, "tiff");
            }
        }
        picture(m_large, "jpg", {4000, 3000}, "jpg");
        picture(m_large, "jpg", {6000, 4000}, "jpg");
        picture(m_large, "jpg", {3000, 4000}, "jpg");
        picture(m_large, "jpg", {4000, 3000}, "jpg", true);
        picture(m_large, "png", {4000, 3000}, "png");
        picture(m_large, "jpg", {4000, 6000}, "jpg", true);
        picture(m_large, "tiff", {4000, 3000}, "tiff");
        picture(m_large, "jpg", {5200, 3900}, "jpg");

        const QByteArray &whole = m_small.front().bytes;
        const QByteArray &png = m_large.at(4).bytes;
        m_bad.push_back({QByteArray(), "jpg", std::nullopt});
        m_bad.push_back({QByteArray(5000, 'x'), "png", std::nullopt});
        m_bad.push_back({enormous(), "png", std::nullopt});
        m_bad.push_back({whole.first(whole.size() / 2), "jpg", m_small.front().mark, true});
        m_bad.push_back({png.first(600), "png", std::nullopt});
        m_bad.push_back({QByteArrayLiteral("A letter, not a picture.\n"), "tiff", std::nullopt});
        m_bad.push_back(
            {QByteArrayLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\"><rect"), "svg", std::nullopt});
        m_bad.push_back({whole.first(300), "jpg", std::nullopt});
        std::mt19937 random(7);
        QByteArray noise(40'000, '\0');
        for (char &byte : noise)
            byte = char(random());
        m_bad.push_back({QByteArray::fromHex("ffd8ffe0") + noise, "jpg", std::nullopt});
        m_bad.push_back({QByteArrayLiteral("BM") + noise, "bmp", std::nullopt});
    }

    static bool write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

    bool add(int position)
    {
        const bool isBad = position % 50 == 25;
        const bool isLarge = position % 25 == 10;
        Content &content = isBad ? m_bad.at(std::size_t(position / 50) % m_bad.size())
            : isLarge            ? m_large.at(std::size_t(position / 25) % m_large.size())
                                 : m_small.at(std::size_t(position + position / 60) % m_small.size());
        const bool onCard = position % 10 == 3;
        const QString path = QStringLiteral("%1/%2.%3")
                                 .arg(onCard ? card : folder)
                                 .arg(position, 4, 10, QLatin1Char('0'))
                                 .arg(QLatin1String(content.suffix));
        m_pictures.push_back({path, content.mark, content.mayBeBlack, onCard});
        QString &first = content.first.at(onCard ? 1 : 0);
        if (!first.isEmpty())
            return ::link(QFile::encodeName(first).constData(), QFile::encodeName(path).constData()) == 0;
        first = path;
        return write(path, content.bytes);
    }

    std::vector<Content> m_small;
    std::vector<Content> m_large;
    std::vector<Content> m_bad;
    std::vector<SoakPicture> m_pictures;
};
