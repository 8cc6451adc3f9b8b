// The SDK's log.

#include <slateview.h>
#include <slateview_testing.h>

#include <captured_error.h>
#include <journal_lines.h>

#include <QTest>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

class tst_SdkLog : public QObject
{
    Q_OBJECT

private slots:
    void log();
    void logWithoutArguments();
    void longLogLine();
};

void tst_SdkLog::log()
{
    DeviceForTest device;
    CapturedError error;
    lr_print_log2(2, "picture_stand/src/datastorage", 12, "bool open()", "%s: %d\n", "no such table", 1);
    QCOMPARE(error.finish(),
             QByteArrayList({"2 picture_stand/src/datastorage:12 bool open(): no such table: 1\\n\n"}));
    QCOMPARE(journalLines(device), // without the line's own text
             QByteArrayList({"lr_print_log2(2, picture_stand/src/datastorage, 12, bool open())"}));
}

void tst_SdkLog::logWithoutArguments()
{
    CapturedError error;
    const char *const none = nullptr;
    lr_print_log2(4, none, 0, none, "%s", "");
    lr_print_log2(4, "f", 0, "g", none);
    QCOMPARE(error.finish(), QByteArrayList({"4 :0 : \n", "4 f:0 g: \n"}));
}

void tst_SdkLog::longLogLine()
{
    CapturedError error;
    const std::string text(60'000, 'x');
    lr_print_log2(4, "f", 0, "g", "<%s>", text.c_str());
    const QByteArrayList writes = error.finish();
    QCOMPARE(writes.size(), 1);
    QCOMPARE(writes.constFirst(), "4 f:0 g: <" + QByteArray::fromStdString(text) + ">\n");
}

QTEST_GUILESS_MAIN(tst_SdkLog)
#include "tst_sdk_log.moc"
