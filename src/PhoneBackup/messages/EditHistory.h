#ifndef PHONEBACKUP_MESSAGES_EDITHISTORY_H
#define PHONEBACKUP_MESSAGES_EDITHISTORY_H

#include <QByteArrayView>
#include <QString>

namespace PhoneBackup {

//! What became of a message's parts after they were sent.
struct EditHistory
{
    bool edited = false; //!< A part was changed.
    bool unsent = false; //!< A part was taken back.
    bool isDamaged = false; //!< Something of it could not be read.
    QString lastText; //!< Of the parts that were changed, a line each.

    //! Reads the \a summary of a message; \a hasText: that has a text of its own.
    static EditHistory read(QByteArrayView summary, bool hasText);
};

} // namespace PhoneBackup

#endif
