#ifndef CLI_CONSOLEOBSERVER_H
#define CLI_CONSOLEOBSERVER_H

#include "Export/Observer.h"
#include "PasswordSource.h"

#include <optional>

namespace Cli {

class Console;
struct Options;

/*!
    \brief Shows on a terminal what an export does, and asks for the password.

    \par Owner
    All arguments are borrowed.
*/
class ConsoleObserver final : public Export::Observer
{
public:
    ConsoleObserver(Console &console, const Options &options);

    std::variant<Export::Secret, Export::Failure> password(const Export::BackupInfo &info,
                                                           const Export::Failure *wrong) override;
    void makingKeys(int percent) override;
    void readingIndex() override;
    void opened(const Export::BackupInfo &info) override;
    void readingType(const QString &typeName) override;
    void inventoryRead(const Export::Inventory &inventory) override;
    void problemsFound(const QList<Export::Problem> &problems) override;
    void progressed(const Export::Progress &progress) override;
    void archiving(const QString &kind, qint64 records) override;
    void allTypesEnded() override;

private:
    Console &m_console;
    const Options &m_options;
    std::optional<PasswordSource> m_passwords;
};

} // namespace Cli

#endif
