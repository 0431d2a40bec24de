#ifndef DATAEXPORT_PLATFORM_CSUBPROGRESS_H
#define DATAEXPORT_PLATFORM_CSUBPROGRESS_H

#include "platform/CIProgressCallback.h"

/*!
    \brief Maps a range of its own onto a span of a parent callback, pass after pass.

    Each pass forwards at most the span, and exactly the span when finish() ends it. A range or span
    of 0 or less forwards nothing. Once the parent has asked to stop, this answers false for good
    and forwards nothing any more.
    \par Owner
    The parent is borrowed and must outlive the last call; the destructor does not touch it.
*/
class DATAEXPORT_EXPORT CSubProgress final : public CIProgressCallback
{
public:
    //! \a parent may be null; \a span is in the parent's units.
    CSubProgress(CIProgressCallback *parent, int span);
    ~CSubProgress();

    CSubProgress(const CSubProgress &) = delete;
    CSubProgress &operator=(const CSubProgress &) = delete;

    //! Starts a pass of \a n units.
    void initRange(int n) override;

    //! The units that the current pass was started with.
    int range() override;

    //! Forwards \a delta, scaled to the span and cut at its end; asks the parent in any case.
    bool progress(double delta) override;

    //! Forwards what is left of the span. A second call forwards nothing.
    bool finish() override;

private:
    bool forward(double parentUnits);

    CIProgressCallback *m_parent;
    int m_span;
    int m_range = 0;
    double m_left = 0; //!< Parent units of this pass that are not yet forwarded.
    bool m_cancelled = false;
};

#endif
