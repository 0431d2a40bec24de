#ifndef TESTS_SUPPORT_RECORDINGPROGRESS_H
#define TESTS_SUPPORT_RECORDINGPROGRESS_H

#include "platform/CIProgressCallback.h"

#include <QList>

#include <limits>

//! Progress callback that keeps what it was told, and asks to stop at a call of the test's choice.
class RecordingProgress final : public CIProgressCallback
{
public:
    void initRange(int total) override { ranges.append(total); }
    int range() override { return ranges.isEmpty() ? 0 : ranges.last(); }
    bool progress(double delta) override
    {
        deltas.append(delta);
        sum += delta;
        return deltas.size() < stopAtCall;
    }
    bool finish() override
    {
        ++finishes;
        return deltas.size() < stopAtCall;
    }

    QList<int> ranges;
    QList<double> deltas;
    double sum = 0;
    int finishes = 0;
    qsizetype stopAtCall = std::numeric_limits<qsizetype>::max(); //!< 1: the first progress().
};

#endif
