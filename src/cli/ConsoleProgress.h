#ifndef CLI_CONSOLEPROGRESS_H
#define CLI_CONSOLEPROGRESS_H

#include "Export/Observer.h"

namespace Cli {

class Console;
struct Options;

/*!
    \brief Shows what an export does: a bar on a terminal, a line now and then elsewhere.

    \par Owner
    Everything handed in is borrowed.
*/
class ConsoleProgress final : public Export::Observer
{
public:
    ConsoleProgress(Console &console, const Options &options);

    void readingType(const QString &typeName) override;
    void inventoryRead(const Export::Inventory &inventory) override;
    void problemsFound(const QList<Export::Problem> &problems) override;
    void typeStarts(const Export::TypeTotals &type) override;
    void progressed(const Export::Progress &progress) override;
    void typeEnds(const Export::TypeOutcome &type) override;
    void allTypesEnded() override;

private:
    void draw(const Export::Progress &progress);
    void logStep(const Export::Progress &progress);

    Console &m_console;
    const Options &m_options;
    qint64 m_loggedAtMs = 0;
    int m_loggedPercent = 0;
};

} // namespace Cli

#endif
