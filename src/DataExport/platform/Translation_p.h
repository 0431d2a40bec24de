#ifndef DATAEXPORT_PLATFORM_TRANSLATION_P_H
#define DATAEXPORT_PLATFORM_TRANSLATION_P_H

#include <QCoreApplication>
#include <QString>

namespace DataExport {

//! \a text in the user's language; all of the library's texts share one context.
inline QString tr(const char *text)
{
    return QCoreApplication::translate("DataExport", text);
}

} // namespace DataExport

#endif
