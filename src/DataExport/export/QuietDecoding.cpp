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

thread_local int t_decodings = 0;

// What was there before. The process has one handler of each kind; ours are put before them once
// and stay, since to take them away again could undo what another thread has set meanwhile.
std::atomic<QtMessageHandler> s_messageHandler { nullptr };
std::atomic<TIFFErrorHandler> s_tiffErrors { nullptr };
std::atomic<TIFFErrorHandler> s_tiffWarnings { nullptr };

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
    if (t_decodings > 0 && type != QtFatalMsg && isOnPicture(context, message))
        return;
    QtMessageHandler next = s_messageHandler;
    while (next == nullptr) { // another thread has just put this one before it
        std::this_thread::yield();
        next = s_messageHandler;
    }
    next(type, context, message);
}

template <std::atomic<TIFFErrorHandler> &next>
void handleTiff(const char *module, const char *format, std::va_list values)
{
    const TIFFErrorHandler handler = next;
    if (t_decodings == 0 && handler != nullptr)
        handler(module, format, values);
}

void installHandlers()
{
    s_tiffErrors = TIFFSetErrorHandler(&handleTiff<s_tiffErrors>);
    s_tiffWarnings = TIFFSetWarningHandler(&handleTiff<s_tiffWarnings>);
    s_messageHandler = qInstallMessageHandler(&handleMessage);
}

} // namespace

QuietDecoding::QuietDecoding()
{
    static std::once_flag isInstalled;
    std::call_once(isInstalled, &installHandlers);
    ++t_decodings;
}

QuietDecoding::~QuietDecoding()
{
    --t_decodings;
}
