#ifndef EXPORT_REPORTFILE_H
#define EXPORT_REPORTFILE_H

#include <QString>
#include <QStringList>

namespace Export {

/*!
    \brief The table of what could not be exported, export-report.csv in OUTPUT.

    It is created with the first line, and each line is written when append() returns. UTF-8 with a
    byte-order mark; spreadsheets take no cell for a formula. An older report is kept: the new one
    gets a numbered name.
*/
class ReportFile
{
public:
    explicit ReportFile(const QString &folder);
    ~ReportFile();

    ReportFile(const ReportFile &) = delete;
    ReportFile &operator=(const ReportFile &) = delete;

    //! Appends one line. Does nothing after a write has failed.
    void append(const QStringList &cells);

    //! Waits until all lines are on the disk; sets error() if that fails.
    void sync();

    QString path() const { return m_path; } //!< Empty while there is no file.
    int error() const { return m_error; } //!< Error number if lines are missing, else 0.

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
