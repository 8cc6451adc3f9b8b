// draw_icon SVG SIZE PNG: draws the icon at one size, in pixels.

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fputs("Usage: draw_icon SVG SIZE PNG\n", stderr);
        return 2;
    }
    const int size = QByteArray(argv[2]).toInt();
    QSvgRenderer renderer(QString::fromLocal8Bit(argv[1]));
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    if (!renderer.isValid() || picture.isNull()) {
        std::fprintf(stderr, "draw_icon: %s cannot be drawn at \"%s\"\n", argv[1], argv[2]);
        return 1;
    }
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    renderer.render(&painter);
    painter.end();
    return picture.save(QString::fromLocal8Bit(argv[3]), "PNG") ? 0 : 1;
}
