#ifndef EXPORT_PREFLIGHT_H
#define EXPORT_PREFLIGHT_H

#include "Export/Failure.h"

#include <QString>
#include <QStringList>

#include <optional>

//! Checks before the first file is written. Only createOutput() writes anything.
namespace Export::Preflight {

//! OUTPUT as an absolute path.
QString absoluteOutput(const QString &output);

//! Fails if \a output is inside one of the folders \a backups or contains one, links and mounts
//! followed.
std::optional<Failure> checkApart(const QString &output, const QStringList &backups);

//! Fails unless \a output is new or an empty folder (files that systems add by themselves do not
//! count), or \a intoExisting is set and it contains no links into \a backup; and if this user may
//! not write there.
std::optional<Failure> checkOutput(const QString &output, const QString &backup, bool intoExisting);

//! Fails unless \a neededBytes fit on the disk of \a output.
std::optional<Failure> checkSpace(const QString &output, qint64 neededBytes);

//! The failure if \a output has become a link, or is no longer one, since it was checked.
Failure replaced(const QString &output);

//! Creates \a output, accessible to this user only, unless it exists.
std::optional<Failure> createOutput(const QString &output);

} // namespace Export::Preflight

#endif
