#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/notes/Notes.h"
#include "backup/BkData.h"
#include "backup/BkFileItem.h"
#include "sample/NoteRecord.h"
#include "support/CaseFile.h"

#include <QtTest>

#include <sqlite3.h>

#include <array>

using namespace Qt::StringLiterals;
using namespace PhoneBackup;

namespace {

// What cases say of the records in databases, as functions of SQL:
// note('["plain", {"text": …, "style": …, …}]'), noteTable('[["cell", …], …]', '{shape}'), gzip(…).

// {"5": 1, "10": {"1f": 0.5}}: numbers, texts and messages by their fields, "f" for a float.
QByteArray message(const QJsonObject &fields)
{
    Sample::FieldWriter writer;
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        const bool isReal = field.key().endsWith(u'f');
        const quint32 number = (isReal ? field.key().chopped(1) : field.key()).toUInt();
        if (field.value().isObject())
            writer.bytes(number, message(field.value().toObject()));
        else if (field.value().isString())
            writer.text(number, field.value().toString());
        else if (isReal)
            writer.real(number, float(field.value().toDouble()));
        else
            writer.number(number, quint64(field.value().toInteger()));
    }
    return writer.message();
}

Sample::NoteRun runOf(const QJsonValue &value)
{
    if (value.isString())
        return { value.toString() };
    const QJsonObject about = value.toObject();
    Sample::NoteRun run { about[u"text"].toString(), about[u"style"].toInt(-1) };
    run.indent = about[u"indent"].toInt();
    run.isDone = about[u"done"].toBool();
    run.isQuote = about[u"quote"].toBool();
    run.link = about[u"link"].toString();
    run.attachment = about[u"inset"].toString();
    run.attachmentType = about[u"type"].toString();
    run.otherFields = message(about[u"fields"].toObject());
    if (!run.attachment.isEmpty())
        run.text = QChar(QChar::ObjectReplacementCharacter);
    return run;
}

QByteArray note(const QJsonArray &description)
{
    QList<Sample::NoteRun> runs;
    for (const QJsonValue &run : description)
        runs.append(runOf(run));
    return Sample::noteDocument(runs);
}

QByteArray noteTable(const QJsonArray &description, const QJsonObject &shape)
{
    QList<QStringList> rows;
    for (const QJsonValue &row : description)
        rows.append(row.toVariant().toStringList());
    return Sample::tableDocument(rows,
                                 { shape[u"rightToLeft"].toBool(),
                                   shape[u"deleted"].toInt(Sample::TableShape::kNone),
                                   shape[u"lost"].toInt(Sample::TableShape::kNone) })
        .replace(QByteArray::fromHex(shape[u"from"].toString().toLatin1()),
                 QByteArray::fromHex(shape[u"to"].toString().toLatin1()));
}

enum class Function { Text, Table, Gzip };

void call(sqlite3_context *context, int count, sqlite3_value **values)
{
    const auto bytes = [&](int place) {
        return place < count
            ? QByteArray(static_cast<const char *>(sqlite3_value_blob(values[place])),
                         sqlite3_value_bytes(values[place]))
            : QByteArray();
    };
    QByteArray document = bytes(0);
    const auto function = *static_cast<const Function *>(sqlite3_user_data(context));
    if (function != Function::Gzip) {
        const QJsonDocument json = QJsonDocument::fromJson(document);
        if (!json.isArray())
            sqlite3_result_error(context, "no JSON array", -1);
        document = function == Function::Text
            ? note(json.array())
            : noteTable(json.array(), QJsonDocument::fromJson(bytes(1)).object());
    }
    const QByteArray packed = Sample::gzipped(document);
    sqlite3_result_blob(context, packed.constData(), int(packed.size()), SQLITE_TRANSIENT);
}

int addFunctions(sqlite3 *database, const char ** /*error*/, const sqlite3_api_routines * /*api*/)
{
    static std::array functions { Function::Text, Function::Table, Function::Gzip };
    static constexpr std::array kNames { "note", "noteTable", "gzip" };
    int code = SQLITE_OK;
    for (std::size_t i = 0; i < functions.size() && code == SQLITE_OK; ++i) {
        code = sqlite3_create_function(database,
                                       kNames.at(i),
                                       -1,
                                       SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                                       &functions.at(i),
                                       &call,
                                       nullptr,
                                       nullptr);
    }
    return code;
}

template <std::size_t Size, class Enum>
QString nameOf(const std::array<const char *, Size> &names, Enum value)
{
    return QString::fromLatin1(names.at(std::size_t(value)));
}

// \a value unless it is \a none.
QJsonValue number(qint64 value, qint64 none = 0)
{
    return value == none ? QJsonValue() : QJsonValue(value);
}

QJsonValue json(const NoteBody &body, const NoteRun &run)
{
    static constexpr std::array kHighlights { "", "purple", "pink", "orange", "mint", "blue" };
    const NoteLook &look = run.look;
    QJsonObject fields = CaseFile::filled({
        { u"bold"_s, look.bold },
        { u"italic"_s, look.italic },
        { u"underlined"_s, look.underlined },
        { u"struck"_s, look.struck },
        { u"raised"_s, number(look.raised) },
        { u"highlight"_s, nameOf(kHighlights, look.highlight) },
        { u"colour"_s, look.colour ? QString::number(*look.colour, 16) : QString() },
        { u"link"_s, look.link < 0 ? QString() : body.links[look.link] },
        { u"attachment"_s, number(look.attachment, -1) },
    });
    const QString text = body.textOf(run).toString();
    if (fields.isEmpty())
        return text;
    if (look.attachment < 0)
        fields.insert(u"text"_s, text);
    return fields;
}

// A paragraph of one plain run is its text.
QJsonArray json(const NoteBody &body)
{
    static constexpr std::array kKinds { "",     "title", "heading", "subheading",
                                         "code", "row",   "table" };
    static constexpr std::array kLists { "", "dotted", "dashed", "numbered", "checklist" };
    QJsonArray blocks;
    for (const NoteBlock &block : body.blocks) {
        QJsonArray runs;
        for (const NoteRun &run : body.runsOf(block))
            runs.append(json(body, run));
        QJsonArray cells;
        const NoteTable *table =
            block.table < 0 ? nullptr : body.tables[std::size_t(block.table)].get();
        for (qsizetype i = 0; table != nullptr && i < qsizetype(table->cells.size()); ++i)
            cells.append(json(table->cells[std::size_t(i)]));
        QJsonObject fields = CaseFile::filled({
            { u"kind"_s, nameOf(kKinds, block.kind) },
            { u"list"_s, nameOf(kLists, block.list) },
            { u"level"_s, number(block.level) },
            { u"number"_s, number(block.number) },
            { u"checked"_s, block.isChecked },
            { u"quote"_s, block.isQuote },
            { u"inParagraph"_s, block.isInParagraph },
            { u"columns"_s, number(table == nullptr ? 0 : table->columns) },
            { u"rightToLeft"_s, table != nullptr && table->isRightToLeft },
            { u"cells"_s, cells },
        });
        if (fields.isEmpty() && runs.size() == 1 && runs.first().isString()) {
            blocks.append(runs.first());
            continue;
        }
        if (!runs.isEmpty())
            fields.insert(u"runs"_s, runs);
        blocks.append(fields);
    }
    return blocks;
}

QJsonObject json(Source &source, const NoteAttachment &attachment)
{
    static constexpr std::array kKinds {
        "hashtag", "mention", "noteLink",        "calculation", "word",
        "link",    "table",   "drawing",         "scan",        "pdf",
        "gallery", "file",    "embeddedPicture", "embeddedFile"
    };
    static constexpr std::array kPresences { "", "present", "neverDownloaded", "locked" };
    static constexpr std::array kShows { "original", "picture", "pdf" };
    QJsonObject files;
    for (const NoteFile &file : attachment.files) {
        files.insert(nameOf(kShows, file.shows), QString::fromUtf8(source.index().path(file.row)));
    }
    return CaseFile::filled({
        { u"row"_s, number(attachment.id) },
        { u"id"_s, attachment.identifier },
        { u"type"_s, attachment.type },
        { u"kind"_s, nameOf(kKinds, attachment.kind) },
        { u"presence"_s, nameOf(kPresences, attachment.presence) },
        { u"own"_s, attachment.isOwn },
        { u"deleted"_s, attachment.deleted },
        { u"title"_s, attachment.title },
        { u"fileName"_s, attachment.fileName },
        { u"text"_s, attachment.text },
        { u"target"_s, attachment.target },
        { u"url"_s, attachment.url },
        { u"summary"_s, attachment.summary },
        { u"words"_s, attachment.words },
        { u"parent"_s, number(attachment.parent) },
        { u"bytes"_s, number(attachment.bytes, -1) },
        { u"size"_s,
          attachment.size.isEmpty()
              ? QJsonArray()
              : QJsonArray { attachment.size.width(), attachment.size.height() } },
        { u"seconds"_s, attachment.seconds > 0 ? QJsonValue(attachment.seconds) : QJsonValue() },
        { u"created"_s, CaseFile::text(attachment.created) },
        { u"modified"_s, CaseFile::text(attachment.modified) },
        { u"files"_s, files },
    });
}

QJsonObject json(Source &source, const Note &note)
{
    static constexpr std::array kStates { "", "cut", "unreadable", "elsewhere", "locked" };
    QJsonArray attachments;
    for (const NoteAttachment &attachment : note.attachments)
        attachments.append(json(source, attachment));
    return CaseFile::filled({
        { u"old"_s, note.store == Note::Store::Old },
        { u"row"_s, number(note.id, -1) },
        { u"id"_s, note.identifier },
        { u"title"_s, note.title },
        { u"snippet"_s, note.snippet },
        { u"folder"_s, note.folder },
        { u"account"_s, note.account },
        { u"state"_s, nameOf(kStates, note.bodyState) },
        { u"pinned"_s, note.pinned },
        { u"shared"_s, note.shared },
        { u"deleted"_s, note.deleted },
        { u"hint"_s, note.hint },
        { u"created"_s, CaseFile::text(note.created) },
        { u"modified"_s, CaseFile::text(note.modified) },
        { u"opened"_s, CaseFile::text(note.opened) },
        { u"body"_s, json(note.body) },
        { u"attachments"_s, attachments },
    });
}

CaseFile::Records records(Source &source, const QString & /*what*/)
{
    CaseFile::Records all;
    const QList<FileIndex::Row> others =
        readNotes(source, [&](const Note &note) { all.append(json(source, note)); });
    for (const FileIndex::Row row : others)
        all.append({ { u"file"_s, QString::fromUtf8(source.index().path(row)) } });
    return all;
}

// Characters that nobody sees in a line.
QString visible(QString line)
{
    static constexpr std::array<std::array<char16_t, 2>, 4> kSigns {
        { { 0xA0, u'␣' }, { 0x2067, u'⟪' }, { 0x2068, u'‹' }, { 0x2069, u'›' } }
    };
    for (const auto &[hidden, sign] : kSigns)
        line.replace(QChar(hidden), QChar(sign));
    return line;
}

// Rows of notes, "table" for its columns and what the rows are numbered, "files" for what is
// offered of their files, "problems" for what is said of both.
QStringList items(PhoneItems::Backup &backup, const QString &what)
{
    QStringList lines;
    const QString deleted = u" [deleted]"_s;
    const BkData *notes = backup.getBkData(DataType::Notes);
    const BkData *files = backup.getBkData(DataType::NoteAttachments);
    if (what == "files"_L1) {
        for (const BkAbstractItem *item : files->recoverFileList()) {
            lines.append(item->groupItem()->value(0) + u'/' + item->value(0)
                         + (item->flag(0) ? deleted : QString()));
        }
    } else if (what == "problems"_L1) {
        for (const Problem &problem : backup.problems()) {
            lines.append(QString::number(problem.dataType) + u' ' + problem.source
                         + (problem.loss ? u" (loss)"_s : QString())
                         + (problem.neverDownloaded ? u" (never downloaded)"_s : QString()));
        }
    } else if (what == "table"_L1) {
        for (int column = 0; column < notes->column(); ++column)
            lines.append(notes->columnName(column));
        for (const int row : notes->recoverList())
            lines.append(QString::number(notes->at(row, true)->id()));
    } else {
        for (const int row : notes->recoverList()) {
            QStringList cells;
            for (int column = 0; column < notes->column(); ++column)
                cells.append(notes->value(row, column));
            lines.append(visible(cells.join(u'|'))
                         + (notes->at(row, true)->flag(0) ? deleted : QString()));
        }
    }
    return lines;
}

} // namespace

class tst_NotesCases : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("TZ", "America/New_York"); // rows tell local times
        ::tzset();
        QCOMPARE(sqlite3_auto_extension(reinterpret_cast<void (*)()>(&addFunctions)), SQLITE_OK);
    }
    void reads_data() { CaseFile::addRows(u"notes"_s); }
    void reads()
    {
        QFETCH(QString, path);
        const QByteArray difference = CaseFile::difference(path, &records, &items);
        QVERIFY2(difference.isEmpty(), difference.constData());
    }
};

QTEST_GUILESS_MAIN(tst_NotesCases)
#include "tst_NotesCases.moc"
