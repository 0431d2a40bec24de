#ifndef PHONEBACKUP_SOURCE_PACKEDTEXTS_H
#define PHONEBACKUP_SOURCE_PACKEDTEXTS_H

#include <QByteArray>
#include <QStringList>

namespace PhoneBackup {

//! Short texts of many rows in little memory: as UTF-8 in one piece, in the order of adding.
class PackedTexts
{
public:
    //! Adds the texts of a row. \return where they are, for text().
    qsizetype add(const QStringList &texts);

    //! Text \a number (from 0) of the row at \a place, empty when it has fewer. Costs the length of
    //! those before.
    QString text(qsizetype place, int number) const;

private:
    QByteArray m_bytes;
};

} // namespace PhoneBackup

#endif
