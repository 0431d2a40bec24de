#ifndef PHONEBACKUP_MESSAGES_HANDLES_H
#define PHONEBACKUP_MESSAGES_HANDLES_H

#include <QHash>
#include <QString>

#include <deque>

namespace PhoneBackup {

class SmsDatabase;

//! The addresses of the message database by their ROWIDs; equal ones are one object.
class Handles
{
public:
    explicit Handles(SmsDatabase &database);

    //! The address of \a row, null when there is none.
    const QString *address(qint64 row) const { return m_byRow.value(row); }

    //! All addresses, each once.
    const std::deque<QString> &addresses() const { return m_addresses; }

    //! Pairs of addresses that the phone itself takes for those of one person.
    const QList<std::pair<QString, QString>> &pairs() const { return m_pairs; }

    //! The object for \a address, which need not be in the database.
    const QString *intern(const QString &address);

private:
    std::deque<QString> m_addresses;
    QHash<QString, const QString *> m_byText;
    QHash<qint64, const QString *> m_byRow;
    QList<std::pair<QString, QString>> m_pairs;
};

} // namespace PhoneBackup

#endif
