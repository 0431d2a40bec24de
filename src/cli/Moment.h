#ifndef CLI_MOMENT_H
#define CLI_MOMENT_H

#include <QDateTime>
#include <QString>

//! Dates and times on the command line, in local time.
namespace Cli::Moment {

//! The moment "YYYY-MM-DD hh:mm", or the start of the day "YYYY-MM-DD". Invalid otherwise.
QDateTime first(const QString &text);

//! The same moment if \a text has a time; otherwise the start of the next day.
QDateTime behind(const QString &text);

} // namespace Cli::Moment

#endif
