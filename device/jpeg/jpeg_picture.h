// From a JPEG file's rows to a picture.

#pragma once

#include <QImage>
#include <QRect>
#include <QSize>

namespace lindenreed::device {

class JpegDecoder;

/// What QImageReader asks for; what is empty is not asked for. First the clip, then the size, then the clip
/// of that.
struct JpegRequest
{
    int quality = -1; ///< below 50: fast rather than exact
    QRect clip;
    QSize scaledSize;
    QRect scaledClip;
};

/// Of what decodePicture() makes, Format_Invalid for files that it cannot read: grey where the file is, or
/// `greyPanel`.
QImage::Format pictureFormat(const JpegDecoder &decoder, bool greyPanel);

/// Behind the header. False for damaged files, and beyond QImageReader's allocation limit.
bool decodePicture(JpegDecoder &decoder, JpegRequest request, bool greyPanel, QImage *image);

} // namespace lindenreed::device
