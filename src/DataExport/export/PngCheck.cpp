#include "export/PngCheck_p.h"

#include <QIODevice>

#include <csetjmp>
#include <png.h>

namespace {

// What the calls of libpng share. An error ends them with a jump, which destroys nothing: no
// function that one is jumped out of has anything to destroy.
struct Reading
{
    QIODevice &source;
    qint64 maxPixels;
    PngCheck &check;
    qint64 count = 0; // of bytes
    bool hasEnded = false;
};

void keepError(png_structp png, png_const_charp message)
{
    static_cast<Reading *>(png_get_error_ptr(png))->check.remark = QString::fromLatin1(message);
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp /*png*/, png_const_charp /*message*/) { }

void readBytes(png_structp png, png_bytep data, std::size_t size)
{
    auto &reading = *static_cast<Reading *>(png_get_io_ptr(png));
    const auto wanted = static_cast<qint64>(size);
    const qint64 count = reading.source.read(reinterpret_cast<char *>(data), wanted);
    reading.count += wanted;
    reading.hasEnded = count < wanted;
    if (reading.hasEnded)
        png_error(png, "Read Error");
}

void read(png_structp png, png_infop info, Reading &reading)
{
    if (setjmp(png_jmpbuf(png)) != 0) // libpng knows no other way
        return;
    // As the image library sets it.
    png_set_benign_errors(png, 1);
    png_set_option(png, PNG_SKIP_sRGB_CHECK_PROFILE, PNG_OPTION_ON);
    png_set_option(png, PNG_MAXIMUM_INFLATE_WINDOW, PNG_OPTION_ON);
    png_set_read_fn(png, &reading, &readBytes);
    png_read_info(png, info);
    const png_uint_32 height = png_get_image_height(png, info);
    if (qint64 { png_get_image_width(png, info) } * height > reading.maxPixels) {
        reading.check.state = PngCheck::State::Sound;
        return;
    }
    for (int passes = png_set_interlace_handling(png); passes > 0; --passes) {
        for (png_uint_32 row = 0; row < height; ++row)
            png_read_row(png, nullptr, nullptr);
    }
    reading.check.state = PngCheck::State::DamagedEnd; // until it is seen
    reading.check.endOfPixels = reading.count;
    png_read_end(png, nullptr);
    reading.check.state = PngCheck::State::Sound;
}

} // namespace

PngCheck PngCheck::of(QIODevice &source, qint64 maxPixels)
{
    const qint64 start = source.pos();
    PngCheck check;
    Reading reading { source, maxPixels, check };
    png_structp png =
        png_create_read_struct(PNG_LIBPNG_VER_STRING, &reading, &keepError, &ignoreWarning);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    if (info != nullptr)
        read(png, info, reading);
    png_destroy_read_struct(&png, &info, nullptr);
    if (reading.hasEnded && check.state == State::Damaged)
        check.state = State::CutOff;
    source.seek(start);
    return check;
}
