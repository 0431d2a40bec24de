#include "PhoneItems/notes/Notes.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/notes/Notes.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneItems/notes/AttachmentWords.h"
#include "PhoneItems/notes/NoteBodyText.h"
#include "PhoneItems/shared/FileData.h"
#include "PhoneItems/shared/TableData.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <algorithm>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

QString firstLine(const QString &text)
{
    constexpr qsizetype kLongest = 100;
    const QString line = text.trimmed().section(u'\n', 0, 0).trimmed();
    if (line.size() <= kLongest)
        return line;
    return StoredText::beginning(line, kLongest) + u'…';
}

QString beginning(const Note &note)
{
    return note.snippet.isEmpty() ? QString() : u'\n' + tr("Beginning: %1").arg(note.snippet);
}

// The lock hides the text, but neither the hint nor what the phone's list shows.
QString lockedText(const Note &note)
{
    return tr("[Locked note]")
        + (note.hint.isEmpty() ? QString() : u'\n' + tr("Hint: %1").arg(note.hint))
        + beginning(note);
}

// Makes the rows and the files of notes as they come.
class NoteItems
{
public:
    explicit NoteItems(Source &source)
        : m_source(source)
        , m_table(std::make_unique<TableData>(
              DataType::Notes,
              QStringList { tr("Title"), tr("Folder"), tr("Created"), tr("Modified"), tr("Text") }))
        , m_files(std::make_unique<FileData>(DataType::NoteAttachments, source.files()))
    {
    }

    void add(const Note &note)
    {
        QString title = note.title;
        const QString text = textOf(note, title);
        reportFiles(note);
        const bool isLeft =
            !note.deleted || note.store == Note::Store::Old || !title.isEmpty() || !text.isEmpty();
        if (!isLeft)
            return; // deleted for good
        Row row;
        row.cells = { title,
                      note.folder,
                      CCommonUtils::datetimeToMinute(note.created, true),
                      CCommonUtils::datetimeToMinute(note.modified, true),
                      text };
        row.date = note.orderDate();
        row.id = note.id;
        row.deleted = note.deleted;
        m_table->add(row);
        addFiles(note, title);
    }

    void addOthers(const QList<FileIndex::Row> &files)
    {
        const int group = files.isEmpty() ? -1 : m_files->addGroup(tr("Other"));
        for (const FileIndex::Row row : files) {
            FileEntry entry;
            entry.row = row;
            entry.group = group;
            m_files->add(entry);
        }
    }

    void put(DataSets &sets)
    {
        // Notes came by date; problems are told in the order of the store.
        for (std::vector<Problem> *problems : { &m_textProblems, &m_fileProblems }) {
            std::stable_sort(problems->begin(),
                             problems->end(),
                             [](const Problem &a, const Problem &b) { return a.row < b.row; });
            for (Problem &problem : *problems) {
                problem.row = 0; // their places tell them apart
                m_source.addProblem(problem);
            }
        }
        sets[DataType::Notes] = std::move(m_table);
        sets[DataType::NoteAttachments] = std::move(m_files);
    }

private:
    // The text of \a note; \a title becomes its beginning when it has none.
    QString textOf(const Note &note, QString &title)
    {
        if (note.isLocked())
            return lockedText(note);
        NoteBodyText body = NoteBodyText::of(note);
        const bool hasRoom = body.text.size() <= m_charactersLeft;
        if (!hasRoom)
            body.text = StoredText::beginning(body.text, std::max<qsizetype>(m_charactersLeft, 0));
        m_charactersLeft -= body.text.size();
        const bool isCut = note.bodyState == Note::BodyState::Cut || !body.isComplete || !hasRoom;
        const bool isUnreadable = note.bodyState == Note::BodyState::Unreadable;
        if (isCut || isUnreadable)
            reportText(note, Notice(isUnreadable ? "notes.unreadable" : "notes.cut"));
        if (isUnreadable || (isCut && body.text.isEmpty()))
            return tr("[Damaged note]") + beginning(note);
        // Where nothing is stored, the rest of it is in the cloud only.
        const QString text =
            note.bodyState == Note::BodyState::Elsewhere ? note.snippet : body.text;
        if (title.isEmpty() && note.store == Note::Store::Current)
            title = firstLine(text);
        return text;
    }

    void addFiles(const Note &note, const QString &title)
    {
        std::vector<const NoteAttachment *> attachments; // in the order of the store
        for (const NoteAttachment &attachment : note.attachments) {
            if (!attachment.files.empty())
                attachments.push_back(&attachment);
        }
        if (attachments.empty())
            return;
        std::stable_sort(attachments.begin(), attachments.end(), [](const auto *a, const auto *b) {
            return a->id < b->id;
        });
        const int group = m_files->addGroup(title.isEmpty() ? tr("Note") : title);
        for (const NoteAttachment *attachment : attachments) {
            for (const NoteFile &file : attachment->files) {
                FileEntry entry;
                entry.row = file.row;
                entry.group = group;
                entry.name = nameOf(*attachment, file);
                entry.date = attachment->created;
                entry.id = attachment->id;
                entry.deleted = note.deleted;
                m_files->add(entry);
            }
        }
    }

    QString nameOf(const NoteAttachment &attachment, const NoteFile &file) const
    {
        if (file.shows == NoteFile::Shows::Original)
            return attachment.fileName;
        const QByteArrayView path = m_source.index().path(file.row);
        return renderingName(attachment, PathParts::text(PathParts::extension(path)));
    }

    void reportText(const Note &note, const Notice &what)
    {
        Problem problem { DataType::Notes,
                          u"NoteStore.sqlite: "_s
                              + tr("note “%1” (%2)").arg(note.title, QString::number(note.id)),
                          what };
        problem.row = note.id;
        m_textProblems.push_back(problem);
    }

    void reportFiles(const Note &note)
    {
        using Presence = NoteAttachment::Presence;
        for (const NoteAttachment &attachment : note.attachments) {
            const bool isLocked = attachment.presence == Presence::Locked;
            if (!isLocked && attachment.presence != Presence::NeverDownloaded)
                continue;
            Problem problem { DataType::NoteAttachments,
                              u"%1/%2 (%3)"_s.arg(
                                  note.title, label(attachment), QString::number(attachment.id)),
                              Notice(isLocked ? "notes.lockedFiles" : "notes.neverDownloaded") };
            problem.loss = false;
            problem.neverDownloaded = !isLocked;
            problem.row = attachment.id;
            m_fileProblems.push_back(problem);
        }
    }

    static constexpr qsizetype kMaxCharacters = qsizetype(32) << 20; // of all notes

    Source &m_source;
    std::unique_ptr<TableData> m_table;
    std::unique_ptr<FileData> m_files;
    std::vector<Problem> m_textProblems;
    std::vector<Problem> m_fileProblems;
    qsizetype m_charactersLeft = kMaxCharacters;
};

} // namespace

void readNotes(Source &source, DataSets &sets)
{
    NoteItems items(source);
    items.addOthers(
        PhoneBackup::readNotes(source, [&items](const Note &note) { items.add(note); }));
    items.put(sets);
}

} // namespace PhoneItems
