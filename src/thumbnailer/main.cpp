// Makes the thumbnail of the picture on its standard input and writes it to its standard output; fails with 1
// when there is none to be had. A program of its own, so that a hostile picture can spoil nothing but itself:
// whoever starts it sets bounds to its memory and its time.

#include "base/failure/Error.h"
#include "pictures/ThumbnailMaker.h"

#include <QCoreApplication>
#include <QFile>
#include <QImageReader>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv); // finds the plug-ins
    constexpr int MegabytesOfAPicture = 256;
    QImageReader::setAllocationLimit(MegabytesOfAPicture);
    try {
        QFile input;
        QFile output;
        if (!input.open(stdin, QIODevice::ReadOnly) ||
            !output.open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered))
            return 1;
        const QByteArray bytes = tavrin::ThumbnailMaker::make(input, QStringLiteral("-"));
        return output.write(bytes) == bytes.size() && output.flush() ? 0 : 1;
    } catch (const tavrin::Error& error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.Description));
        return 1;
    } catch (...) {
        return 1;
    }
}
