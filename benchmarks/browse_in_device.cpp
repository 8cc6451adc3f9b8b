// The browsing that the benchmark "browse" measures: FOLDER PAGES. Runs in a device; writes its medians as
// JSON.

#include "on_panel.h"

using namespace Qt::StringLiterals;
using namespace lindenreed;
using namespace lindenreed::benchmarks;
using picture_stand::FolderModel;

namespace {

double residentMiB()
{
    QFile file(u"/proc/self/status"_s);
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return text.mid(text.indexOf("VmRSS:") + 6).simplified().split(' ').value(0).toDouble() / 1024;
}

void browse(const RunningApp &running, const QStringList &arguments, Medians &medians)
{
    const OnPanel panel(running, medians);
    running.app.changeView(u"select_photos"_s);
    panel.open([&] { running.model<FolderModel>("FolderModel")->changeFolder(arguments.value(0)); });
    const int pages = panel.turnPages(arguments.value(1).toInt());
    if (pages == 0)
        qFatal("The page key does not scroll.");
    medians.add(u"pages"_s, pages);
    medians.add(u"MiB"_s, residentMiB());
}

} // namespace

int main(int argc, char *argv[])
{
    return measureApp(argc, argv, browse);
}
