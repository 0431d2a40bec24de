#ifndef PHONEBACKUP_MESSAGES_SMSDATABASE_H
#define PHONEBACKUP_MESSAGES_SMSDATABASE_H

#include "PhoneBackup/source/RowDatabase.h"

namespace PhoneBackup {

//! The phone's message database, whose problems are those of DataType::Messages.
class SmsDatabase : public RowDatabase
{
public:
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
