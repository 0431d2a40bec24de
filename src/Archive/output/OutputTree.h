#ifndef ARCHIVE_OUTPUT_OUTPUTTREE_H
#define ARCHIVE_OUTPUT_OUTPUTTREE_H

#include <QByteArrayView>
#include <QMutex>
#include <QSet>
#include <QString>

#include <vector>

namespace Archive {

/*!
    \brief Writes files below one folder. A file gets its name when it is complete.

    Nothing is written through a link. After the first failure nothing more is written.
    \par Thread
    Thread-safe.
*/
class OutputTree
{
public:
    //! The folder \a root is made with the first file.
    explicit OutputTree(const QString &root);

    const QString &root() const { return m_root; }

    //! Writes a file with the relative path \a path, in the place of one that is there. \return
    //! whether that and everything before it succeeded.
    bool write(const QString &path, QByteArrayView bytes);

    //! The absolute path of a new empty file below the root for what is written bit by bit; empty
    //! after a failure.
    QString newTemporary();

    //! Gives the temporary file \a temporary, to which \a error happened or 0, the name \a path.
    bool place(const QString &temporary, const QString &path, int error);

    //! Waits until everything is on the disk.
    bool sync();

    //! The error number of the first failure, 0 for none; and the path that it happened to.
    int error() const;
    QString failedPath() const;

private:
    bool fail(const QString &path, int error);
    bool makeFolderOf(const QString &path);

    const QString m_root;
    mutable QMutex m_mutex;
    QSet<QString> m_folders; // that are there
    int m_error = 0;
    QString m_failedPath;
    int m_number = 0; // of temporary files
};

/*!
    \brief One file of an OutputTree that is written bit by bit.
*/
class OutputStream
{
public:
    //! \a tree is borrowed.
    explicit OutputStream(OutputTree &tree);
    ~OutputStream(); //!< Without finish(), nothing is left of it.

    OutputStream(const OutputStream &) = delete;
    OutputStream &operator=(const OutputStream &) = delete;

    void write(QByteArrayView bytes);

    //! Bytes written so far.
    qint64 size() const { return m_size; }

    //! \a length bytes from \a at on, of those written so far; fewer after a failure.
    QByteArray read(qint64 at, qint64 length);

    //! Ends the file and gives it the name \a path in the tree.
    bool finish(const QString &path);

    /*!
        The same, with the lines in another order: each of \a lines is where one begins and how long
        it is, its end included.
    */
    struct Line
    {
        qint64 at;
        qint64 length;
    };
    bool finish(const QString &path, const std::vector<Line> &lines);

private:
    void flush();

    OutputTree &m_tree;
    QString m_temporary;
    int m_descriptor = -1;
    int m_error = 0;
    qint64 m_size = 0;
    QByteArray m_buffer;
};

} // namespace Archive

#endif
