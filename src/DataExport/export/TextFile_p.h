#ifndef DATAEXPORT_EXPORT_TEXTFILE_P_H
#define DATAEXPORT_EXPORT_TEXTFILE_P_H

#include <QFile>
#include <QStringConverter>
#include <QTextStream>

#include <memory>

//! A text file that knows, when it is closed, whether all of its text reached the disk. One object
//! serves for one file after another.
class TextFile
{
public:
    //! Creates or replaces \a path. \return whether it opened; error() says why not.
    bool open(const QString &path, QStringConverter::Encoding encoding, bool byteOrderMark);

    bool isOpen() const { return m_output != nullptr; }

    //! Appends \a text, in slices: a long one is not held in memory a second time.
    void write(QStringView text);

    /*!
        Closes the file. It stays only when \a keep is true and nothing of it is missing.
        \return false when a write failed; error() says why.
    */
    bool close(bool keep);

    QString path() const { return m_path; }
    QString error() const { return m_error; }

private:
    // Anew for each file: after a failed write both keep what they could not write.
    struct Output
    {
        QFile file;
        QTextStream stream;
    };

    std::unique_ptr<Output> m_output; // null while no file is open
    QString m_path;
    QString m_error;
};

#endif
