#include "HeifPlugin.h"

#include "HeifHandler.h"

QImageIOPlugin::Capabilities HeifPlugin::capabilities(QIODevice *device,
                                                      const QByteArray &format) const
{
    if (format == "heic" || format == "heif" || format == "avif")
        return CanRead;
    const bool isAskedByContent = format.isEmpty() && device != nullptr && device->isOpen();
    return isAskedByContent && device->isReadable() && HeifPicture::isHeif(*device)
        ? Capabilities(CanRead)
        : Capabilities();
}

QImageIOHandler *HeifPlugin::create(QIODevice *device, const QByteArray &format) const
{
    auto *handler = new HeifHandler; // the caller's
    handler->setDevice(device);
    handler->setFormat(format);
    return handler;
}
