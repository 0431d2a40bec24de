#include "PhoneBackup/media/Books.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

// The uppermost folder in \a path that is a book, empty when there is none.
QByteArrayView bookFolder(QByteArrayView path)
{
    for (qsizetype slash = path.indexOf('/'); slash >= 0; slash = path.indexOf('/', slash + 1)) {
        if (mediaKind(path.first(slash)) == MediaKind::Book)
            return path.first(slash);
    }
    return {};
}

Book::Kind kindOf(QByteArrayView path)
{
    const QByteArray extension = PathParts::extension(path).toByteArray().toLower();
    if (extension == "pdf")
        return Book::Kind::Pdf;
    return extension == "ibooks" ? Book::Kind::Authored : Book::Kind::Epub;
}

// The first of \a keys that \a book has.
QString text(const QVariantMap &book, std::initializer_list<QString> keys)
{
    for (const QString &key : keys) {
        const QString value = book.value(key).toString().trimmed();
        if (!value.isEmpty())
            return value;
    }
    return {};
}

class Books
{
public:
    explicit Books(Source &source)
        : m_source(source)
    {
    }

    std::vector<Book> read()
    {
        readList(u"Books.plist"_s);
        readList(u"Purchases/Purchases.plist"_s);
        readList(u"Managed/Managed.plist"_s);
        collect();
        return std::move(m_books);
    }

private:
    // What a list tells of a book.
    struct Told
    {
        QString identifier;
        QString title;
        QString author;
    };

    // Books from a computer have other keys than those from the store.
    void readList(const QString &list)
    {
        const QByteArray listFolder = PathParts::folder(list.toUtf8()).toByteArray();
        const QVariantList books =
            m_source.propertyList(DataType::Books, Book::kDomain, list).value("Books").toList();
        for (const QVariant &entry : books) {
            const QVariantMap book = entry.toMap();
            const QByteArray path = book.value(u"Path"_s).toString().toUtf8();
            const Told told { text(book, { u"Persistent ID"_s, u"Package Hash"_s }),
                              text(book, { u"Name"_s, u"itemName"_s }),
                              text(book, { u"Artist"_s, u"artistName"_s }) };
            if (path.isEmpty() || told.title.isEmpty())
                continue;
            m_told.insert(listFolder.isEmpty() ? path : listFolder + '/' + path, told);
            m_toldByName.insert(PathParts::name(path).toByteArray(), told);
        }
    }

    void add(Book book)
    {
        const QByteArray path = book.path.toByteArray();
        const Told told = m_told.contains(path)
            ? m_told.value(path)
            : m_toldByName.value(PathParts::name(path).toByteArray());
        book.identifier = told.identifier;
        book.title = told.title;
        book.author = told.author;
        m_books.push_back(std::move(book));
    }

    void collect()
    {
        const FileIndex &index = m_source.index();
        const FileIndex::Range range = index.walk(Book::kDomain);
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
                    add({ path, row, {}, kindOf(path), {}, {}, {} });
                continue;
            }
            const auto known = folders.constFind(folder.toByteArray());
            if (known != folders.constEnd()) {
                m_books[*known].parts.push_back(row);
                continue;
            }
            folders.insert(folder.toByteArray(), m_books.size());
            const FileIndex::Row own = index.find(Book::kDomain, folder);
            add({ folder,
                  own == FileIndex::kNone ? row : own,
                  { row },
                  kindOf(folder),
                  {},
                  {},
                  {} });
        }
    }

    Source &m_source;
    QHash<QByteArray, Told> m_told; // by path
    QHash<QByteArray, Told> m_toldByName;
    std::vector<Book> m_books;
};

} // namespace

std::vector<Book> books(Source &source)
{
    return Books(source).read();
}

} // namespace PhoneBackup
