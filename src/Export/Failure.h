#ifndef EXPORT_FAILURE_H
#define EXPORT_FAILURE_H

#include "PhoneBackup/base/Result.h"

#include <QString>
#include <QStringList>

namespace Export {

//! What a run, or an attempt at one, came to.
enum class Status {
    Complete,
    Failed,
    Usage, //!< What was asked for cannot be done.
    Incomplete, //!< Done, but some items could not be exported.
    NoBackup,
    Password, //!< Of an encrypted backup: missing or wrong.
    Output,
    Cancelled,
};

//! Why the work did not start or did not go on.
struct Failure
{
    enum class Cause {
        Stopped, //!< Somebody asked for it.
        Unsuitable, //!< What was asked for makes no sense, or would do harm.
        NotEmpty, //!< OUTPUT holds files, and none may be put beside them.
        NoBackup, //!< There is none, or it cannot be read.
        NoPassword, //!< The backup is encrypted, and no password could be had.
        WrongPassword,
        TemporaryFolder, //!< It cannot be used or is full.
        NoRoom, //!< The disk of OUTPUT has too little, as far as can be told before.
        DiskFull, //!< It was found to be full.
        Output, //!< OUTPUT cannot be written, or not any longer.
    };

    Cause cause;
    QString what; //!< What is wrong and where, for a person.
    QStringList details = {}; //!< Further lines; may be empty.
    QString advice = {}; //!< What to do about it; may be empty.
    int systemError = 0; //!< The system's error number, where it was the system that refused.

    Status status() const;
};

//! The failure that a fault of the backup is.
Failure failureOf(const PhoneBackup::Error &error);

//! The user asked to stop before anything was written.
Failure stoppedEarly();

} // namespace Export

#endif
