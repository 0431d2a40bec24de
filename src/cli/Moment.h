#ifndef CLI_MOMENT_H
#define CLI_MOMENT_H

#include <QDateTime>
#include <QString>

//! Moments as people write them on the command line, in local time.
namespace Cli::Moment {

//! The moment "YYYY-MM-DD hh:mm", or the first one of the day "YYYY-MM-DD". Invalid otherwise.
QDateTime first(const QString &text);

//! The same moment when \a text has a time; else the first one after the day.
QDateTime behind(const QString &text);

} // namespace Cli::Moment

#endif
