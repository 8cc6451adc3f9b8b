// JPEG files for QImageReader.

#pragma once

#include <QByteArray>
#include <QImage>
#include <QImageIOHandler>
#include <QList>
#include <QMap>
#include <QSize>
#include <QString>
#include <QVariant>

#include <memory>
#include <utility>

namespace lindenreed::device {

class JpegDecoder;

/// Reads as Qt's own reader does, with few differences: a smaller picture is reduced while it is decoded, so
/// that the whole one of a file of one scan is never held, and in a device with a grey panel every picture is
/// grey: the file's luma. What is damaged is null or shows what there is, without a message but Qt's own of a
/// profile of colours. Any thread, one at a time.
class JpegHandler final : public QImageIOHandler
{
public:
    JpegHandler();
    ~JpegHandler() override;

    static bool isJpeg(QIODevice &device); ///< by what stands next in it; nothing is taken out

    bool canRead() const override;
    bool read(QImage *image) override;
    bool write(const QImage &image) override;
    QVariant option(ImageOption option) const override;
    void setOption(ImageOption option, const QVariant &value) override;
    bool supportsOption(ImageOption option) const override;

private:
    enum class State { Ready, HeaderRead, Done };

    bool readHeader() const;
    void keepSegments() const;

    // Options are asked for before the picture, and of a constant handler: they read the header.
    mutable State m_state = State::Ready;
    mutable std::unique_ptr<JpegDecoder> m_decoder; ///< from the header to the last row
    mutable QSize m_size;
    mutable QImage::Format m_format = QImage::Format_Invalid;
    mutable Transformations m_transformation = TransformationNone;
    mutable QList<std::pair<QString, QString>> m_texts;
    mutable QByteArray m_colourProfile;
    QMap<ImageOption, QVariant> m_options; ///< as they were set, for writing too
};

} // namespace lindenreed::device
