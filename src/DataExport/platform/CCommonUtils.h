#ifndef DATAEXPORT_PLATFORM_CCOMMONUTILS_H
#define DATAEXPORT_PLATFORM_CCOMMONUTILS_H

#include "DataExport_global.h"

#include <QDateTime>
#include <QString>

class QDir;
class QFile;

/*!
    \brief File, date and size helpers that sinks, translators and item models share.

    \par Thread
    Reentrant, but protectMediaFile(), which remembers modes for the process.
*/
class DATAEXPORT_EXPORT CCommonUtils
{
public:
    /*!
        Removes the folder \a name inside \a dir with all its content; symbolic links inside go as
        links. Refuses an empty name, ".", "..", an absolute name, whatever does not lie strictly
        inside \a dir, and what is no folder. \a ok may be null; it gets whether the folder is gone.
    */
    static void rmDir(const QDir &dir, const QString &name, bool *ok);

    /*!
        Copies \a src to \a name in \a dir, replacing a file or a link of that name. \return false
        when the copy failed: then no partial file is left, and an older file of that name is as it
        was.
    */
    static bool copyFile(const QString &src, const QDir &dir, const QString &name);

    /*!
        Absolute path of a name in \a dir that is free: \a base + \a suffix, else \a base + " (2)" +
        \a suffix, " (3)" and so on. In numbers with gaps any free one may come. A broken link takes
        its name. Costs a logarithmic number of look-ups.
    */
    static QString uniqFileName(const QDir &dir, const QString &base, const QString &suffix);

    /*!
        The same for callers that count: \a counter is the last number given to \a base (0: none,
        1: the plain name) and becomes the number used. Numbers go up by one until one is free.
    */
    static QString
    uniqFileName(const QDir &dir, const QString &base, const QString &suffix, int &counter);

    /*!
        protect false: makes the media file \a path readable by its owner where its mode forbids it.
        protect true: puts back the mode that the file had before. A file that was readable is not
        touched.
    */
    static void protectMediaFile(const QString &path, bool protect);

    /*!
        Opens \a file for reading and leaves its access time as it is, where the system grants that.
        Only regular files open: a folder, a pipe or a device does not.
        \return false when it could not be opened; \a file's errorString() says why, \a why (may be
        null) gets the same text, without a full stop, also for what is no regular file.
    */
    static bool openForReading(QFile &file, QString *why = nullptr);

    //! "yyyy-MM-dd" of the day in UTC when \a utc, else in local time; empty when invalid.
    static QString dateToString(const QDateTime &dateTime, bool utc);

    //! "yyyy-MM-dd hh:mm" in local time when \a local, else in UTC; empty when invalid.
    static QString datetimeToMinute(const QDateTime &dateTime, bool local);

    /*!
        2001-01-01 00:00:00 UTC plus \a seconds, to the millisecond, as a UTC date-time; invalid
        when the number is not finite or out of a date's range.
    */
    static QDateTime buildDateTimeBase2001(double seconds);

    /*!
        \a bytes in the largest of B, KB, MB, GB, TB (1024 each) that leaves at least 1, as
        QString::number(value, format, precision) writes it; whole bytes have no decimals.
    */
    static QString fileSizeToString(long long bytes, char format, int precision);
};

#endif
