#ifndef TESTS_CLI_USUALBACKUP_H
#define TESTS_CLI_USUALBACKUP_H

#include "sample/BackupWriter.h"

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QString>

//! A small phone backup with a few files of every type, and what its export has to look like.
namespace CliTest {

struct ExpectedFile
{
    QByteArray content;
    QDateTime modified;
};

//! Path below OUTPUT to what has to stand there.
using ExpectedFiles = QMap<QString, ExpectedFile>;

//! Bytes that look like nothing else: \a size of them, different for each \a seed.
QByteArray noise(int seed, int size);

//! Adds the files to \a writer, which stays open. \return what an export of them gives.
ExpectedFiles addUsualFiles(Sample::BackupWriter &writer);

//! A whole backup at \a root. \return what its export gives, nothing when it could not be written.
ExpectedFiles writeUsualBackup(const QString &root);

//! What stands below \a output, but for the page that leads to it.
ExpectedFiles filesBelow(const QString &output);

//! What differs between the two, for a person; empty when nothing does.
QString difference(const ExpectedFiles &actual, const ExpectedFiles &expected);

} // namespace CliTest

#endif
