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

/*!
    Lets a source file call DataExport::tr() as tr(). It stands before all namespaces, where lupdate
    takes \a context for that of all texts in them (see scripts/update-translations). Functions that
    are in no namespace with a name, and no class, name it themselves: DataExport::tr().
*/
#define DATAEXPORT_USE_TR(context) using context::tr

#endif
