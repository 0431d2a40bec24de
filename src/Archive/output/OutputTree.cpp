#include "Archive/output/OutputTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace Archive {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kBufferBytes = qsizetype(64) << 10;

int createNew(const QString &path)
{
    return ::open(QFile::encodeName(path).constData(),
                  O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                  S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH);
}

// 0 or the error number.
int writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), std::size_t(bytes.size()));
        if (count > 0)
            bytes = bytes.sliced(count);
        else if (count == 0)
            return ENOSPC; // no disk takes nothing without a reason
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace

OutputTree::OutputTree(const QString &root)
    : m_root(root)
{
}

bool OutputTree::write(const QString &path, QByteArrayView bytes)
{
    const QString temporary = newTemporary();
    if (temporary.isEmpty())
        return false;
    const int descriptor = ::open(QFile::encodeName(temporary).constData(), O_WRONLY | O_CLOEXEC);
    int error = descriptor < 0 ? errno : writeAll(descriptor, bytes);
    if (descriptor >= 0 && ::close(descriptor) != 0 && error == 0)
        error = errno;
    return place(temporary, path, error);
}

QString OutputTree::newTemporary()
{
    const QMutexLocker lock(&m_mutex);
    if (m_error != 0)
        return {};
    if (!makeFolderOf(u"x"_s))
        return {};
    for (;;) {
        const QString path = u"%1/.new-%2"_s.arg(m_root, QString::number(++m_number));
        const int descriptor = createNew(path);
        if (descriptor >= 0) {
            ::close(descriptor);
            return path;
        }
        if (errno != EEXIST) {
            fail(path, errno);
            return {};
        }
    }
}

bool OutputTree::place(const QString &temporary, const QString &path, int error)
{
    const QMutexLocker lock(&m_mutex);
    const QByteArray from = QFile::encodeName(temporary);
    const bool isGood = error == 0 && m_error == 0 && makeFolderOf(path);
    if (isGood
        && ::rename(from.constData(), QFile::encodeName(m_root + u'/' + path).constData()) == 0)
        return true;
    const int reason = error != 0 ? error : errno;
    ::unlink(from.constData());
    return fail(path, reason);
}

bool OutputTree::sync()
{
    const QMutexLocker lock(&m_mutex);
    if (m_error != 0)
        return false;
    const int folder =
        ::open(QFile::encodeName(m_root).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return errno == ENOENT ? true : fail(m_root, errno);
    const int error = ::syncfs(folder) == 0 ? 0 : errno;
    ::close(folder);
    return error == 0 || fail(m_root, error);
}

int OutputTree::error() const
{
    const QMutexLocker lock(&m_mutex);
    return m_error;
}

QString OutputTree::failedPath() const
{
    const QMutexLocker lock(&m_mutex);
    return m_failedPath;
}

bool OutputTree::fail(const QString &path, int error)
{
    if (m_error == 0) {
        m_error = error != 0 ? error : EIO;
        m_failedPath = path;
    }
    return false;
}

// The folders that lead to \a path, none of which may be a link.
bool OutputTree::makeFolderOf(const QString &path)
{
    const QString folder = path.contains(u'/') ? path.section(u'/', 0, -2) : QString();
    if (m_folders.contains(folder))
        return true;
    QString made = m_root;
    QStringList steps { QString() };
    if (!folder.isEmpty())
        steps += folder.split(u'/');
    for (const QString &step : std::as_const(steps)) {
        if (!step.isEmpty())
            made += u'/' + step;
        const QByteArray name = QFile::encodeName(made);
        struct stat there;
        if (::mkdir(name.constData(), S_IRWXU | S_IRWXG | S_IRWXO) != 0) {
            const int error = errno;
            if (error != EEXIST || ::lstat(name.constData(), &there) != 0
                || !S_ISDIR(there.st_mode))
                return fail(made, error == EEXIST ? ENOTDIR : error);
        }
    }
    m_folders.insert(folder);
    return true;
}

OutputStream::OutputStream(OutputTree &tree)
    : m_tree(tree)
{
}

OutputStream::~OutputStream()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    if (!m_temporary.isEmpty())
        QFile::remove(m_temporary);
}

void OutputStream::write(QByteArrayView bytes)
{
    m_buffer.append(bytes.data(), bytes.size());
    m_size += bytes.size();
    if (m_buffer.size() >= kBufferBytes)
        flush();
}

void OutputStream::flush()
{
    if (m_buffer.isEmpty() && !m_temporary.isEmpty())
        return;
    if (m_temporary.isEmpty()) {
        m_temporary = m_tree.newTemporary();
        if (m_temporary.isEmpty()) {
            m_error = EIO; // the tree has told why
        } else {
            m_descriptor =
                ::open(QFile::encodeName(m_temporary).constData(), O_RDWR | O_APPEND | O_CLOEXEC);
            m_error = m_descriptor < 0 ? errno : 0;
        }
    }
    if (m_error == 0)
        m_error = writeAll(m_descriptor, m_buffer);
    m_buffer.resize(0);
}

QByteArray OutputStream::read(qint64 at, qint64 length)
{
    flush();
    QByteArray bytes(qsizetype(std::min(length, m_size - at)), Qt::Uninitialized);
    qsizetype done = 0;
    while (m_error == 0 && done < bytes.size()) {
        const ssize_t count = ::pread(
            m_descriptor, bytes.data() + done, std::size_t(bytes.size() - done), off_t(at + done));
        if (count > 0)
            done += count;
        else if (count == 0 || errno != EINTR)
            m_error = count == 0 ? EIO : errno;
    }
    bytes.truncate(done);
    return bytes;
}

bool OutputStream::finish(const QString &path)
{
    flush();
    if (m_descriptor >= 0 && ::close(std::exchange(m_descriptor, -1)) != 0 && m_error == 0)
        m_error = errno;
    if (m_temporary.isEmpty())
        return false;
    return m_tree.place(std::exchange(m_temporary, {}), path, m_error);
}

bool OutputStream::finish(const QString &path, const std::vector<Line> &lines)
{
    flush();
    OutputStream sorted(m_tree);
    for (const Line &one : lines)
        sorted.write(read(one.at, one.length));
    if (m_error != 0)
        sorted.m_error = m_error;
    return sorted.finish(path);
}

} // namespace Archive
