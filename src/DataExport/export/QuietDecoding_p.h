#ifndef DATAEXPORT_EXPORT_QUIETDECODING_P_H
#define DATAEXPORT_EXPORT_QUIETDECODING_P_H

/*!
    \brief While one exists, remarks that decoders make on pictures on this thread are dropped.

    Those of the image library and of libtiff; what other threads say, and all that is not about
    pictures, goes where the application sends it.
*/
class QuietDecoding
{
public:
    QuietDecoding();
    ~QuietDecoding();

    QuietDecoding(const QuietDecoding &) = delete;
    QuietDecoding &operator=(const QuietDecoding &) = delete;
};

#endif
