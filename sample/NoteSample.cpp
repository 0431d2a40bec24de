#include "sample/NoteSample.h"

#include "sample/BackupWriter.h"
#include "sample/Database.h"
#include "sample/DocumentMaker.h"
#include "sample/InventedText.h"
#include "sample/MediaPool.h"
#include "sample/NoteRecord.h"
#include "sample/Random.h"
#include "sample/SampleDates.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

const QString kDomain = u"AppDomainGroup-group.com.apple.notes"_s;
const QString kAccount = u"5D2C7E10-0001-4A4B-8C8D-9E9F00000001"_s;
const QString kPicture = u"5D2C7E10-0002-4A4B-8C8D-9E9F00000002"_s; // an attachment
const QString kMedium = u"5D2C7E10-0003-4A4B-8C8D-9E9F00000003"_s;
const QString kTable = u"5D2C7E10-0004-4A4B-8C8D-9E9F00000004"_s;
const QString kTag = u"5D2C7E10-0005-4A4B-8C8D-9E9F00000005"_s;
const QString kDrawing = u"5D2C7E10-0006-4A4B-8C8D-9E9F00000006"_s;
const QString kScan = u"5D2C7E10-0007-4A4B-8C8D-9E9F00000007"_s;
const QString kHere = QString(QChar(0xFFFC)); // where an attachment stands

// Keys of folders and attachments; notes come behind them.
enum Key {
    Account = 1,
    Notes,
    Boats,
    Repairs,
    Trash,
    Picture,
    Medium,
    Table,
    Tag,
    Drawing,
    Scan,
    Note
};

struct NoteText
{
    QString title;
    int folder;
    QList<NoteRun> runs;
    QString hint = {}; // of a locked note
    QString beginning = {}; // of its text, in the phone's list
};

NoteRun attached(const QString &identifier, const QString &type)
{
    NoteRun run { kHere };
    run.attachment = identifier;
    run.attachmentType = type;
    return run;
}

NoteRun linked(const QString &text, const QString &target)
{
    NoteRun run { text };
    run.link = target;
    return run;
}

NoteRun done(const QString &text, int indent = 0)
{
    return { text, NoteRun::Checklist, indent, true };
}

QList<NoteText> showcase()
{
    NoteRun quote { u"Never whistle on a boat without a sail.\n"_s };
    quote.isQuote = true;
    return {
        { u"Before we cast off"_s,
          Boats,
          { { u"Before we cast off\n"_s, NoteRun::Title },
            done(u"Bilge dry\n"_s),
            done(u"Fuel\n"_s),
            done(u"main tank\n"_s, 1),
            { u"spare can\n"_s, NoteRun::Checklist, 1 },
            { u"Weather at six\n"_s, NoteRun::Checklist },
            { u"Then\n"_s, NoteRun::Heading },
            { u"Engine\nLines\n"_s, NoteRun::Numbered },
            { u"bow first, unless the wind is from astern\n"_s, NoteRun::Dotted, 1 },
            { u"Fenders\n"_s, NoteRun::Numbered },
            { u"coffee\n"_s, NoteRun::Dashed } } },
        { u"Tides this week"_s,
          Boats,
          { { u"Tides this week\n"_s, NoteRun::Title },
            { u"High water at the harbour, from "_s },
            linked(u"the tide tables"_s,
                   u"https://tide-and-timber.example/tides?week=24&view=all"_s),
            { u":\n"_s },
            attached(kTable, u"com.apple.notes.table"_s),
            { u"\nThe ferry leaves an hour before.\n"_s },
            quote } },
        { u"Mooring sketch"_s,
          Repairs,
          { { u"Mooring sketch\n"_s, NoteRun::Title },
            attached(kPicture, u"public.jpeg"_s),
            { u"\nThe ring is where the red dot was.\n"_s },
            attached(kDrawing, u"com.apple.paper"_s),
            { u"\n"_s },
            attached(kTag, u"com.apple.notes.inlinetextattachment.hashtag"_s),
            { u"\n"_s },
            attached(kScan, u"com.apple.paper.doc.scan"_s),
            { u"\n"_s },
            { u"  if (tide < 1.5)\n    wait();"_s, NoteRun::Monospaced } } },
        { u"Words & signs <b>"_s,
          Notes,
          { { u"Words & signs <b>\n"_s, NoteRun::Title },
            { u"Grüße 🌊 後で 👨‍👩‍👧‍👦, “quoted”, 1 < 2 & 3 > 2\n"_s },
            { u"صباح النور ☀️\n"_s },
            linked(u"crew@marigold.example"_s, u"mailto:crew@marigold.example"_s) } },
        { u"Alarm code"_s, Notes, {}, u"the first boat"_s, u"Four digits, then the bell key"_s },
        { u"Old packing list"_s,
          Trash,
          { { u"Old packing list\n"_s, NoteRun::Title },
            { u"Oilskins\nBoots\n"_s, NoteRun::Dotted } } },
    };
}

QList<NoteText> allNotes(const Options &options, Random &random)
{
    QList<NoteText> notes = showcase().first(std::min<qsizetype>(options.notes, showcase().size()));
    while (notes.size() < options.notes) {
        const QString title = inventedSentence(random).chopped(1);
        notes.append({ title,
                       random.chance(50) ? Notes : Boats,
                       { { title + u'\n', NoteRun::Title }, { inventedText(random, 2) } },
                       {} });
    }
    return notes;
}

// Attributes of notes that changed their columns.
struct Columns
{
    const char *created;
    const char *account;
    bool hasFolder; // else a table of its own links notes and folders
};

Columns columnsOf(int release)
{
    if (release >= 16)
        return { "ZCREATIONDATE3", "ZACCOUNT7", true };
    if (release == 15)
        return { "ZCREATIONDATE3", "ZACCOUNT4", true };
    if (release >= 13)
        return { "ZCREATIONDATE1", "ZACCOUNT3", true };
    return { release == 9 ? "ZCREATIONDATE" : "ZCREATIONDATE1", "ZACCOUNT2", release >= 11 };
}

constexpr int kHintsOfAccounts = 17; // the first release with one password for all notes

// The number of a note's kind, which changes with the model.
int noteKind(int release)
{
    return release == 9 ? 9 : release == 10 ? 8 : release < 18 ? 11 : 12;
}

class StoreWriter
{
public:
    StoreWriter(int release, Random &random)
        : m_release(release)
        , m_columns(columnsOf(release))
        , m_random(random)
        , m_database(QString(), definitions(release).constData())
    {
    }

    void addFolders()
    {
        execute("INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK,Z_ENT,Z_OPT,ZIDENTIFIER,ZNAME,ZACCOUNTTYPE)"
                " VALUES (1,20,1,?,'iCloud',1)",
                { kAccount });
        const char *folder =
            "INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK,Z_ENT,Z_OPT,ZIDENTIFIER,ZTITLE2,ZFOLDERTYPE,"
            "ZOWNER,ZPARENT) VALUES (?,21,1,?,?,?,1,?)";
        execute(folder, { Notes, u"DefaultFolder-CloudKit"_s, u"Notes"_s, 0, {} });
        execute(folder, { Boats, m_random.uuid(), u"Boats"_s, 0, {} });
        execute(folder, { Repairs, m_random.uuid(), u"Repairs"_s, 0, Boats });
        execute(folder, { Trash, u"TrashFolder-CloudKit"_s, u"Recently Deleted"_s, 1, {} });
    }

    void addAttachments(int tables, int pictures)
    {
        const char *attachment =
            "INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK,Z_ENT,Z_OPT,ZIDENTIFIER,ZTYPEUTI,ZNOTE,ZMEDIA,"
            "ZMERGEABLEDATA1) VALUES (?,22,1,?,?,?,?,?)";
        const QList<QStringList> rows {
            { u"Day"_s, u"Morning"_s, u"Evening"_s },
            { u"Saturday"_s, u"06:12"_s, u"18:40"_s },
            { u"Sunday"_s, u"06:58"_s, QString() },
        };
        execute(attachment,
                { Table,
                  kTable,
                  u"com.apple.notes.table"_s,
                  tables,
                  {},
                  gzipped(tableDocument(rows)) });
        execute(attachment, { Picture, kPicture, u"public.jpeg"_s, pictures, Medium, {} });
        execute(attachment, { Drawing, kDrawing, u"com.apple.paper"_s, pictures, {}, {} });
        execute("INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK,Z_ENT,Z_OPT,ZIDENTIFIER,ZTYPEUTI,ZNOTE,"
                "ZTITLE) VALUES (?,22,1,?,'com.apple.paper.doc.scan',?,'Harbour fees')",
                { Scan, kScan, pictures });
        execute("INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK,Z_ENT,Z_OPT,ZIDENTIFIER,ZTYPEUTI1,ZNOTE1,"
                "ZALTTEXT) VALUES (?,24,1,?,'com.apple.notes.inlinetextattachment.hashtag',?,"
                "'#marigold')",
                { Tag, kTag, pictures });
        execute("INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK,Z_ENT,Z_OPT,ZIDENTIFIER,ZFILENAME,"
                "ZATTACHMENT1) VALUES (?,23,1,?,'mooring.jpg',?)",
                { Medium, kMedium, Picture });
    }

    void addNote(int number, const NoteText &text, const QDateTime &created)
    {
        const int key = Note + number;
        const bool isLocked = !text.hint.isEmpty();
        const bool isOfAccount = m_release >= kHintsOfAccounts;
        const bool keepsHint = isLocked && !isOfAccount;
        const bool hasListText = isOfAccount && !text.beginning.isEmpty();
        if (isLocked && isOfAccount) {
            execute("UPDATE ZICCLOUDSYNCINGOBJECT SET ZPASSWORDHINT = ? WHERE Z_PK = ?",
                    { text.hint, Account });
        }
        execute(
            "INSERT INTO ZICNOTEDATA(Z_PK,Z_ENT,Z_OPT,ZNOTE,ZDATA) VALUES (?,18,1,?,?)",
            { key + 1000, key, isLocked ? m_random.bytes(160) : gzipped(noteDocument(text.runs)) });
        const QByteArray sql = QByteArray("INSERT INTO ZICCLOUDSYNCINGOBJECT(Z_PK,Z_ENT,Z_OPT,"
                                          "ZIDENTIFIER,ZTITLE1,ZNOTEDATA,ZISPASSWORDPROTECTED,"
                                          "ZPASSWORDHINT,ZWIDGETSNIPPET,ZMODIFICATIONDATE1,")
            + m_columns.created + ',' + m_columns.account
            + (m_columns.hasFolder ? ",ZFOLDER) VALUES (?,?,1,?,?,?,?,?,?,?,?,1,?)"
                                   : ") VALUES (?,?,1,?,?,?,?,?,?,?,?,1)");
        QList<QVariant> values { key,
                                 noteKind(m_release),
                                 m_random.uuid(),
                                 text.title,
                                 key + 1000,
                                 isLocked,
                                 keepsHint ? QVariant(text.hint) : QVariant(),
                                 hasListText ? QVariant(text.title + u'\n' + text.beginning)
                                             : QVariant(),
                                 cocoaSeconds(created.addSecs(3600)) + 0.25,
                                 cocoaSeconds(created) + 0.5 };
        if (m_columns.hasFolder)
            values.append(text.folder);
        else
            execute("INSERT INTO Z_12NOTES VALUES (?,?)", { text.folder, key });
        execute(sql.constData(), values);
    }

    Database &database() { return m_database; }

private:
    static QByteArray definitions(int release)
    {
        const Columns columns = columnsOf(release);
        const QByteArray kind = QByteArray::number(noteKind(release));
        QByteArray sql =
            "CREATE TABLE ZICCLOUDSYNCINGOBJECT (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT "
            "INTEGER, ZISPASSWORDPROTECTED INTEGER, ZMARKEDFORDELETION INTEGER, ZNOTE INTEGER, "
            "ZMEDIA INTEGER, ZATTACHMENT1 INTEGER, ZISPINNED INTEGER, ZNOTEDATA INTEGER, ZPARENT "
            "INTEGER, ZOWNER INTEGER, ZFOLDERTYPE INTEGER, ZACCOUNTTYPE INTEGER, "
            "ZMODIFICATIONDATE TIMESTAMP, ZMODIFICATIONDATE1 TIMESTAMP, ZIDENTIFIER VARCHAR, "
            "ZPASSWORDHINT VARCHAR, ZTITLE VARCHAR, ZTITLE1 VARCHAR, ZTITLE2 VARCHAR, ZSNIPPET "
            "VARCHAR, ZNAME VARCHAR, ZTYPEUTI VARCHAR, ZTYPEUTI1 VARCHAR, ZNOTE1 INTEGER, "
            "ZFILENAME VARCHAR, ZALTTEXT VARCHAR, ZWIDGETSNIPPET VARCHAR, "
            "ZMERGEABLEDATA1 BLOB, ";
        if (release >= 17)
            sql += "ZGENERATION1 VARCHAR, ";
        if (release > 9) // of attachments
            sql += "ZCREATIONDATE TIMESTAMP, ";
        if (columns.hasFolder)
            sql += "ZFOLDER INTEGER, ";
        sql += QByteArray(columns.account) + " INTEGER, " + columns.created + " TIMESTAMP);";
        if (!columns.hasFolder) {
            sql += "CREATE TABLE Z_12NOTES (Z_12FOLDERS INTEGER, Z_" + kind
                + "NOTES INTEGER, PRIMARY KEY (Z_12FOLDERS, Z_" + kind + "NOTES));";
        }
        return sql
            + "CREATE TABLE ZICNOTEDATA (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, "
              "ZNOTE INTEGER, ZCRYPTOINITIALIZATIONVECTOR BLOB, ZCRYPTOTAG BLOB, ZDATA BLOB);"
              "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER "
              "INTEGER, Z_MAX INTEGER);"
              "CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR(255), "
              "Z_PLIST BLOB);"
              "INSERT INTO Z_PRIMARYKEY VALUES "
              "(1,'ICCloudState',0,0),(2,'ICCloudSyncingObject',0,9),"
              "(18,'ICNoteData',0,1),(20,'ICAccount',2,0),(21,'ICFolder',2,0),"
              "(22,'ICAttachment',2,0),(23,'ICMedia',2,0),(24,'ICInlineAttachment',2,0),("
            + kind + ",'ICNote',2,0);";
    }

    void execute(const char *sql, const QList<QVariant> &values)
    {
        m_database.prepare(sql).run(values);
    }

    int m_release;
    Columns m_columns;
    Random &m_random;
    Database m_database;
};

// The old store keeps texts as HTML.
QString html(const NoteText &text)
{
    if (!text.hint.isEmpty()) // nothing was locked then
        return u"<div>4711</div>"_s;
    QString all;
    for (const NoteRun &run : text.runs) {
        const QString shown = run.text.toHtmlEscaped();
        all += run.link.isEmpty() ? shown
                                  : u"<a href=\"%1\">%2</a>"_s.arg(run.link.toHtmlEscaped(), shown);
    }
    all.remove(kHere);
    QString lines;
    for (const QString &line : all.split(u'\n'))
        lines += u"<div>"_s + (line.isEmpty() ? u"<br>"_s : line) + u"</div>"_s;
    return lines;
}

void addOldStore(BackupWriter &writer, const QList<NoteText> &notes)
{
    Database database(
        QString(),
        "CREATE TABLE ZACCOUNT (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZTYPE "
        "INTEGER, ZDEFAULTSTORE INTEGER, ZNAME VARCHAR);"
        "CREATE TABLE ZSTORE (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZACCOUNT "
        "INTEGER, ZNAME VARCHAR);"
        "CREATE TABLE ZNOTE (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZCONTENTTYPE "
        "INTEGER, ZDELETEDFLAG INTEGER, ZISBOOKKEEPINGENTRY INTEGER, ZBODY INTEGER, ZSTORE "
        "INTEGER, ZCREATIONDATE TIMESTAMP, ZMODIFICATIONDATE TIMESTAMP, ZAUTHOR VARCHAR, ZGUID "
        "VARCHAR, ZSUMMARY VARCHAR, ZTITLE VARCHAR);"
        "CREATE TABLE ZNOTEBODY (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZOWNER "
        "INTEGER, ZCONTENT VARCHAR);"
        "INSERT INTO ZSTORE(Z_PK, ZNAME) VALUES (2, 'Notes'), (3, 'Boats'), (4, 'Repairs'),"
        " (5, 'Notes')");
    Statement note = database.prepare(
        "INSERT INTO ZNOTE(Z_PK,Z_ENT,Z_OPT,ZDELETEDFLAG,ZBODY,ZSTORE,ZCREATIONDATE,"
        "ZMODIFICATIONDATE,ZTITLE) VALUES (?,3,1,?,?,?,?,?,?)");
    Statement body = database.prepare("INSERT INTO ZNOTEBODY VALUES (?,4,1,?,?)");
    for (int i = 0; i < int(notes.size()); ++i) {
        const double created = cocoaSeconds(sampleStart().addDays(qint64(-9) * i));
        note.run({ i + 1,
                   notes[i].folder == Trash,
                   i + 1,
                   notes[i].folder,
                   created,
                   created + 3600,
                   notes[i].title });
        body.run({ i + 1, i + 1, html(notes[i]) });
    }
    writer.addFile(u"HomeDomain"_s, u"Library/Notes/notes.sqlite"_s, database.image());
    if (!database.error().isEmpty())
        writer.fail(u"notes.sqlite"_s, database.error());
}

} // namespace

void addNotes(BackupWriter &writer, const Options &options)
{
    if (options.notes == 0)
        return;
    constexpr int kFirstOfNewStore = 9;
    constexpr int kWithGenerations = 17;
    Random random(options.seed, "notes");
    const QList<NoteText> notes = allNotes(options, random);
    const int release = options.plannerRelease;
    if (release < kFirstOfNewStore) {
        addOldStore(writer, notes);
        return;
    }
    StoreWriter store(release, random);
    store.addFolders();
    store.addAttachments(Note + 1, Note + 2);
    for (int i = 0; i < int(notes.size()); ++i)
        store.addNote(i, notes[i], sampleStart().addDays(qint64(-9) * i));
    writer.addFile(kDomain, u"NoteStore.sqlite"_s, store.database().image());
    if (!store.database().error().isEmpty())
        writer.fail(u"NoteStore.sqlite"_s, store.database().error());

    MediaPool pool(options, "notes");
    const QString folder = u"Accounts/%1/"_s.arg(kAccount);
    const QString generation = release >= kWithGenerations ? u"1_GENERATION/"_s : QString();
    writer.addFile(kDomain,
                   folder + u"Media/%1/%2mooring.jpg"_s.arg(kMedium, generation),
                   pool.jpeg(sampleStart()));
    writer.addFile(kDomain, folder + u"FallbackImages/%1.jpg"_s.arg(kDrawing), pool.thumbnail());
    writer.addFile(
        kDomain,
        folder + u"FallbackPDFs/%1"_s.arg(kScan)
            + (generation.isEmpty() ? u".pdf"_s : u'/' + generation + u"FallbackPDF.pdf"_s),
        pdfDocument(u"Harbour fees"_s, inventedText(random, 1)));
    writer.addFile(
        kDomain, folder + u"Previews/%1-1-192x144-0.png"_s.arg(kPicture), pool.thumbnail());
}

} // namespace Sample
