#ifndef PLUGINS_HEIF_HEIFPLUGIN_H
#define PLUGINS_HEIF_HEIFPLUGIN_H

#include <QImageIOPlugin>

//! \brief Makes the image library read HEIC and AVIF.
class HeifPlugin final : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "heif.json")

public:
    Capabilities capabilities(QIODevice *device, const QByteArray &format) const override;
    QImageIOHandler *create(QIODevice *device, const QByteArray &format) const override;
};

#endif
