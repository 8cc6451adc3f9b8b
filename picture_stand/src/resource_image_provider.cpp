#include "resource_image_provider.h"

#include "global_config.h"
#include "picture_reader.h"

#include <boardconf.h>
#include <shared_tools/cfg_wrapper.h>
#include <slateview.h>

#include <QThread>
#include <QThreadPool>
#include <QtConcurrentRun>

namespace lindenreed::picture_stand {

ResourceImageProvider::ResourceImageProvider()
    : QQuickImageProvider(QQmlImageProviderBase::Image)
{
    readPictureParams();
    const long long memory = getTotalRam();
    m_cache = std::make_shared<PictureCache>(memory / 10, &readImage);
    m_jobs = std::make_shared<PrefetchJobs>(m_cache, prefetchDecoders(memory, QThread::idealThreadCount()));
}

ResourceImageProvider::~ResourceImageProvider()
{
    m_jobs->abandon();
}

void ResourceImageProvider::readPictureParams()
{
    utilities::CfgWrapper config(globalConfigPath, 0);
    const auto factor = [&config](const char *key) {
        const boost::optional<int> percent = config.readIfExists<int>(key);
        return percent ? *percent / 100.0 : 1.0;
    };
    brightness = factor("picviewer_brightness");
    contrast = factor("picviewer_contrast");
    gamma = factor("picviewer_gamma");
    config.closeNoSave();
}

long long ResourceImageProvider::getTotalRam(const char *path)
{
    const std::optional<long long> total = readTotalMemory(path);
    if (!total)
        return 0;
    lr_print_log2(4, "picture_stand/src/resource_image_provider", __LINE__,
                  "long long lindenreed::picture_stand::ResourceImageProvider::getTotalRam()",
                  "TOTAL RAM is %lld", *total);
    return *total;
}

QImage ResourceImageProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    if (id.isEmpty())
        return {};

    QImage picture = m_cache->picture(id);

    // Also enlarges: every picture leaves this step touching the box. A null picture stays one, without the
    // message that Qt would print.
    if (!picture.isNull() && requestedSize.width() >= 0 && requestedSize.height() >= 0)
        picture = picture.scaled(requestedSize, Qt::KeepAspectRatio, Qt::FastTransformation);
    if (size)
        *size = picture.size();

    // The writable scan line parts the copy from the kept picture. What cannot be shown goes through as well.
    uchar *pixels = picture.scanLine(0);
    const int bytesPerLine = static_cast<int>(picture.bytesPerLine());
    if (device_display_colormask() != 0) {
        adjustAreaDefault(pixels, bytesPerLine, picture.width(), picture.height());
    } else {
        adjustAreaWithBrightnessContrastGamma(pixels, bytesPerLine, picture.width(), picture.height(),
                                              brightness, contrast, gamma);
        QuickFloyd16Dither(pixels, bytesPerLine, 0, 0, picture.width(), picture.height());
    }
    return picture;
}

void ResourceImageProvider::loadToCache(QList<QString> images, int index)
{
    if (images.isEmpty())
        return;
    // A job that is still running goes on beside the new one.
    watcher.setFuture(QtConcurrent::run(QThreadPool::globalInstance(), [jobs = m_jobs, images, index] {
        jobs->run(PrefetchJob(images, index));
    }));
}

} // namespace lindenreed::picture_stand
