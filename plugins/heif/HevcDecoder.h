#ifndef PLUGINS_HEIF_HEVCDECODER_H
#define PLUGINS_HEIF_HEVCDECODER_H

#include <QByteArrayView>

#include <memory>

struct de265_image;

//! Decodes single pictures of HEVC, in the caller's thread.
class HevcDecoder
{
public:
    //! What smooths the edges of blocks and the errors within them.
    enum class Filters {
        On, //!< As the coder meant it.
        Off //!< Quicker; it does not show in averages.
    };

    explicit HevcDecoder(Filters filters)
        : m_filters(filters)
    {
    }

    /*!
        The picture in \a data, a row of units that each follow their size in four bytes, with the
        parameters in \a configuration. It is this decoder's, until the next call. Null when there
        is none, or when the decoder notices damage. Both are untrusted, but the size that the
        parameters state is the caller's to check.
    */
    const de265_image *decode(QByteArrayView configuration, QByteArrayView data);

private:
    struct Free
    {
        void operator()(void *decoder) const;
    };

    bool pushConfiguration(QByteArrayView configuration);
    bool pushData(QByteArrayView data);
    bool push(QByteArrayView unit);

    Filters m_filters;
    std::unique_ptr<void, Free> m_decoder; // the library has no type for it
};

#endif
