// A grey wedge, dithered for the panel: slate-run -- ./hello_panel

#include <slateview.h>

#include <QGuiApplication>
#include <QPainter>
#include <QRasterWindow>

struct Wedge : QRasterWindow
{
    void paintEvent(QPaintEvent *) override
    {
        QImage wedge(size(), QImage::Format_Grayscale8);
        for (int y = 0; y < height(); ++y)
            std::fill_n(wedge.scanLine(y), width(), uchar(y * 255 / height()));
        QuickFloyd16Dither(wedge.bits(), int(wedge.bytesPerLine()), 0, 0, width(), height());
        QPainter(this).drawImage(0, 0, wedge);
    }
};

int main(int argc, char **argv)
{
    QCoreApplication::addLibraryPath(QStringLiteral(SLATE_DEVICE_FOLDER));
    qputenv("QT_QPA_PLATFORM", "lindenreed2");
    QGuiApplication application(argc, argv);
    Wedge window;
    window.showFullScreen();
    return QGuiApplication::exec();
}
