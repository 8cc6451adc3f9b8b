// The device's reader of JPEG files and Qt's own, side by side. Needs slate_jpeg.

#pragma once

#include "four_inks.h"

#include <jpeg_handler.h>
#include <qt_jpeg_plugin.h>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QRect>
#include <QVariant>

#include <cmath>
#include <functional>
#include <memory>

/// A reader over bytes.
class JpegReader
{
public:
    enum class Whose { Device, Qt };
    JpegReader(Whose whose, const QByteArray &file)
    {
        m_buffer.setData(file);
        m_buffer.open(QIODevice::ReadOnly);
        if (whose == Whose::Qt) {
            m_handler.reset(lindenreed::device::qtJpegPlugin()->create(&m_buffer, "jpeg"));
        } else {
            m_handler = std::make_unique<lindenreed::device::JpegHandler>();
            m_handler->setDevice(&m_buffer);
        }
    }
    QImageIOHandler &operator*() { return *m_handler; }
    QImageIOHandler *operator->() { return m_handler.get(); }

    /// As QImageReader gives it: null where it failed. What Qt 6.8 leaves in four inks is in the colours
    /// that 6.4 makes of them.
    QImage picture()
    {
        QImage image;
        return m_handler->read(&image) ? withoutInks(image) : QImage();
    }

private:
    QBuffer m_buffer;
    std::unique_ptr<QImageIOHandler> m_handler;
};

using PrepareReader = std::function<void(QImageIOHandler &)>;

inline QImage ownPicture(const QByteArray &file, const PrepareReader &prepare = {})
{
    JpegReader reader(JpegReader::Whose::Device, file);
    if (prepare)
        prepare(*reader);
    return reader.picture();
}

inline QImage qtPicture(const QByteArray &file, const PrepareReader &prepare = {})
{
    JpegReader reader(JpegReader::Whose::Qt, file);
    if (prepare)
        prepare(*reader);
    return reader.picture();
}

/// Of pictures of one size, over the channels: in dB, infinite for equal ones.
inline double peakSignalToNoise(QImage first, QImage second)
{
    first.convertTo(QImage::Format_RGB32);
    second.convertTo(QImage::Format_RGB32);
    double sum = 0;
    for (int y = 0; y < first.height(); ++y) {
        const auto *const a = static_cast<const QRgb *>(static_cast<const void *>(first.constScanLine(y)));
        const auto *const b = static_cast<const QRgb *>(static_cast<const void *>(second.constScanLine(y)));
        for (int x = 0; x < first.width(); ++x) {
            sum += std::pow(qRed(a[x]) - qRed(b[x]), 2) + std::pow(qGreen(a[x]) - qGreen(b[x]), 2)
                + std::pow(qBlue(a[x]) - qBlue(b[x]), 2);
        }
    }
    return 10 * std::log10(255.0 * 255 * 3 * first.width() * first.height() / sum);
}
