// The storages of the device: which are in, and how the application gets to know them.

#include "media_fixture.h"

#include <texts.h>

#include <QDir>
#include <QMetaEnum>
#include <QThread>

#include <memory>
#include <thread>

#include <sys/statvfs.h>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::Storage;
using lindenreed::picture_stand::StorageItem;
using lindenreed::picture_stand::StorageItemType;

class tst_StorageRoots : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_media = std::make_unique<MediaFixture>(); }
    void cleanup()
    {
        m_media.reset();
        lindenreed::device::texts::load(u"en"_s);
    }

    void firstUseBeginsALook(); // first: there is one storage object in a process
    void metaObject();
    void kindsOfEntries();
    void roots_data();
    void roots();
    void callsOfAWorker();
    void realMeasures();
    void namesInTheLanguage();
    void internalMemoryThatIsGone();
    void mediumThatCannotBeMeasured();
    void everyLookIsReported();
    void reportComesOnTheMainThread();

private:
    std::unique_ptr<MediaFixture> m_media;
};

void tst_StorageRoots::firstUseBeginsALook()
{
    const auto measured = [] {
        return MediaFixture::workerCalls().count("isUsbStorMounted") == 1; // the last question
    };
    QVERIFY(MediaFixture::workerCalls().isEmpty());
    Storage &storage = Storage::instance();
    QVERIFY(!storage.parent());
    const QSignalSpy changed(&storage, &Storage::storageChanged);
    while (!measured())
        std::this_thread::yield();
    QCOMPARE(MediaFixture::roots().size(), 0); // not before the event loop brings it
    QCOMPARE(changed.count(), 0);
    QVERIFY(MediaFixture::reported(changed, 1));
    QCOMPARE(MediaFixture::roots().size(), 1);

    QCOMPARE(&Storage::instance(), &storage);
    QVERIFY(measured()); // and no second look
    QVERIFY(m_media->device.calls().isEmpty()); // nothing of it on the main thread
}

void tst_StorageRoots::metaObject()
{
    const QMetaObject &meta = Storage::staticMetaObject;
    QCOMPARE(QByteArray(meta.className()), QByteArray("lindenreed::picture_stand::Storage"));
    QVERIFY(meta.superClass() == &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    QCOMPARE(meta.method(meta.methodOffset()).methodSignature(), QByteArray("storageChanged()"));
    QCOMPARE(meta.method(meta.methodOffset() + 1).methodSignature(),
             QByteArray("listFilesChanged(QStringList)"));
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Signal);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
}

void tst_StorageRoots::kindsOfEntries()
{
    const QMetaObject &meta = StorageItemType::staticMetaObject;
    QCOMPARE(QByteArray(meta.className()), QByteArray("lindenreed::picture_stand::StorageItemType"));
    QCOMPARE(meta.enumeratorCount(), 1);
    const QMetaEnum kinds = meta.enumerator(0);
    QCOMPARE(QByteArray(kinds.name()), QByteArray("StorageItemRoles"));
    const QByteArrayList names{"StorageItemRoot", "StorageItemInternal", "StorageItemSDCard",
                               "StorageItemOTG",  "StorageItemFolder",   "StorageItemFile",
                               "StorageItemEmpty"};
    QCOMPARE(kinds.keyCount(), int(names.size()));
    for (int i = 0; i < kinds.keyCount(); ++i) {
        QCOMPARE(QByteArray(kinds.key(i)), names.at(i));
        QCOMPARE(kinds.value(i), i);
    }
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
}

void tst_StorageRoots::roots_data()
{
    MediaFixture::addStorages();
}

void tst_StorageRoots::roots()
{
    QFETCH(bool, card);
    QFETCH(bool, usb);
    QFETCH(QStringList, expected);

    MediaFixture::plug(card, usb);
    QVERIFY(MediaFixture::look());
    QCOMPARE(MediaFixture::lines(MediaFixture::roots()), expected);
    for (const StorageItem &root : MediaFixture::roots()) {
        QVERIFY2(!root.totalSpace().isEmpty() && !root.freeSpace().isEmpty(), qPrintable(root.path));
        QCOMPARE(root.memoryText(), root.freeSpace() + u" free\nof "_s + root.totalSpace());
    }
    MediaFixture::plug(false, false);
    QVERIFY(MediaFixture::look());
    QCOMPARE(MediaFixture::roots().size(), 1);
}

void tst_StorageRoots::callsOfAWorker()
{
    MediaFixture::plug(true, true);
    m_media->device.forgetCalls();
    QVERIFY(MediaFixture::look());
    QByteArrayList calls = MediaFixture::workerCalls();
    for (QByteArray &call : calls) {
        const QByteArrayList words = call.split(' ');
        if (words.constFirst() != "HumanSizeWithPrecision")
            continue;
        QCOMPARE(words.size(), 5);
        QCOMPARE(words.at(1), QByteArray("64"));
        QCOMPARE(words.at(4), QByteArray("0"));
        call = words.constFirst();
    }
    QCOMPARE(calls,
             (QByteArrayList{"GetLangText @FlashDir", "HumanSizeWithPrecision", "HumanSizeWithPrecision",
                             "IsSDCardMounted /mnt/ext2", "GetLangText @SDcard", "HumanSizeWithPrecision",
                             "HumanSizeWithPrecision", "isUsbStorMounted", "GetLangText @OTG",
                             "HumanSizeWithPrecision", "HumanSizeWithPrecision"}));
    QVERIFY(m_media->device.calls().isEmpty());
}

void tst_StorageRoots::realMeasures()
{
    struct statvfs memory = {};
    QCOMPARE(statvfs("/mnt/ext1", &memory), 0);
    m_media->device.forgetCalls();
    QVERIFY(MediaFixture::look());
    QVERIFY(MediaFixture::workerCalls().contains("HumanSizeWithPrecision 64 "
                                                 + QByteArray::number(qulonglong(memory.f_blocks)) + ' '
                                                 + QByteArray::number(qulonglong(memory.f_frsize)) + " 0"));
}

void tst_StorageRoots::namesInTheLanguage()
{
    MediaFixture::plug(true, true);
    lindenreed::device::texts::load(u"de"_s);
    QVERIFY(MediaFixture::look());
    for (const StorageItem &root : MediaFixture::roots()) {
        const char *const key = root.type == 1 ? "@FlashDir" : root.type == 2 ? "@SDcard" : "@OTG";
        QCOMPARE(root.name, QString::fromUtf8(lindenreed::device::texts::text(key)));
        QCOMPARE(root.memoryText(), root.freeSpace() + u" frei\nvon "_s + root.totalSpace());
    }
}

void tst_StorageRoots::internalMemoryThatIsGone()
{
    QVERIFY(QDir().rename(u"/mnt/ext1"_s, u"/mnt/away"_s));
    const bool looked = MediaFixture::look();
    const QList<StorageItem> roots = MediaFixture::roots();
    QVERIFY(QDir().rename(u"/mnt/away"_s, u"/mnt/ext1"_s));
    QVERIFY(looked);
    QCOMPARE(MediaFixture::lines(roots), QStringList{u"This device /mnt/ext1 1"_s});
    QCOMPARE(roots.constFirst().totalSpace(), QString());
    QCOMPARE(roots.constFirst().freeSpace(), QString());
    QCOMPARE(roots.constFirst().memoryText(), u" free\nof "_s);
}

void tst_StorageRoots::mediumThatCannotBeMeasured()
{
    m_media->device.setMounted(true, true); // so it is said, but nothing is there
    QVERIFY(MediaFixture::look());
    const QList<StorageItem> roots = MediaFixture::roots();
    QCOMPARE(roots.size(), 3);
    QVERIFY(!roots.at(0).totalSpace().isEmpty());
    for (const StorageItem &root : roots.mid(1)) {
        QCOMPARE(root.totalSpace(), QString());
        QCOMPARE(root.freeSpace(), QString());
    }
    m_media->device.setMounted(false, false);
}

void tst_StorageRoots::everyLookIsReported()
{
    Storage &storage = Storage::instance();
    const QSignalSpy changed(&storage, &Storage::storageChanged);
    m_media->device.forgetCalls();
    storage.update();
    storage.update();
    QCOMPARE(changed.count(), 0); // neither before update() returns
    QVERIFY(MediaFixture::reported(changed, 2));
    QCOMPARE(MediaFixture::workerCalls().count("GetLangText @FlashDir"), 2);
    QCOMPARE(MediaFixture::roots().size(), 1);
}

void tst_StorageRoots::reportComesOnTheMainThread()
{
    MediaFixture::plug(true, false);
    Storage &storage = Storage::instance();
    const QThread *thread = nullptr;
    qsizetype known = 0;
    const auto connection = connect(
        &storage, &Storage::storageChanged, &storage,
        [&] {
            thread = QThread::currentThread();
            known = MediaFixture::roots().size();
        },
        Qt::DirectConnection);
    const bool looked = MediaFixture::look();
    disconnect(connection);
    QVERIFY(looked);
    QCOMPARE(thread, QCoreApplication::instance()->thread());
    QCOMPARE(known, 2); // whoever hears of it finds the new list
}

QTEST_GUILESS_MAIN(tst_StorageRoots)
#include "tst_storage_roots.moc"
