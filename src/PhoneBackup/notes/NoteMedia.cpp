#include "PhoneBackup/notes/NoteMedia.h"

#include "PhoneBackup/source/PathParts.h"

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
        if (index.kind(row) != FileIndex::Kind::File || PathParts::isHidden(path)
            || PathParts::extension(path) == "encrypted") // of a locked note
            continue;
        if (const QByteArrayView medium = below(path, "Media"); !medium.isNull())
            m_media[firstPart(medium)].append(row);
        else if (const QByteArrayView picture = below(path, "FallbackImages"); !picture.isNull())
            m_pictures[PathParts::stem(firstPart(picture)).toByteArray()].append(row);
        else if (const QByteArrayView pdf = below(path, "FallbackPDFs"); !pdf.isNull())
            m_pdfs[PathParts::stem(firstPart(pdf)).toByteArray()].append(row);
        else
            continue;
        m_all.append(row);
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

FileIndex::Row
NoteMedia::takeRendering(Rendering rendering, const QString &identifier, const QString &generation)
{
    leaveOut(identifier);
    const Files &files = rendering == Rendering::Pdf ? m_pdfs : m_pictures;
    const QByteArray wanted = generation.toUtf8();
    FileIndex::Row best = FileIndex::kNone;
    for (const FileIndex::Row row : files.value(identifier.toUtf8())) {
        const QByteArrayView path = m_index.path(row);
        if (!wanted.isEmpty() && PathParts::name(PathParts::folder(path)) == wanted)
            return row;
        if (best == FileIndex::kNone || PathParts::compareNatural(m_index.path(best), path) < 0)
            best = row;
    }
    return best;
}

void NoteMedia::leaveOut(const QString &identifier)
{
    for (const Files *files : { &m_media, &m_pictures, &m_pdfs }) {
        for (const FileIndex::Row row : files->value(identifier.toUtf8()))
            m_used.insert(row);
    }
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
