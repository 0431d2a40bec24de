#ifndef EXPORT_PREFLIGHT_H
#define EXPORT_PREFLIGHT_H

#include "Export/Failure.h"

#include <QString>
#include <QStringList>

#include <optional>

//! What is checked before the first file is written. None of it writes but createOutput().
namespace Export::Preflight {

//! OUTPUT as an absolute path.
QString absoluteOutput(const QString &output);

//! Whether \a output and one of the folders \a backups lie one in the other, links and mounts
//! followed.
std::optional<Failure> checkApart(const QString &output, const QStringList &backups);

//! Whether \a output is new or an empty folder, but for what systems put into every one, or \a
//! intoExisting a folder without links into \a backup; and whether this user may write there.
std::optional<Failure> checkOutput(const QString &output, const QString &backup, bool intoExisting);

//! Whether \a neededBytes fit on the disk of \a output.
std::optional<Failure> checkSpace(const QString &output, qint64 neededBytes);

//! \a output has become a link, or is no longer one, since it was checked.
Failure replaced(const QString &output);

//! Makes \a output, for this user alone, unless it is there.
std::optional<Failure> createOutput(const QString &output);

} // namespace Export::Preflight

#endif
