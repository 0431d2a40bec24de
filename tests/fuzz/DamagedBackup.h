#ifndef DAMAGEDBACKUP_H
#define DAMAGEDBACKUP_H

#include <QByteArray>
#include <QList>
#include <QString>

/*!
    \brief A backup whose databases are changed for as long as it is read.

    The changes are a list of five bytes each: the number of a database, three bytes of offset with
    the highest first, the new value. Numbers and offsets wrap round, so that every list does
    something.
*/
class DamagedBackup
{
public:
    //! Looks for the databases of the backup in \a folder; ends the program when it has none.
    explicit DamagedBackup(const QString &folder);

    //! Makes the \a changes, reads every item of every data type, and takes the changes back.
    void read(const QByteArray &changes) const;

private:
    struct Database
    {
        QString path;
        QByteArray bytes;
    };

    QString m_folder;
    QList<Database> m_databases; // in the order of their paths
};

#endif
