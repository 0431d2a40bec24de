#include "export/QuietDecoding_p.h"

#include <QLoggingCategory>

#include <atomic>
#include <cstdarg>
#include <cstring>
#include <mutex>
#include <thread>
#include <tiffio.h>

namespace {

constexpr char kPictureCategory[] = "qt.gui.imageio"; // and those below it
constexpr QLatin1StringView kSeekRemark("QBuffer::seek"); // a place that a broken picture names

thread_local int t_decodings = 0;

// What was there before. The process has one handler of each kind; ours are put before them once
// and stay, since to take them away again could undo what another thread has set meanwhile.
std::atomic<QtMessageHandler> s_messageHandler { nullptr };
std::atomic<TIFFErrorHandler> s_tiffErrors { nullptr };
std::atomic<TIFFErrorHandler> s_tiffWarnings { nullptr };

bool isOnPicture(const QMessageLogContext &context, const QString &message)
{
    const bool isOfImages = context.category != nullptr
        && std::strncmp(context.category, kPictureCategory, sizeof kPictureCategory - 1) == 0;
    return isOfImages || message.startsWith(kSeekRemark);
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
