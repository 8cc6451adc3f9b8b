#include "slideshow_model.h"

#include "created_date.h"
#include "folder_names.h"
#include "regular_file.h"

#include <boardconf.h>
#include <shared_tools/eink_interface.h>
#include <slateview.h>

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <limits>

using namespace Qt::StringLiterals;

namespace lindenreed::picture_stand {

namespace {

constexpr char timerName[] = "nextImageEvent";

} // namespace

SlideshowModel::SlideshowModel(QObject *parent)
    : QObject(parent)
{
}

SlideshowModel::~SlideshowModel()
{
    // The device must never be left with its automatisms off.
    stop();
}

QString SlideshowModel::currentImage() const
{
    return hasCurrent() ? m_images.at(m_index) : QString();
}

QDateTime SlideshowModel::createdDateTime() const
{
    return hasCurrent() ? createdDate(m_images.at(m_index)) : QDateTime();
}

void SlideshowModel::initFromFolder(const QString &path, int interval)
{
    m_folder = path;
    const QStringList filters = u"*.jpg|*.png|*.bmp|*.jpeg|*.tiff|*.tif|*.svg"_s.split(u'|');
    const QStringList files = filesBelow(path, filters);
    for (const QString &file : files) {
        if (isRegularFile(file) && !file.contains("/system/"_L1))
            m_images.append(file);
    }
    m_index = 0;
    m_interval = interval;
}

void SlideshowModel::setCurrentFile(const QString &path)
{
    if (path.isEmpty())
        return;
    const qsizetype index = m_images.indexOf(QFileInfo(path).filePath());
    if (index < 0)
        return;
    m_index = static_cast<int>(index);
    emit current_imageChanged();
}

void SlideshowModel::resumeTimer()
{
    if (m_running)
        armTimer();
}

void SlideshowModel::nextImage()
{
    step();
    refreshCurrent();
    BanSleep(1);
}

void SlideshowModel::prevImage()
{
    // No BanSleep here, unlike the step forward: this step is always the user's.
    m_index = (m_index < 1 ? static_cast<int>(m_images.size()) : m_index) - 1;
    refreshCurrent();
}

void SlideshowModel::intervalChange(int seconds)
{
    m_interval = seconds;
    ClearTimerByName(timerName);
    if (m_running)
        armTimer();
}

void SlideshowModel::shuffleChange(bool shuffle)
{
    if (shuffle) {
        // Never seeded, by intent: every start of the program walks through the same shuffles.
        for (int i = 1; i < m_images.size(); ++i) {
            const int j = std::rand() % (i + 1);
            if (j != i)
                m_images.swapItemsAt(i, j);
        }
    } else {
        std::sort(m_images.begin(), m_images.end());
    }
    requestPrefetch();
}

void SlideshowModel::stop()
{
    m_running = false;
    SetAutoPowerOff(1);
    SetAutoKeylock(1);
    ClearTimerByName(timerName);
}

void SlideshowModel::start()
{
    if (m_images.isEmpty())
        return;
    m_running = true;
    SetAutoPowerOff(0);
    SetAutoKeylock(0);
    ClearTimerByName(timerName);
    armTimer();
}

void SlideshowModel::onForeground()
{
    if (m_wasRunning)
        start();
}

void SlideshowModel::onBackground()
{
    m_wasRunning = m_running;
    stop();
}

void SlideshowModel::switchHQUpdates(bool value)
{
    if (device_display_colormask() != 0)
        utilities::EinkInterface::instance().platform()->setFastUpdates(!value);
}

double SlideshowModel::getTouchDragZone()
{
    return device_display_dpi() * 1.6;
}

QString SlideshowModel::getTimeString(QString format, QDateTime dateTime)
{
    const auto seconds = static_cast<std::time_t>(dateTime.toSecsSinceEpoch());
    std::tm time = {};
    tzset(); // localtime_r() alone goes on with the zone that it saw first
    if (!localtime_r(&seconds, &time))
        return {}; // a year that does not fit into an int
    std::array<char, 128> text = {};
    GetLangTime(text.data(), static_cast<int>(text.size()), format.toUtf8().constData(), &time, 0);
    return QString::fromUtf8(text.data());
}

void SlideshowModel::initFromList(QStringList images, int interval)
{
    m_index = 0;
    m_interval = interval;
    m_images.clear();
    for (const QString &path : std::as_const(images)) {
        if (QFile(path).exists())
            m_images.append(path);
    }
}

void SlideshowModel::tick(void *context)
{
    auto *model = static_cast<SlideshowModel *>(context);
    if (!model->m_running)
        return;
    model->nextImage();
}

void SlideshowModel::step()
{
    ++m_index;
    if (m_index >= m_images.size())
        m_index = 0;
}

void SlideshowModel::refreshCurrent()
{
    emit current_imageChanged();
    emit loadToCache(m_images, m_index);
    ClearTimerByName(timerName);
    if (m_running)
        armTimer();
}

void SlideshowModel::requestPrefetch()
{
    if (!m_images.isEmpty())
        emit loadToCache(m_images, m_index);
}

void SlideshowModel::armTimer()
{
    // A stored interval may be any int; more than 24 days is as good as 24 days.
    const auto milliseconds = std::min<long long>(m_interval * 1000LL, std::numeric_limits<int>::max());
    SetHardTimerEx(timerName, &SlideshowModel::tick, this,
                   static_cast<int>(std::max<long long>(milliseconds, std::numeric_limits<int>::min())));
}

} // namespace lindenreed::picture_stand
