#ifndef EXPORT_REPORTFILE_H
#define EXPORT_REPORTFILE_H

#include <QString>
#include <QStringList>

namespace Export {

/*!
    \brief The table of what could not be exported, export-report.csv in OUTPUT.

    Made with its first line, each line in the file when append() returns. UTF-8 with a byte-order
    mark; no cell is taken for a formula. An older report is kept: the new one gets a numbered name.
*/
class ReportFile
{
public:
    explicit ReportFile(const QString &folder);
    ~ReportFile();

    ReportFile(const ReportFile &) = delete;
    ReportFile &operator=(const ReportFile &) = delete;

    //! Appends one line. Does nothing once writing has failed.
    void append(const QStringList &cells);

    //! Waits until all lines are on the disk; error() tells whether they are.
    void sync();

    QString path() const { return m_path; } //!< Empty as long as there is no such file.
    int error() const { return m_error; } //!< Why lines are missing, 0 when none is.

private:
    void open();
    void write(const QByteArray &bytes);

    QString m_folder;
    QString m_path;
    int m_descriptor = -1;
    int m_error = 0;
};

} // namespace Export

#endif
