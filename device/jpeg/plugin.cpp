// Entry of the image format plug-in, which reads JPEG files in place of Qt's own reader.

#include "jpeg_handler.h"

#include <QImageIOPlugin>

class SlateJpegPlugin : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "jpeg.json")

public:
    /// Reading alone: Qt's own writes.
    Capabilities capabilities(QIODevice *device, const QByteArray &format) const override
    {
        if (!format.isEmpty())
            return format == "jpg" || format == "jpeg" ? CanRead : Capabilities();
        return device && device->isReadable() && lindenreed::device::JpegHandler::isJpeg(*device)
            ? CanRead
            : Capabilities();
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
