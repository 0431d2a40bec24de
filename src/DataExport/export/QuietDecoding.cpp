#include "export/QuietDecoding_p.h"

#include <QLoggingCategory>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdarg>
#include <mutex>
#include <string_view>
#include <thread>
#include <tiffio.h>

namespace {

constexpr std::array<std::string_view, 2> kPictureCategories { "qt.gui.imageio",
                                                               "qt.gui.icc" }; // and those below
// Without a category: of a place that a broken picture names, of colours.
constexpr std::array<QLatin1StringView, 2> kRemarkStarts { QLatin1StringView("QBuffer::seek"),
                                                           QLatin1StringView("QImage") };

thread_local int decodings = 0;

// What was there before. The process has one handler of each kind; ours are put before them once
// and stay, since to take them away again could undo what another thread has set meanwhile.
std::atomic<QtMessageHandler> nextMessageHandler { nullptr };
std::atomic<TIFFErrorHandler> nextTiffErrors { nullptr };
std::atomic<TIFFErrorHandler> nextTiffWarnings { nullptr };

bool isOnPicture(const QMessageLogContext &context, const QString &message)
{
    const std::string_view category(context.category != nullptr ? context.category : "");
    const bool isOfImages =
        std::any_of(kPictureCategories.begin(),
                    kPictureCategories.end(),
                    [category](std::string_view known) { return category.starts_with(known); });
    return isOfImages
        || std::any_of(kRemarkStarts.begin(), kRemarkStarts.end(), [&message](auto start) {
               return message.startsWith(start);
           });
}

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (decodings > 0 && type != QtFatalMsg && isOnPicture(context, message))
        return;
    QtMessageHandler next = nextMessageHandler;
    while (next == nullptr) { // another thread has just put this one before it
        std::this_thread::yield();
        next = nextMessageHandler;
    }
    next(type, context, message);
}

template <std::atomic<TIFFErrorHandler> &next>
void handleTiff(const char *module, const char *format, std::va_list values)
{
    const TIFFErrorHandler handler = next;
    if (decodings == 0 && handler != nullptr)
        handler(module, format, values);
}

void installHandlers()
{
    nextTiffErrors = TIFFSetErrorHandler(&handleTiff<nextTiffErrors>);
    nextTiffWarnings = TIFFSetWarningHandler(&handleTiff<nextTiffWarnings>);
    nextMessageHandler = qInstallMessageHandler(&handleMessage);
}

} // namespace

QuietDecoding::QuietDecoding()
{
    static std::once_flag isInstalled;
    std::call_once(isInstalled, &installHandlers);
    ++decodings;
}

QuietDecoding::~QuietDecoding()
{
    --decodings;
}
