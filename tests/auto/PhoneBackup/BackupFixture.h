#ifndef TESTS_PHONEBACKUP_BACKUPFIXTURE_H
#define TESTS_PHONEBACKUP_BACKUPFIXTURE_H

#include "PhoneItems/Backup.h"
#include "PhoneItems/words/Words.h"
#include "backup/BkData.h"
#include "backup/BkFileItem.h"
#include "sample/BackupWriter.h"
#include "sample/Database.h"
#include "sample/PropertyList.h"
#include "support/Files.h"

#include <QTemporaryDir>

#include <memory>

//! A small backup in a folder of its own, and what the reader makes of it.
class BackupFixture
{
public:
    explicit BackupFixture(
        Sample::BackupWriter::Layout layout = Sample::BackupWriter::Layout::TwoLevel)
        : writer(root(), layout)
    {
    }

    QString root() const { return m_dir.filePath(QStringLiteral("backup")); }

    QString contentPath(const QString &domain, const QString &path) const
    {
        const QString id = Sample::BackupWriter::fileId(domain, path);
        return root() + QLatin1Char('/') + id.left(2) + QLatin1Char('/') + id;
    }

    //! Completes the backup on disk, when that is not done yet.
    bool finish()
    {
        if (!m_finished && !writer.finish()) {
            qWarning("%s", qPrintable(writer.error()));
            return false;
        }
        m_finished = true;
        return true;
    }

    //! Finishes the backup and opens it; null, with a message, when that fails.
    PhoneItems::Backup *open()
    {
        if (!finish())
            return nullptr;
        m_backup.reset();
        auto opened = PhoneItems::Backup::open(root());
        if (!opened) {
            qWarning("%s", qPrintable(PhoneItems::words(opened.error().what)));
            return nullptr;
        }
        m_backup = opened.take();
        return m_backup.get();
    }

    //! The items of a data set: "group/name", with " [deleted]" behind those that are.
    QStringList list(int dataType)
    {
        PhoneItems::Backup *backup = m_backup ? m_backup.get() : open();
        QStringList lines;
        if (!backup)
            return { QStringLiteral("not opened") };
        for (const BkAbstractItem *item : backup->getBkData(dataType)->recoverFileList()) {
            const BkAbstractItem *group = item->groupItem();
            lines.append((group ? group->value(0) + QLatin1Char('/') : QString()) + item->value(0)
                         + (item->flag(0) ? QStringLiteral(" [deleted]") : QString()));
        }
        return lines;
    }

    //! The rows of a table: cells with bars between them, " [deleted]" behind rows that are; line
    //! ends as slashes.
    QStringList table(int dataType)
    {
        PhoneItems::Backup *backup = m_backup ? m_backup.get() : open();
        QStringList lines;
        if (!backup)
            return { QStringLiteral("not opened") };
        const BkData *data = backup->getBkData(dataType);
        for (const int row : data->recoverList()) {
            QStringList cells;
            for (int column = 0; column < data->column(); ++column)
                cells.append(data->value(row, column));
            lines.append(
                cells.join(QLatin1Char('|')).replace(QLatin1Char('\n'), QLatin1Char('/'))
                + (data->at(row, true)->flag(0) ? QStringLiteral(" [deleted]") : QString()));
        }
        return lines;
    }

    //! The problems so far: "code source", with " (loss)" behind those that lost something
    //! and " (never downloaded)" behind files that the phone did not have.
    QStringList problems() const
    {
        QStringList lines;
        for (const PhoneBackup::Problem &problem : m_backup->problems()) {
            lines.append(
                QString::number(problem.dataType) + QLatin1Char(' ') + problem.source
                + (problem.loss ? QStringLiteral(" (loss)") : QString())
                + (problem.neverDownloaded ? QStringLiteral(" (never downloaded)") : QString()));
        }
        return lines;
    }

    static QByteArray database(const char *sql)
    {
        Sample::Database database({}, sql);
        return database.image();
    }

private:
    QTemporaryDir m_dir;
    std::unique_ptr<PhoneItems::Backup> m_backup;
    bool m_finished = false;

public:
    Sample::BackupWriter writer;
};

#endif
