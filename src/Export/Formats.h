#ifndef EXPORT_FORMATS_H
#define EXPORT_FORMATS_H

#include "export/CIExportReport.h"

#include <QList>

namespace Export {

//! What to write. Photos and other files are copied whatever the formats.
struct Formats
{
    bool archive = true; //!< Pages to browse and search.
    bool page = true; //!< One page per data type.
    bool csv = true;
    bool vcard = true;
    bool json = true; //!< JSON Lines.

    //! Whether any of them is made from records.
    bool hasRecords() const { return archive || json; }

    //! The outputs of the library that are not wanted.
    QList<CIExportReport::Output> omitted() const;

    //! Whether the library writes anything for data type \a code.
    bool areOf(int code) const;
};

} // namespace Export

#endif
