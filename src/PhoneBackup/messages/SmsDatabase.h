#ifndef PHONEBACKUP_MESSAGES_SMSDATABASE_H
#define PHONEBACKUP_MESSAGES_SMSDATABASE_H

#include "PhoneBackup/source/RowDatabase.h"

namespace PhoneBackup {

//! The phone's message database.
class SmsDatabase : public RowDatabase
{
public:
    static constexpr int kMessages = 6; //!< The data type that its problems belong to.

    //! None when the backup has none or it cannot be opened.
    static std::unique_ptr<SmsDatabase> open(Source &source);

    explicit SmsDatabase(RowDatabase &&database);

    /*!
        A moment as its columns hold it, in milliseconds since 1970: seconds or nanoseconds since
        2001, told apart value by value. PhoneTime::kNoMs for none and for an absurd one.
    */
    static qint64 dateMs(qint64 value);
};

} // namespace PhoneBackup

#endif
