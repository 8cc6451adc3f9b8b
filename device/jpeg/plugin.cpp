// Entry of the image format plug-in, which reads JPEG files in place of Qt's own reader.

#include "jpeg_handler.h"

#include <QImageIOPlugin>

class SlateJpegPlugin : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "jpeg.json")

public:
    Capabilities capabilities(QIODevice *device, const QByteArray &format) const override
    {
        if (format == "jpg" || format == "jpeg")
            return CanRead | CanWrite;
        if (!format.isEmpty() || !device)
            return {};
        Capabilities found;
        found.setFlag(CanRead, device->isReadable() && lindenreed::device::JpegHandler::isJpeg(*device));
        found.setFlag(CanWrite, device->isWritable());
        return found;
    }

    QImageIOHandler *create(QIODevice *device, const QByteArray &format) const override
    {
        auto *const handler = new lindenreed::device::JpegHandler;
        handler->setDevice(device);
        handler->setFormat(format);
        return handler;
    }
};

#include "plugin.moc"
