#ifndef PHONEBACKUP_FOLDER_FILEINDEX_H
#define PHONEBACKUP_FOLDER_FILEINDEX_H

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QString>

#include <array>
#include <memory>
#include <vector>

namespace PhoneBackup {

/*!
    \brief All entries of a backup by domain and path, whatever index they were read from.

    \par Order
    Any number of add(), sort() once, then everything else. Rows are numbers from 0 in the order of
    domain and path (bytes); they stay the same from sort() on.
    \par Bytes
    Domains and paths are kept as they are stored, UTF-8 or not.
    \par Memory
    48 bytes an entry and the bytes of its path; no object an entry.
*/
class FileIndex
{
public:
    using Row = int;
    static constexpr Row kNone = -1;

    enum class Kind : quint8 { File, Folder, Link, Other };

    //! Name of a content file: 20 bytes, written as 40 hex digits.
    using Id = std::array<uchar, 20>;

    //! Rows from first up to, but without, last.
    struct Range
    {
        Row first = 0;
        Row last = 0;

        bool isEmpty() const { return first >= last; }
    };

    FileIndex();
    ~FileIndex();

    //! Makes room for \a count entries.
    void reserve(int count);

    /*!
        Adds an entry. \a id is accepted when it is 40 lower-case hex digits; otherwise the one that
        domain and path make is taken. \a recordKey tells the reader of the index where the entry's
        record is. \return whether \a id was accepted.
    */
    bool
    add(QByteArrayView id, QByteArrayView domain, QByteArrayView path, Kind kind, qint64 recordKey);

    //! Puts the entries in order.
    void sort();

    int count() const { return int(m_entries.size()); }

    QByteArrayView domain(Row row) const;
    QByteArrayView path(Row row) const;
    Kind kind(Row row) const;
    const Id &id(Row row) const;
    qint64 recordKey(Row row) const;

    //! The entry at exactly this place, of any kind, kNone when there is none.
    Row find(QByteArrayView domain, QByteArrayView path) const;

    //! The same for a path as text: as given, then composed (NFC), then decomposed (NFD).
    Row find(QByteArrayView domain, const QString &path) const;

    //! The entries of \a domain whose path begins with \a prefix.
    Range walk(QByteArrayView domain, QByteArrayView prefix = {}) const;

    //! The domains that begin with \a prefix, in order.
    QList<QByteArray> domains(QByteArrayView prefix = {}) const;

    //! SHA-1 over domain, "-" and path: what the identifier is by definition.
    static Id idOf(QByteArrayView domain, QByteArrayView path);

private:
    struct Entry
    {
        const char *path;
        qint64 recordKey;
        quint32 pathSize;
        quint32 domain; // the number of the domain above, the kind in the lowest 2 bits
        Id id;
    };

    const char *store(QByteArrayView bytes);
    quint32 domainNumber(QByteArrayView domain);
    QByteArrayView pathOf(const Entry &entry) const;
    Range rangeOf(QByteArrayView domain) const;

    std::vector<Entry> m_entries;
    std::vector<QByteArray> m_domains;
    std::vector<Range> m_ranges; // of each domain, once sorted
    QHash<QByteArray, quint32> m_domainNumbers;
    quint32 m_lastDomain = 0;

    std::vector<std::unique_ptr<char[]>> m_chunks; // never moved: entries point into them
    qsizetype m_chunkLeft = 0;
    char *m_chunkEnd = nullptr;
};

} // namespace PhoneBackup

#endif
