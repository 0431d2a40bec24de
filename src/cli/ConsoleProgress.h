#ifndef CLI_CONSOLEPROGRESS_H
#define CLI_CONSOLEPROGRESS_H

#include "Inventory.h"
#include "platform/CIProgressCallback.h"

#include <QElapsedTimer>
#include <QString>

#include <functional>

namespace Cli {

class Console;
class RunReport;

/*!
    \brief Shows how far an export is: a bar on a terminal, a line now and then elsewhere.

    The library counts 100 units an item; what is shown is bytes where a type has them.
    \par Cost
    A few additions a call. The clock is asked only every so many calls, as often as the speed of
    the calls makes it needed.
    \par Owner
    Everything handed in is borrowed.
*/
class ConsoleProgress final : public CIProgressCallback
{
public:
    //! Asked at every call; false stops the export.
    using KeepGoing = std::function<bool()>;

    ConsoleProgress(Console &console,
                    const Inventory &inventory,
                    const RunReport &report,
                    KeepGoing keepGoing);
    ~ConsoleProgress() = default;

    ConsoleProgress(const ConsoleProgress &) = delete;
    ConsoleProgress &operator=(const ConsoleProgress &) = delete;

    //! Data type \a code is exported from now on; the one before it has ended.
    void typeStarts(int code);

    void initRange(int total) override;
    int range() override;
    bool progress(double delta) override;
    bool finish() override;

private:
    //! A speed that follows the last seconds.
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
    void draw();
    void logStep(qint64 nowMs);
    double typeFraction() const;
    double workDone() const;
    QString rateText() const;

    Console &m_console;
    const Inventory &m_inventory;
    const RunReport &m_report;
    KeepGoing m_keepGoing;
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
    qint64 m_drawnAtMs = 0;
    qint64 m_loggedAtMs = 0;
    int m_loggedPercent = 0;
    int m_callsBetweenLooks = 1;
    int m_callsLeft = 1;
};

} // namespace Cli

#endif
