// A picture file as a grey panel of WIDTH x HEIGHT shows it, by the program's own way, as a whole process
// that other tools can be measured beside. Writes a PGM; without FILE and OUT it does all but that, which is
// what it takes to be there.
//
//   picture_to_panel WIDTH HEIGHT [FILE OUT]

#include "device_reader.h"

#include <facts.h>
#include <memory_setup.h>
#include <resource_image_provider.h>

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QImageReader>

using namespace lindenreed;

int main(int argc, char *argv[])
{
    picture_stand::setUpMemory();
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3 && arguments.size() != 5) {
        qCritical("usage: picture_to_panel WIDTH HEIGHT [FILE OUT]");
        return 2;
    }
    const QSize panel(arguments.at(1).toInt(), arguments.at(2).toInt());
    benchmarks::readAsOnAGreyPanel();
    device::facts().width = panel.width();
    device::facts().height = panel.height();

    picture_stand::ResourceImageProvider provider;
    QImageReader::supportedImageFormats(); // whoever is there has looked for its readers
    if (arguments.size() == 3)
        return 0;
    QSize size;
    const QImage picture = provider.requestImage(arguments.at(3), &size, panel);
    QFile out(arguments.at(4));
    if (picture.isNull() || !out.open(QFile::WriteOnly) || !picture.save(&out, "PGM")) {
        qCritical("picture_to_panel: %s cannot be shown or %s not be written", qPrintable(arguments.at(3)),
                  qPrintable(arguments.at(4)));
        return 1;
    }
    return 0;
}
