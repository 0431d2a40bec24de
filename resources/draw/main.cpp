// Draws the images that the exported pages use: draw-artwork FOLDER
#include "draw/Artwork.h"

#include <QDir>

#include <cstdio>

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fputs("usage: draw-artwork FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const QList<Artwork> all = drawBubbles() + drawMarks() + drawPlaceholders() + drawIcons();
    for (const Artwork &artwork : all) {
        const QString path = folder.filePath(artwork.name);
        if (!artwork.image.save(path, "PNG")) {
            std::fprintf(stderr, "%s could not be written.\n", qPrintable(path));
            return 1;
        }
    }
    return 0;
}
