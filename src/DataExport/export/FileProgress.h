#ifndef DATAEXPORT_EXPORT_FILEPROGRESS_H
#define DATAEXPORT_EXPORT_FILEPROGRESS_H

#include "platform/CIProgressCallback.h"

#include <QtGlobal>

/*!
    \brief Turns copied bytes into the units of a parent callback.

    Never reports past its total.
    \par Owner
    The parent is borrowed.
*/
class DATAEXPORT_EXPORT FileProgress final : public CIProgressCallback
{
public:
    //! \a parent may be null; \a span is what all bytes together are worth in the parent's units.
    FileProgress(CIProgressCallback *parent, int span);
    ~FileProgress();

    FileProgress(const FileProgress &) = delete;
    FileProgress &operator=(const FileProgress &) = delete;

    //! Starts over with \a n bytes; 0 counts as 1.
    void initRange(int n) override;

    //! initRange() for totals beyond an int.
    void setTotal(qint64 bytes);

    //! Always 1: byte counts may not fit, and nobody asks.
    int range() override;

    //! \a delta bytes more. \return the parent's answer, true without a parent.
    bool progress(double delta) override;

    //! Reports all bytes that are left.
    bool finish() override;

private:
    CIProgressCallback *m_parent;
    int m_span;
    qint64 m_total = 100;
    double m_done = 0;
};

#endif
