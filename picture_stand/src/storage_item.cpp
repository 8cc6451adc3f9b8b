#include "storage_item.h"

#include "storage.h"
#include "two_texts.h"

#include <slateview.h>

namespace lindenreed::picture_stand {

StorageItem::StorageItem(const QString &shownName, const QString &absolutePath, int kind)
    : name(shownName)
    , path(absolutePath)
    , type(kind)
{
    refreshSpace();
}

QString StorageItem::memoryText() const
{
    const QByteArray total = QByteArray::fromStdString(space.first);
    const QByteArray free = QByteArray::fromStdString(space.second);
    std::optional<QByteArray> text = withTwoTexts(GetLangText("@AvailableDiskSpace"), free, total);
    if (!text)
        text = withTwoTexts("%s free\nof %s", free, total);
    return QString::fromUtf8(*text);
}

void StorageItem::refreshSpace()
{
    if (type >= StorageItemType::StorageItemInternal && type <= StorageItemType::StorageItemOTG)
        Storage::diskSpace(path.toLocal8Bit().toStdString(), space);
}

} // namespace lindenreed::picture_stand
