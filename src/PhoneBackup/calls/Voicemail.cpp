#include "PhoneBackup/calls/Voicemail.h"

#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/PhoneTime.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/shared/FileData.h"
#include "platform/Translation_p.h"

#include <algorithm>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kVoicemail = 16;
constexpr QByteArrayView kDomain = "HomeDomain";
constexpr QByteArrayView kFolder = "Library/Voicemail/";

class Voicemail
{
public:
    explicit Voicemail(Source &source)
        : m_source(source)
    {
    }

    void read(DataSets &sets)
    {
        collectFiles();
        if (const std::optional<Database> database =
                m_source.openDatabase(kVoicemail, kDomain, u"Library/Voicemail/voicemail.db"_s)) {
            if (!database->hasTable(u"voicemail"_s)) {
                m_source.addDatabaseProblem(
                    kVoicemail, *database, tr("It has no table of voicemail that can be read."));
            }
            readTable(*database, u"voicemail"_s, false);
            readTable(*database, u"deleted"_s, true); // what was purged, where the file is left
        }
        addFilesWithoutRow();
        std::stable_sort(m_entries.begin(), m_entries.end(), [](const auto &a, const auto &b) {
            return PhoneTime::isNewer(a.date, b.date);
        });
        auto data = std::make_unique<FileData>(kVoicemail, m_source.files());
        for (const FileEntry &entry : m_entries)
            data->add(entry);
        sets[kVoicemail] = std::move(data);
    }

private:
    void collectFiles()
    {
        const FileIndex &index = m_source.index();
        const FileIndex::Range range = index.walk(kDomain, kFolder);
        for (FileIndex::Row row = range.first; row < range.last && m_source.keepGoing(); ++row) {
            const QByteArrayView path = index.path(row);
            if (index.kind(row) != FileIndex::Kind::File || PathParts::isHidden(path)
                || mediaKind(path) != MediaKind::Audio)
                continue;
            m_files.append(row);
            bool isNumber = false;
            const qint64 number = PathParts::stem(path).toByteArray().toLongLong(&isNumber);
            if (!isNumber)
                continue;
            // The file beside the database goes before one in an account's folder.
            const bool direct = PathParts::folder(path).size() + 1 == kFolder.size();
            if (direct || !m_byNumber.contains(number))
                m_byNumber.insert(number, row);
        }
    }

    void readTable(const Database &database, const QString &table, bool purged)
    {
        const QStringList columns = database.columns(table);
        if (columns.isEmpty())
            return;
        const auto column = [&](const QString &name) { return columnOrNull(columns, name); };
        const QString sql = u"SELECT ROWID, %1, %2, %3, %4 FROM %5 ORDER BY ROWID DESC"_s.arg(
            column(u"date"_s),
            column(u"sender"_s),
            column(u"callback_num"_s),
            column(u"trashed_date"_s),
            table);
        m_source.query(kVoicemail, database, sql, [this, purged](const Statement &row) {
            const qint64 number = row.integer(0);
            const auto file = m_byNumber.constFind(number);
            if (file == m_byNumber.constEnd()) // not downloaded
                return;
            FileEntry entry;
            entry.row = *file;
            entry.id = number;
            entry.date = PhoneTime::sinceUnix(row.number(1));
            entry.deleted = purged || row.number(4).value_or(0) != 0;
            entry.name = nameOf(entry, row.text(2).trimmed(), row.text(3).trimmed());
            m_entries.append(entry);
            m_files.removeOne(*file);
            m_byNumber.erase(file);
        });
    }

    QString nameOf(const FileEntry &entry, const QString &sender, const QString &callback) const
    {
        const QString &number = sender.isEmpty() ? callback : sender;
        QString caller = m_source.addressBook().name(number);
        if (caller.isEmpty())
            caller = number.isEmpty() ? tr("Unknown") : number;
        const QString title = entry.date.isValid()
            ? entry.date.toLocalTime().toString(u"yyyy-MM-dd hh-mm "_s) + caller
            : caller;
        const QByteArrayView path = m_source.index().path(entry.row);
        return OutputNames::clean(title, PathParts::text(PathParts::extension(path)));
    }

    // Greetings, and recordings that the database does not know or could not tell of.
    void addFilesWithoutRow()
    {
        for (const FileIndex::Row row : m_files) {
            FileEntry entry;
            entry.row = row;
            entry.date = m_source.files().record(row).modified;
            m_entries.append(entry);
        }
    }

    Source &m_source;
    QList<FileIndex::Row> m_files; // that no row was found for yet
    QHash<qint64, FileIndex::Row> m_byNumber;
    QList<FileEntry> m_entries;
};

} // namespace

void readVoicemail(Source &source, DataSets &sets)
{
    Voicemail(source).read(sets);
}

} // namespace PhoneBackup
