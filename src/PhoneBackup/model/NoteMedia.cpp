#include "model/NoteMedia.h"

#include "model/PathParts.h"

namespace PhoneBackup {

namespace {

// What follows the folder \a name in \a path; null when that is no part of it.
QByteArrayView below(QByteArrayView path, QByteArrayView name)
{
    qsizetype at = 0;
    while ((at = path.indexOf(name, at)) >= 0) {
        const bool begins = at == 0 || path[at - 1] == '/';
        at += name.size();
        if (begins && at < path.size() && path[at] == '/')
            return path.sliced(at + 1);
    }
    return {};
}

QByteArray firstPart(QByteArrayView path)
{
    const qsizetype slash = path.indexOf('/');
    return (slash < 0 ? path : path.first(slash)).toByteArray();
}

} // namespace

NoteMedia::NoteMedia(const FileIndex &index)
    : m_index(index)
{
    const FileIndex::Range range = index.walk(kDomain);
    for (FileIndex::Row row = range.first; row < range.last; ++row) {
        const QByteArrayView path = index.path(row);
        if (index.kind(row) != FileIndex::Kind::File || PathParts::isHidden(path))
            continue;
        if (const QByteArrayView medium = below(path, "Media"); !medium.isNull()) {
            m_media[firstPart(medium)].append(row);
            m_all.append(row);
        } else if (const QByteArrayView drawing = below(path, "FallbackImages");
                   !drawing.isNull()) {
            m_drawings.insert(PathParts::stem(firstPart(drawing)).toByteArray(), row);
        }
    }
}

FileIndex::Row NoteMedia::take(const QString &identifier, const QString &name)
{
    const QList<FileIndex::Row> rows = m_media.value(identifier.toUtf8());
    if (rows.isEmpty())
        return FileIndex::kNone;
    FileIndex::Row best = rows.first();
    for (const FileIndex::Row row : rows) {
        if (PathParts::text(PathParts::name(m_index.path(row))) == name)
            best = row;
    }
    m_used.insert(best);
    return best;
}

FileIndex::Row NoteMedia::takeDrawing(const QString &identifier)
{
    return m_drawings.value(identifier.toUtf8(), FileIndex::kNone);
}

void NoteMedia::leaveOut(const QString &identifier)
{
    for (const FileIndex::Row row : m_media.value(identifier.toUtf8()))
        m_used.insert(row);
}

QList<FileIndex::Row> NoteMedia::unused() const
{
    QList<FileIndex::Row> rows;
    for (const FileIndex::Row row : m_all) {
        if (!m_used.contains(row))
            rows.append(row);
    }
    return rows;
}

} // namespace PhoneBackup
