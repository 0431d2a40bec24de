#ifndef EXPORT_RUNPROGRESS_H
#define EXPORT_RUNPROGRESS_H

#include "Export/Inventory.h"
#include "PhoneBackup/base/KeepGoing.h"
#include "platform/CIProgressCallback.h"

#include <QElapsedTimer>

namespace Export {

class Observer;
class RunReport;
struct Formats;

/*!
    \brief Reports the progress of an export to an observer.

    The library counts 100 units per item; the observer gets bytes for types that have them.
    \par Cost
    A few additions per call. The clock is read only every so many calls, depending on how fast they
    come.
    \par Owner
    All arguments are borrowed.
*/
class RunProgress final : public CIProgressCallback
{
public:
    //! \a keepGoing is called each time; returning false stops the export.
    RunProgress(const Inventory &inventory,
                const Formats &formats,
                const RunReport &report,
                Observer &observer,
                PhoneBackup::KeepGoing keepGoing);

    RunProgress(const RunProgress &) = delete;
    RunProgress &operator=(const RunProgress &) = delete;

    //! The export of data type \a code starts, and that of the previous one has ended.
    void typeStarts(int code);

    void initRange(int total) override;
    int range() override;
    bool progress(double delta) override;
    bool finish() override;

private:
    //! A speed, averaged over the last few seconds.
    class Speed
    {
    public:
        void advance(double position, double seconds);
        double perSecond() const { return m_perSecond; }

    private:
        double m_position = 0;
        double m_perSecond = 0;
        bool m_known = false;
    };

    void endType();
    void lookAtClock();
    void tell(qint64 nowMs);
    double typeFraction() const;
    double workDone() const;

    const Inventory &m_inventory;
    const Formats &m_formats;
    const RunReport &m_report;
    Observer &m_observer;
    PhoneBackup::KeepGoing m_keepGoing;
    int m_range = 0;
    double m_units = 0; //!< Of the current data type.
    const TypeTotals *m_type = nullptr;
    double m_workBefore = 0; //!< Of the data types that have ended.
    double m_workTotal = 0;
    Speed m_workSpeed;
    Speed m_byteSpeed;
    Speed m_itemSpeed;
    qint64 m_bytesBefore = 0;
    qint64 m_itemsBefore = 0;
    QElapsedTimer m_clock;
    qint64 m_lookedAtMs = 0;
    qint64 m_toldAtMs = 0;
    int m_callsBetweenLooks = 1;
    int m_callsLeft = 1;
};

} // namespace Export

#endif
