// One writer and several readers of a panel.

#include "panel_file.h"

#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;
using namespace std::chrono_literals;

namespace {

constexpr QSize panelSize(200, 120);

/// Whether a copy is of one moment: all of it says the same number.
bool isOfOneMoment(const PanelSnapshot &panel)
{
    const auto number = std::uint8_t(panel.header.refreshNumber % 251);
    if (panel.header.brightness != number || panel.header.x != std::int32_t(number))
        return false;
    for (int y = 0; y < panelSize.height(); ++y) {
        const uchar *row = panel.glass.constScanLine(y);
        for (int x = 0; x < panelSize.width(); ++x) {
            if (row[x] != number)
                return false;
        }
    }
    return true;
}

} // namespace

class tst_PanelThreads : public QObject
{
    Q_OBJECT

private slots:
    void copiesAreOfOneMoment();
    void writersComeAndGo();
};

void tst_PanelThreads::copiesAreOfOneMoment()
{
    constexpr int wantedCopies = 300;
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"panel"_s);
    const auto writer = PanelWriter::create({.size = panelSize}, path, nullptr);
    QVERIFY(writer);
    const auto write = [&writer](std::uint64_t refresh) {
        const auto number = std::uint8_t(refresh % 251);
        writer->beginWrite();
        writer->header().refreshNumber = refresh;
        writer->header().brightness = number;
        writer->header().x = number;
        std::memset(writer->pixels(), number, writer->stride() * std::size_t(panelSize.height()));
        writer->endWrite();
    };
    write(0);

    std::atomic_int copies = 0;
    std::atomic_int torn = 0;
    std::atomic_int backwards = 0;
    std::atomic_bool ended = false;
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            std::uint64_t latest = 0;
            while (!ended) {
                const std::optional<PanelSnapshot> panel = readPanel(path, nullptr);
                if (!panel)
                    continue; // busy, which is an answer too
                torn += isOfOneMoment(*panel) ? 0 : 1;
                backwards += panel->header.refreshNumber < latest ? 1 : 0;
                latest = panel->header.refreshNumber;
                ++copies;
            }
        });
    }
    std::uint64_t refresh = 0;
    while (copies < wantedCopies || refresh < 1000) {
        write(++refresh);
        std::this_thread::yield();
        if (refresh % 16 == 0)
            std::this_thread::sleep_for(1ms); // a panel takes a rest too, else readers only find it busy
    }
    ended = true;
    for (std::thread &reader : readers)
        reader.join();
    QCOMPARE(torn.load(), 0);
    QCOMPARE(backwards.load(), 0);
}

void tst_PanelThreads::writersComeAndGo()
{
    constexpr int lives = 200;
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"panel"_s);
    std::atomic_bool ended = false;
    std::atomic_int wrong = 0;
    std::thread reader([&] {
        while (!ended) {
            // Nothing at all, or a whole panel of one device; never one that is still being made.
            const std::optional<PanelSnapshot> panel = readPanel(path, nullptr);
            if (panel && (panel->glass.size() != panelSize || panel->glass.pixel(0, 0) != 0xffffffff))
                ++wrong;
        }
    });
    int made = 0;
    for (int i = 0; i < lives; ++i)
        made += PanelWriter::create({.size = panelSize}, path, nullptr) ? 1 : 0;
    ended = true;
    reader.join();
    QCOMPARE(made, lives);
    QCOMPARE(wrong.load(), 0);
}

QTEST_GUILESS_MAIN(tst_PanelThreads)
#include "tst_panel_threads.moc"
