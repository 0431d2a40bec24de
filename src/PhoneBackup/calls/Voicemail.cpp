#include "PhoneBackup/calls/Voicemail.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/plist/KeyedArchive.h"
#include "PhoneBackup/source/MediaKind.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/source/Table.h"

#include <QHash>

#include <algorithm>
#include <iterator>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kDomain = "HomeDomain";
constexpr QByteArrayView kFolder = "Library/Voicemail/";
constexpr qint64 kHeardFlag = 1; // 2 is new, 3 is heard

class VoicemailReader
{
public:
    explicit VoicemailReader(Source &source)
        : m_source(source)
    {
    }

    std::vector<Voicemail> read()
    {
        collectFiles();
        std::optional<RowDatabase> database =
            RowDatabase::open(m_source,
                              DataType::Voicemail,
                              kDomain,
                              u"Library/Voicemail/voicemail.db"_s,
                              RowDatabase::Consequence::filesStay());
        if (database) {
            Table received(*database, u"voicemail"_s);
            if (!received.exists())
                database->addLoss(Notice("voicemail.noTable"));
            readTable(received, false);
            Table purged(*database, u"deleted"_s); // told where the file is left
            readTable(purged, true);
        }
        addFilesWithoutRow();
        std::stable_sort(m_found.begin(), m_found.end(), [](const auto &a, const auto &b) {
            return PhoneTime::isNewer(a.date, b.date);
        });
        return std::move(m_found);
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

    void readTable(Table &table, bool isPurged)
    {
        const auto [date, sender, callback, duration, trashed, flags] =
            table.columns(u"date"_s,
                          u"sender"_s,
                          u"callback_num"_s,
                          u"duration"_s,
                          u"trashed_date"_s,
                          u"flags"_s);
        std::vector<Voicemail> rows;
        table.forEach([&](const Table::Row &row) {
            Voicemail voicemail;
            voicemail.row = row.id();
            voicemail.file = m_byNumber.value(row.id(), FileIndex::kNone);
            if (isPurged && voicemail.file == FileIndex::kNone)
                return;
            voicemail.date = PhoneTime::sinceUnix(row.number(date));
            voicemail.sender = row.text(sender).trimmed();
            voicemail.callback = row.text(callback).trimmed();
            voicemail.seconds = row.number(duration);
            // Since 2001, where the other date is since 1970.
            voicemail.deletedOn = PhoneTime::since2001(row.number(trashed));
            voicemail.isDeleted = isPurged || row.number(trashed).value_or(0) != 0;
            voicemail.isHeard = (row.integer(flags) & kHeardFlag) != 0;
            if (voicemail.file != FileIndex::kNone) {
                m_files.removeOne(voicemail.file);
                m_byNumber.remove(row.id());
            }
            rows.push_back(std::move(voicemail));
        });
        // Of equal dates the later row is the newer one.
        std::move(rows.rbegin(), rows.rend(), std::back_inserter(m_found));
    }

    // Greetings, and recordings that the database does not know or could not tell of.
    void addFilesWithoutRow()
    {
        for (const FileIndex::Row row : std::as_const(m_files)) {
            Voicemail voicemail;
            voicemail.file = row;
            voicemail.date = m_source.files().record(row).modified;
            m_found.push_back(std::move(voicemail));
        }
    }

    Source &m_source;
    QList<FileIndex::Row> m_files; // that no row was found for yet
    QHash<qint64, FileIndex::Row> m_byNumber;
    std::vector<Voicemail> m_found;
};

} // namespace

std::vector<Voicemail> readVoicemail(Source &source)
{
    return VoicemailReader(source).read();
}

QString transcriptOf(Source &source, const Voicemail &voicemail)
{
    if (voicemail.file == FileIndex::kNone)
        return {};
    const QByteArrayView path = source.index().path(voicemail.file);
    const QString beside = PathParts::text(PathParts::folder(path)) + u'/'
        + PathParts::text(PathParts::stem(path)) + u".transcript"_s;
    const FileIndex::Row row = source.files().findFile(kDomain, beside);
    if (row == FileIndex::kNone)
        return {};
    const KeyedArchive archive(source.files().wholeContent(row));
    const QVariant text = archive.resolve(archive.root().value(u"transcriptionString"_s));
    return StoredText::cleaned(text.toString());
}

} // namespace PhoneBackup
