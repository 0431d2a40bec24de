#ifndef DATAEXPORT_PLATFORM_CIPROGRESSCALLBACK_H
#define DATAEXPORT_PLATFORM_CIPROGRESSCALLBACK_H

#include "DataExport_global.h"

/*!
    \brief Progress of a long piece of work, and the caller's means to stop it.

    \par Order
    initRange(), any number of progress(), finish(); then again from initRange() for another pass.
    \par Owner
    Whoever made it. The library borrows a callback and never deletes one: the interface has no
    virtual destructor on purpose.
    \par Thread
    Called on the thread that called the library.
*/
class DATAEXPORT_EXPORT CIProgressCallback
{
public:
    //! Starts a pass of \a total units.
    virtual void initRange(int total) = 0;

    //! Units of the current pass.
    virtual int range() = 0;

    //! Advances by \a delta units (not to a position). \return false when the work is to stop.
    virtual bool progress(double delta) = 0;

    //! Completes the pass, whatever is left of it. \return false when the work was cancelled.
    virtual bool finish() = 0;

protected:
    ~CIProgressCallback() = default;
};

#endif
