#ifndef CLI_REPORTFILE_H
#define CLI_REPORTFILE_H

#include <QFile>
#include <QString>
#include <QStringList>

namespace Cli {

/*!
    \brief The table of what could not be exported, export-report.csv in OUTPUT.

    Made with its first line, each line on disk when append() returns. UTF-8 with a byte-order mark;
    no cell is taken for a formula. An older report is kept: the new one gets a numbered name.
*/
class ReportFile
{
public:
    explicit ReportFile(const QString &folder);

    //! Appends one line. Does nothing once writing has failed.
    void append(const QStringList &cells);

    QString path() const; //!< Empty as long as there is no such file.
    QString error() const; //!< Why lines are missing, for a person; empty when none is.

private:
    bool open();
    bool write(const QStringList &cells);

    QString m_folder;
    QFile m_file;
    QString m_error;
};

} // namespace Cli

#endif
