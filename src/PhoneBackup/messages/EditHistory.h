#ifndef PHONEBACKUP_MESSAGES_EDITHISTORY_H
#define PHONEBACKUP_MESSAGES_EDITHISTORY_H

#include "PhoneBackup/base/PhoneTime.h"

#include <QByteArrayView>
#include <QString>

#include <vector>

namespace PhoneBackup {

//! What became of a message's parts after they were sent.
struct EditHistory
{
    //! A text that a part had.
    struct Version
    {
        qint64 dateMs = PhoneTime::kNoMs; //!< Since when.
        QString text;
    };

    //! The texts of a part that was changed, the first as it was sent, the last as it is.
    struct Part
    {
        int number = 0;
        std::vector<Version> versions;
    };

    //! What a translation makes of a part.
    struct Translation
    {
        int number = 0;
        QString text;
        QString language; //!< Such as "fr_FR".
        QString from;
    };

    std::vector<Part> parts; //!< Those that were changed, by their number.
    std::vector<int> unsentParts; //!< Numbers of those that were taken back, ascending.
    std::vector<Translation> translations;
    bool isDamaged = false; //!< Something of it could not be read.
    QString lastText; //!< Of the parts that were changed and are still there, a line each.
    bool isEdited = false; //!< There is such a part.

    //! Reads the \a summary of a message; \a hasText: that has a text of its own.
    static EditHistory read(QByteArrayView summary, bool hasText);

    bool isUnsent() const { return !unsentParts.empty(); }
    bool isEmpty() const { return parts.empty() && unsentParts.empty() && translations.empty(); }
};

} // namespace PhoneBackup

#endif
