#include "Archive/media/Thumbnails.h"

#include "Archive/output/OutputTree.h"
#include "PhoneBackup/folder/BackupFiles.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QRegularExpression>
#include <QSemaphore>
#include <QThreadPool>
#include <QtEndian>

#include <deque>

namespace Archive {

using namespace Qt::StringLiterals;
using PhoneBackup::FileIndex;

namespace {

// Larger ones are no pictures that a phone takes; nor would all threads have room for theirs.
constexpr qint64 kLargestPicture = qint64(64) << 20;

quint64 hashed(const QByteArray &bytes)
{
    const QByteArray digest = QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
    return qFromBigEndian<quint64>(digest.constData());
}

} // namespace

Thumbnails::Thumbnails(PhoneBackup::BackupFiles &files,
                       OutputTree &tree,
                       PictureMaker maker,
                       PhoneBackup::KeepGoing keepGoing)
    : m_files(files)
    , m_tree(tree)
    , m_maker(std::move(maker))
    , m_keepGoing(std::move(keepGoing))
{
    findEarlier();
}

void Thumbnails::findEarlier()
{
    static const QRegularExpression form(
        u"^([0-9a-f]{16})-([0-9]{1,4})x([0-9]{1,4})\\.(jpg|png)$"_s);
    QDirIterator file(
        m_tree.root() + u"/thumbs"_s, QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (file.hasNext()) {
        file.next();
        const auto match = form.match(file.fileName());
        if (!match.hasMatch())
            continue;
        Known known;
        known.key = match.capturedView(1).toULongLong(nullptr, 16);
        known.size = QSize(match.capturedView(2).toInt(), match.capturedView(3).toInt());
        known.isPng = match.capturedView(4) == u"png";
        m_earlier.insert(known.key, known);
    }
}

QString Thumbnails::pathOf(const Known &known)
{
    const QString name = u"%1-%2x%3"_s.arg(known.key, 16, 16, QLatin1Char('0'))
                             .arg(known.size.width())
                             .arg(known.size.height());
    return u"thumbs/"_s + name.first(2) + u'/' + name + (known.isPng ? ".png"_L1 : ".jpg"_L1);
}

// The same as long as the file is: another content of the same length is another time of day's.
quint64 Thumbnails::keyOf(FileIndex::Row row)
{
    const FileIndex::Id &id = m_files.index().id(row);
    QByteArray bytes(reinterpret_cast<const char *>(id.data()), qsizetype(id.size()));
    bytes += QByteArray::number(m_files.contentSize(row)) + '-'
        + QByteArray::number(m_files.record(row).modified.toMSecsSinceEpoch());
    return hashed(bytes);
}

void Thumbnails::prepare(const std::vector<FileIndex::Row> &rows)
{
    struct Job
    {
        FileIndex::Row row;
        Known made;
    };
    std::deque<Job> jobs;
    QThreadPool threads;
    QSemaphore room(2 * std::max(1, threads.maxThreadCount()));
    for (const FileIndex::Row row : rows) {
        if (row == FileIndex::kNone || m_known.contains(row))
            continue;
        Known &known = m_known[row]; // nothing, until it is made
        if (!m_keepGoing() || m_tree.error() != 0)
            break;
        if (m_files.index().kind(row) != FileIndex::Kind::File
            || m_files.contentSize(row) > kLargestPicture)
            continue;
        const quint64 key = keyOf(row);
        if (const auto earlier = m_earlier.constFind(key); earlier != m_earlier.cend()) {
            known = *earlier;
            continue;
        }
        const QByteArray bytes = m_files.wholeContent(row);
        if (bytes.isEmpty())
            continue;
        room.acquire();
        Job &job = jobs.emplace_back(Job { row, {} });
        job.made.key = key;
        threads.start([this, &job, &room, bytes] {
            const SmallPicture small = m_maker(bytes, kSidePx);
            job.made.size = small.size;
            job.made.isPng = small.isPng;
            if (small.bytes.isEmpty() || !m_tree.write(pathOf(job.made), small.bytes))
                job.made = {};
            room.release();
        });
    }
    threads.waitForDone();
    for (const Job &job : jobs)
        m_known[job.row] = job.made;
}

Thumbnails::Thumb Thumbnails::of(FileIndex::Row row) const
{
    const auto known = m_known.constFind(row);
    if (known == m_known.cend() || known->size.isEmpty())
        return {};
    return { pathOf(*known), known->size };
}

Thumbnails::Thumb Thumbnails::ofBytes(const QByteArray &picture, const QByteArray &key)
{
    Known known;
    known.key = hashed(key + picture);
    if (const auto earlier = m_earlier.constFind(known.key); earlier != m_earlier.cend())
        return { pathOf(*earlier), earlier->size };
    const SmallPicture small = m_maker(picture, kAvatarPx);
    known.size = small.size;
    known.isPng = small.isPng;
    if (small.bytes.isEmpty() || !m_tree.write(pathOf(known), small.bytes))
        return {};
    m_earlier.insert(known.key, known);
    return { pathOf(known), known.size };
}

} // namespace Archive
