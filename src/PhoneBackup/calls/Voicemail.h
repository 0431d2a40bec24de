#ifndef PHONEBACKUP_CALLS_VOICEMAIL_H
#define PHONEBACKUP_CALLS_VOICEMAIL_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

namespace PhoneBackup {

class Source;

//! A message that somebody left, or a greeting of the owner's.
struct Voicemail
{
    qint64 row = -1; //!< Number of its row; -1 for a recording that no row tells of.
    FileIndex::Row file = FileIndex::kNone; //!< kNone: the phone has not downloaded it.
    QDateTime date; //!< When it was left; without a row the file's own date.
    QString sender; //!< Number of who left it; empty when withheld.
    QString callback; //!< Number to call back.
    std::optional<double> seconds; //!< How long it plays.
    QDateTime deletedOn; //!< When its owner deleted it; may be invalid though it is deleted.
    bool isDeleted = false; //!< The phone still keeps it.
    bool isHeard = false;

    //! The number that tells who it is from; empty when there is none.
    const QString &number() const { return sender.isEmpty() ? callback : sender; }
};

//! All recordings and the rows without one, newest first.
std::vector<Voicemail> readVoicemail(Source &source);

//! What the phone understood of \a voicemail; empty when it did not write it down.
QString transcriptOf(Source &source, const Voicemail &voicemail);

} // namespace PhoneBackup

#endif
