#include "HeifHandler.h"

#include <QVariant>

bool HeifHandler::canRead() const
{
    if (m_state == State::Unopened && (!device() || !HeifPicture::isHeif(*device())))
        return false;
    if (m_state == State::Failed || m_state == State::Read)
        return false;
    setFormat("heic");
    return true;
}

bool HeifHandler::isOpen() const
{
    if (m_state == State::Unopened) {
        m_state = canRead() && m_picture.open(device()) ? State::Open : State::Failed;
    }
    return m_state == State::Open;
}

bool HeifHandler::read(QImage *image)
{
    if (!isOpen())
        return false;
    m_state = State::Read; // one picture a file
    *image = m_picture.decode(m_scaledSize);
    return !image->isNull();
}

QVariant HeifHandler::option(ImageOption option) const
{
    switch (option) {
    case Size:
        return isOpen() || m_state == State::Read ? QVariant(m_picture.size()) : QVariant();
    case ScaledSize:
        return m_scaledSize;
    default:
        return {};
    }
}

void HeifHandler::setOption(ImageOption option, const QVariant &value)
{
    if (option == ScaledSize)
        m_scaledSize = value.toSize();
}

bool HeifHandler::supportsOption(ImageOption option) const
{
    return option == Size || option == ScaledSize;
}
