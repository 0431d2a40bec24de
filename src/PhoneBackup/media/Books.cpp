#include "PhoneBackup/media/Books.h"

#include "PhoneBackup/media/BookArchive.h"
#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/shared/FileData.h"
#include "platform/Translation_p.h"

#include <QDir>

#include <algorithm>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kBooks = 4;
constexpr QByteArrayView kDomain = "BooksDomain";

// One book: a file, or the files of a folder.
struct Book
{
    QByteArrayView path; // of the file or folder
    FileIndex::Row row = FileIndex::kNone; // the file; of a folder, its own entry or a file of it
    std::vector<FileIndex::Row> parts; // of a folder
    QString name;
};

// The uppermost folder in \a path that is a book, empty when there is none.
QByteArrayView bookFolder(QByteArrayView path)
{
    for (qsizetype slash = path.indexOf('/'); slash >= 0; slash = path.indexOf('/', slash + 1)) {
        if (mediaKind(path.first(slash)) == MediaKind::Book)
            return path.first(slash);
    }
    return {};
}

// Books that are folders get their file when it is asked for.
class BookData : public FileData
{
public:
    BookData(Source &source, std::vector<Book> books)
        : FileData(kBooks, source.files())
        , m_source(source)
        , m_books(std::move(books))
        , m_made(m_books.size())
    {
        for (const Book &book : m_books) {
            FileEntry entry;
            entry.row = book.row;
            entry.name = book.name;
            add(entry);
        }
    }

    QString filePath(int index) const override
    {
        const Book &book = m_books[std::size_t(index)];
        if (book.parts.empty())
            return FileData::filePath(index);
        QString &path = m_made[std::size_t(index)];
        if (path.isEmpty())
            path = make(book);
        return path;
    }

    bool isStreamed(int index) const override
    {
        return m_books[std::size_t(index)].parts.empty() && FileData::isStreamed(index);
    }

    qint64 sizeBytes(int index) const override
    {
        const Book &book = m_books[std::size_t(index)];
        if (book.parts.empty())
            return FileData::sizeBytes(index);
        qint64 total = 0;
        for (const FileIndex::Row part : book.parts)
            total += files().contentSize(part);
        return total;
    }

    QDateTime fileDate(int index) const override
    {
        const Book &book = m_books[std::size_t(index)];
        QDateTime date = FileData::fileDate(index);
        for (const FileIndex::Row part : book.parts)
            date = std::max(date, files().record(part).modified);
        return date;
    }

private:
    // A book that cannot be packed has a path at which there is nothing: the export says so.
    QString make(const Book &book) const
    {
        qint64 bytes = 0;
        for (const FileIndex::Row part : book.parts)
            bytes += files().contentSize(part);
        const Result<QString> folder = files().privateFolder().newSubFolder(bytes);
        if (!folder) {
            addProblem(book, folder.error());
            return {};
        }
        QString target = QDir(folder.value()).filePath(u"book"_s);
        const Result<QStringList> missing =
            writeBookArchive(files(), book.parts, book.path, target);
        if (!missing) {
            QFile::remove(target);
            addProblem(book, missing.error());
        } else if (!missing.value().isEmpty()) {
            addProblem(book,
                       { Fault::Io,
                         target,
                         tr("%1 of the book's files could not be read and are missing from it, "
                            "“%2” among them.")
                             .arg(missing.value().size())
                             .arg(missing.value().constFirst()) });
        }
        return target;
    }

    void addProblem(const Book &book, const Error &error) const
    {
        m_source.addProblem(
            kBooks, PathParts::text(kDomain) + u'/' + PathParts::text(book.path), error, {}, true);
    }

    Source &m_source; // outlives the set
    std::vector<Book> m_books;
    mutable std::vector<QString> m_made;
};

class Books
{
public:
    explicit Books(Source &source)
        : m_source(source)
    {
    }

    void read(DataSets &sets)
    {
        readTitles(u"Books.plist"_s);
        readTitles(u"Purchases/Purchases.plist"_s);
        readTitles(u"Managed/Managed.plist"_s);
        collect();
        for (Book &book : m_books) {
            const QString title = titleOf(book.path);
            const QString extension = PathParts::text(PathParts::extension(book.path));
            book.name = OutputNames::clean(
                title.isEmpty() ? PathParts::text(PathParts::stem(book.path)) : title, extension);
        }
        std::stable_sort(m_books.begin(), m_books.end(), [](const Book &a, const Book &b) {
            return PathParts::compareNatural(a.name.toUtf8(), b.name.toUtf8()) < 0;
        });
        sets[kBooks] = std::make_unique<BookData>(m_source, std::move(m_books));
    }

private:
    void readTitles(const QString &list)
    {
        const QByteArray listFolder = PathParts::folder(list.toUtf8()).toByteArray();
        const QVariantList books =
            m_source.propertyList(kBooks, kDomain, list).value("Books").toList();
        for (const QVariant &entry : books) {
            const QVariantMap book = entry.toMap();
            const QByteArray path = book.value(u"Path"_s).toString().toUtf8();
            QString title = book.value(u"Name"_s).toString().trimmed();
            if (title.isEmpty())
                title = book.value(u"itemName"_s).toString().trimmed();
            if (path.isEmpty() || title.isEmpty())
                continue;
            m_titles.insert(listFolder.isEmpty() ? path : listFolder + '/' + path, title);
            m_titlesByName.insert(PathParts::name(path).toByteArray(), title);
        }
    }

    QString titleOf(QByteArrayView path) const
    {
        const QString title = m_titles.value(path.toByteArray());
        return !title.isEmpty() ? title : m_titlesByName.value(PathParts::name(path).toByteArray());
    }

    void collect()
    {
        const FileIndex &index = m_source.index();
        const FileIndex::Range range = index.walk(kDomain);
        QHash<QByteArray, std::size_t> folders;
        for (FileIndex::Row row = range.first; row < range.last && m_source.keepGoing(); ++row) {
            const QByteArrayView path = index.path(row);
            if (index.kind(row) != FileIndex::Kind::File)
                continue;
            const QByteArrayView folder = bookFolder(path);
            if (PathParts::isHidden(folder.isEmpty() ? path : folder))
                continue;
            if (folder.isEmpty()) {
                if (mediaKind(path) == MediaKind::Book)
                    m_books.push_back({ path, row, {}, {} });
                continue;
            }
            const auto known = folders.constFind(folder.toByteArray());
            if (known != folders.constEnd()) {
                m_books[*known].parts.push_back(row);
                continue;
            }
            folders.insert(folder.toByteArray(), m_books.size());
            const FileIndex::Row own = index.find(kDomain, folder);
            m_books.push_back({ folder, own == FileIndex::kNone ? row : own, { row }, {} });
        }
    }

    Source &m_source;
    QHash<QByteArray, QString> m_titles;
    QHash<QByteArray, QString> m_titlesByName;
    std::vector<Book> m_books;
};

} // namespace

void readBooks(Source &source, DataSets &sets)
{
    Books(source).read(sets);
}

} // namespace PhoneBackup
