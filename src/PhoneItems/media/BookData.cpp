#include "PhoneItems/media/BookData.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/media/BookArchive.h"

#include <QDir>

#include <algorithm>

namespace PhoneItems {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

BookData::BookData(Source &source)
    : FileData(DataType::Books, source.files())
    , m_source(source)
{
    std::vector<std::pair<QString, Book>> named;
    for (Book &book : books(source))
        named.emplace_back(nameOf(book.title, book.path), std::move(book));
    std::stable_sort(named.begin(), named.end(), [](const auto &a, const auto &b) {
        return PathParts::compareNatural(a.first.toUtf8(), b.first.toUtf8()) < 0;
    });
    for (auto &[name, book] : named) {
        FileEntry entry;
        entry.row = book.row;
        entry.name = name;
        add(entry);
        m_books.push_back(std::move(book));
    }
    m_made.resize(m_books.size());
}

BookData::~BookData() = default;

QString BookData::filePath(int index) const
{
    const Book &book = m_books[std::size_t(index)];
    if (book.parts.empty())
        return FileData::filePath(index);
    QString &path = m_made[std::size_t(index)];
    if (path.isEmpty())
        path = make(book);
    return path;
}

bool BookData::isStreamed(int index) const
{
    return m_books[std::size_t(index)].parts.empty() && FileData::isStreamed(index);
}

qint64 BookData::sizeBytes(int index) const
{
    const Book &book = m_books[std::size_t(index)];
    return book.parts.empty() ? FileData::sizeBytes(index) : partBytes(book);
}

QDateTime BookData::fileDate(int index) const
{
    QDateTime date = FileData::fileDate(index);
    for (const FileIndex::Row part : m_books[std::size_t(index)].parts)
        date = std::max(date, files().record(part).modified);
    return date;
}

// A book that cannot be packed has a path at which there is nothing: the export says so.
QString BookData::make(const Book &book) const
{
    const Result<QString> folder = files().privateFolder().newSubFolder(partBytes(book));
    if (!folder) {
        addProblem(book, folder.error());
        return {};
    }
    QString target = QDir(folder.value()).filePath(u"book"_s);
    const Result<QStringList> missing = writeBookArchive(files(), book.parts, book.path, target);
    if (!missing) {
        QFile::remove(target);
        addProblem(book, missing.error());
    } else if (!missing.value().isEmpty()) {
        addProblem(book,
                   { Fault::Io,
                     target,
                     Notice("media.bookPartsMissing",
                            { qint64(missing.value().size()), missing.value().constFirst() }) });
    }
    return target;
}

qint64 BookData::partBytes(const Book &book) const
{
    qint64 total = 0;
    for (const FileIndex::Row part : book.parts)
        total += files().contentSize(part);
    return total;
}

void BookData::addProblem(const Book &book, const Error &error) const
{
    m_source.addProblem(DataType::Books,
                        PathParts::text(Book::kDomain) + u'/' + PathParts::text(book.path),
                        error,
                        {},
                        true);
}

void readBooks(Source &source, DataSets &sets)
{
    sets[DataType::Books] = std::make_unique<BookData>(source);
}

} // namespace PhoneItems
