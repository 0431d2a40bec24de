#ifndef PHONEBACKUP_MEDIA_VOICEMEMOS_H
#define PHONEBACKUP_MEDIA_VOICEMEMOS_H

#include "PhoneBackup/folder/FileIndex.h"

#include <QDateTime>
#include <QString>

#include <optional>
#include <vector>

namespace PhoneBackup {

class Source;

//! A recording of the voice memos.
struct VoiceMemo
{
    FileIndex::Row file = FileIndex::kNone;
    QString identifier; //!< The same from backup to backup; empty when no database tells it.
    qint64 row = -1; //!< Number of its row, -1 without one.
    QString title; //!< Empty when its owner and the phone gave none.
    QString stem; //!< Name of the recording's file without the extension.
    QString folder; //!< Name of its folder among the recordings; empty for none.
    QDateTime date; //!< When it was recorded; by the file's own date when nothing else tells.
    std::optional<double> seconds; //!< How long it plays.
    bool deleted = false; //!< In "recently deleted".
    QDateTime deletedOn; //!< Since when it is; invalid when it is not.
};

/*!
    All recordings, the newest first. Of one in several layers the whole is listed, or each layer
    when only they are there.
*/
std::vector<VoiceMemo> voiceMemos(Source &source);

//! What the phone wrote down of what is said in \a memo, as its file holds it; empty without that.
QString transcriptOf(Source &source, const VoiceMemo &memo);

} // namespace PhoneBackup

#endif
