#ifndef DATAEXPORT_PLATFORM_UXRESOURCEMGR_H
#define DATAEXPORT_PLATFORM_UXRESOURCEMGR_H

#include "DataExport_global.h"

#include <QString>

/*!
    \brief Knows where the application's resource files lie; the library's images are in
    "DataExport" below that folder.

    \par Thread
    Not thread-safe; set the root before an export starts.
*/
class DATAEXPORT_EXPORT UxResourceMgr
{
public:
    //! The one object of the process.
    static UxResourceMgr *instance();

    /*!
        The resource folder. The first of these that is set or exists: setProductResourceRoot();
        the environment variable DATAEXPORT_RESOURCE_ROOT; "../share/dataexport" beside the folder
        that the library was loaded from; the resources of the build tree.
    */
    QString productResourceRoot() const;

    //! Sets the resource folder of this process; an empty \a root takes the setting back.
    void setProductResourceRoot(const QString &root);

    UxResourceMgr(const UxResourceMgr &) = delete;
    UxResourceMgr &operator=(const UxResourceMgr &) = delete;

private:
    UxResourceMgr() = default;

    QString m_root;
};

#endif
