#ifndef DATAEXPORT_EXPORT_TEXTFILE_P_H
#define DATAEXPORT_EXPORT_TEXTFILE_P_H

#include <QFile>
#include <QStringConverter>
#include <QTextStream>

//! A text file that knows, when it is closed, whether all of its text reached the disk.
class TextFile
{
public:
    //! Creates or replaces \a path. \return whether it opened; error() says why not.
    bool open(const QString &path, QStringConverter::Encoding encoding, bool byteOrderMark);

    bool isOpen() const { return m_file.isOpen(); }

    //! Appends \a text, in slices: a long one is not held in memory a second time.
    void write(QStringView text);

    /*!
        Closes the file. It stays only when \a keep is true and nothing of it is missing.
        \return false when a write failed; error() says why.
    */
    bool close(bool keep);

    QString path() const { return m_file.fileName(); }
    QString error() const { return m_error; }

private:
    QFile m_file;
    QTextStream m_stream;
    QString m_error;
};

#endif
