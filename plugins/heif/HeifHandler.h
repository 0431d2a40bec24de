#ifndef PLUGINS_HEIF_HEIFHANDLER_H
#define PLUGINS_HEIF_HEIFHANDLER_H

#include "HeifPicture.h"

#include <QImageIOHandler>

//! \brief Reads the main picture of a HEIF file for the image library, upright and at reduced size.
class HeifHandler final : public QImageIOHandler
{
public:
    bool canRead() const override;
    bool read(QImage *image) override;
    QVariant option(ImageOption option) const override;
    void setOption(ImageOption option, const QVariant &value) override;
    bool supportsOption(ImageOption option) const override;

private:
    //! Opens the file when it is first asked for anything.
    bool isOpen() const;

    enum class State { Unopened, Open, Failed, Read };

    mutable State m_state = State::Unopened;
    mutable HeifPicture m_picture;
    QSize m_scaledSize;
};

#endif
