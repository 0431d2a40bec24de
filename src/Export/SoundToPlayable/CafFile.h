#ifndef EXPORT_SOUNDTOPLAYABLE_CAFFILE_H
#define EXPORT_SOUNDTOPLAYABLE_CAFFILE_H

#include <QByteArray>
#include <QList>

namespace Export::SoundToPlayable {

/*!
    \brief A Core Audio Format file: how its sound is coded, and its packets.

    Nothing in it is taken at its word. Source: Apple, "Core Audio Format Specification".
*/
class CafFile
{
public:
    struct Packet
    {
        QByteArrayView bytes;
        qint64 frames; //!< At sampleRate().
    };

    //! \a file is kept.
    explicit CafFile(const QByteArray &file);

    //! Whether \a bytes begin as such a file does.
    static bool isCaf(QByteArrayView bytes);

    //! Whether there is something to play.
    bool isReadable() const { return !m_data.isEmpty() && m_sampleRate > 0; }

    QByteArrayView codec() const { return m_codec; } //!< Four letters: "opus", "aac ", "lpcm", …
    quint32 flags() const { return m_flags; } //!< What they mean depends on the codec.
    double sampleRate() const { return m_sampleRate; } //!< Frames per second.
    int channels() const { return m_channels; }
    int bitsPerChannel() const { return m_bits; }
    qint64 primingFrames() const { return m_priming; } //!< To be left out at the beginning.
    qint64 validFrames() const { return m_valid; } //!< To be played; -1 when not told.
    QByteArrayView cookie() const { return m_cookie; } //!< What its decoder needs to know.
    QByteArrayView data() const { return m_data; } //!< All packets.

    QList<Packet> packets() const;

private:
    void readDescription(QByteArrayView content);

    QByteArray m_file;
    QByteArrayView m_codec;
    QByteArrayView m_cookie;
    QByteArrayView m_data;
    QByteArrayView m_table; // how long packets are
    double m_sampleRate = 0;
    quint32 m_flags = 0;
    quint32 m_bytesPerPacket = 0; // 0: they differ
    quint32 m_framesPerPacket = 0; // 0: they differ
    int m_channels = 0;
    int m_bits = 0;
    qint64 m_priming = 0;
    qint64 m_valid = -1;
};

} // namespace Export::SoundToPlayable

#endif
