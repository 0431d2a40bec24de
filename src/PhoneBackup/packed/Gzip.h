#ifndef PHONEBACKUP_PACKED_GZIP_H
#define PHONEBACKUP_PACKED_GZIP_H

#include <QByteArray>
#include <QByteArrayView>

namespace PhoneBackup {

//! What came out of a gzip record.
struct Unzipped
{
    enum class State {
        Whole,
        Damaged, //!< Cut off or with a wrong check sum: what came before that.
        TooLong, //!< The first bytes, as many as were allowed.
        NotGzip, //!< Nothing: it does not begin as gzip does.
    };

    State state;
    QByteArray data;
};

//! Unpacks \a record to at most \a maxBytes; memory grows with what comes out, not with what the
//! record says of itself.
Unzipped unzipped(QByteArrayView record, qsizetype maxBytes);

} // namespace PhoneBackup

#endif
