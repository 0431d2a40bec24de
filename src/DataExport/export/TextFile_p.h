#ifndef DATAEXPORT_EXPORT_TEXTFILE_P_H
#define DATAEXPORT_EXPORT_TEXTFILE_P_H

#include "export/CIExportReport.h"
#include "platform/OutputFile_p.h"

#include <QByteArray>
#include <QStringEncoder>

/*!
    \brief A text file that knows, when it is closed, whether all of its text reached the disk.

    The first write that fails is the last one: no later text is kept. One object serves for one
    file after another.
*/
class TextFile
{
public:
    struct Format
    {
        QStringConverter::Encoding encoding = QStringConverter::Utf8;
        bool byteOrderMark = false;
    };

    //! What becomes of a file when it is closed.
    enum class Closing {
        Discard,
        Keep,
        KeepOnDisk, //!< Keeps it, once the disk has it: slow for many small files.
    };

    //! Opens what is to become the file \a path. \return false as in fault().
    bool open(const QString &path,
              const Format &format,
              OutputFile::Way way,
              OutputFile::Existing existing);

    bool isOpen() const { return m_file.isOpen(); }

    //! Appends \a text, in slices: a long one is not held in memory a second time.
    void write(QStringView text);

    /*!
        Closes the file. It stays only when nothing of it is missing; when another has got its name
        meanwhile (EEXIST), moveTo() may try another one. \return false as in fault().
    */
    bool close(Closing closing);

    //! Completes a closed file under the name \a path.
    bool moveTo(const QString &path) { return m_file.moveTo(path); }

    const QString &path() const { return m_file.path(); }
    int error() const { return m_writeError != 0 ? m_writeError : m_file.error(); }

    QString errorString() const;

    //! The fault of the last operation that failed, with \a reason as its sentence.
    CIExportReport::Fault fault(const QString &reason) const;

private:
    void flush();

    OutputFile m_file;
    QStringEncoder m_encoder;
    QByteArray m_pending; // encoded text that is still to be written
    int m_writeError = 0;
};

#endif
