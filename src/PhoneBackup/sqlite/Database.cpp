#include "PhoneBackup/sqlite/Database.h"

#include "PhoneBackup/base/OpenFile.h"
#include "PhoneBackup/base/PrivateFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <sqlite3.h>

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <utility>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMaxValueBytes = 32 << 20;

// What SQLite opens for reading keeps its access time, and a pipe does not stop it, as with all
// else that is read of a backup.
int openQuietly(const char *path, int flags, int mode)
{
    if ((flags & O_ACCMODE) == O_RDONLY) {
        flags |= O_NONBLOCK;
        const int descriptor = ::open(path, flags | O_NOATIME, mode);
        if (descriptor >= 0 || errno != EPERM)
            return descriptor;
    }
    return ::open(path, flags, mode);
}

void installQuietOpen()
{
    static const bool installed = [] {
        sqlite3_initialize();
        sqlite3_vfs *vfs = sqlite3_vfs_find(nullptr);
        return vfs && vfs->iVersion >= 3 && vfs->xSetSystemCall
            && vfs->xSetSystemCall(vfs, "open", reinterpret_cast<sqlite3_syscall_ptr>(&openQuietly))
            == SQLITE_OK;
    }();
    Q_UNUSED(installed)
}

// A journal that ends with the name of another one belongs to a commit over several databases; as
// that other file is not in a backup, the commit was completed and the journal is void. SQLite
// would go and look for the file under that name, wherever it points to.
bool namesAnotherJournal(const QString &path)
{
    static const QByteArray kMagic = QByteArray::fromHex("d9d505f920a163d7");
    QFile journal(path);
    if (!openForReading(journal))
        return true; // what cannot be read is of no use
    return journal.size() >= kMagic.size() && journal.seek(journal.size() - kMagic.size())
        && journal.read(kMagic.size()) == kMagic;
}

} // namespace

Database::Database(const DatabaseFiles &files, const KeepGoing &keepGoing)
    : m_files(files)
    , m_keepGoing(keepGoing)
{
}

Database::~Database() = default;
Database::Database(Database &&other) noexcept = default;
Database &Database::operator=(Database &&other) noexcept = default;

Result<Database>
Database::open(const DatabaseFiles &files, PrivateFolder &folder, const KeepGoing &keepGoing)
{
    installQuietOpen();
    Database database(files, keepGoing);
    database.m_damage = files.lost;
    if (!QFileInfo(files.journalPath).size() || namesAnotherJournal(files.journalPath))
        database.m_files.journalPath.clear();
    if (!QFileInfo(files.walPath).size())
        database.m_files.walPath.clear();
    const bool hasCompanion =
        !database.m_files.journalPath.isEmpty() || !database.m_files.walPath.isEmpty();

    Error error {};
    if (hasCompanion) {
        if (database.copyAndConnect(folder, false, error))
            return database;
        if (error.fault == Fault::TemporaryFolder)
            return error;
    }
    if (database.connect(files.path, Access::Immutable, false)) {
        if (hasCompanion) {
            database.m_damage =
                error.what.isEmpty() ? Notice("sqlite.changesDamaged", { files.name }) : error.what;
        }
        return database;
    }
    const Error whole = database.lastError();
    if (whole.fault != Fault::Corrupt)
        return whole;
    // SQLite refuses a database that is shorter than its header says, and one with a damaged
    // table definition, unless it is told that the schema is being repaired.
    Error ignored {};
    if ((hasCompanion && database.copyAndConnect(folder, true, ignored))
        || database.connect(files.path, Access::Immutable, true)) {
        database.m_damage = whole.what;
        return database;
    }
    return whole;
}

bool Database::copyAndConnect(PrivateFolder &folder, bool salvage, Error &error)
{
    const auto connectCopy = [&](const QString &copy) {
        const bool connected = connect(copy, Access::Copy, salvage);
        if (!connected)
            error = temporaryFolderError().value_or(Error {});
        return connected;
    };
    if (m_files.isPrivate)
        return connectCopy(m_files.path);
    qint64 bytes = 0;
    for (const QString &path : { m_files.path, m_files.walPath, m_files.journalPath })
        bytes += path.isEmpty() ? 0 : QFileInfo(path).size();
    const Result<QString> place = folder.newSubFolder(bytes);
    if (!place) {
        error = place.error();
        return false;
    }
    const QString copy = place.value() + "/copy.db"_L1;
    const std::array<std::pair<QString, QLatin1StringView>, 3> files { {
        { m_files.path, ""_L1 },
        { m_files.walPath, "-wal"_L1 },
        { m_files.journalPath, "-journal"_L1 },
    } };
    for (const auto &[source, suffix] : files) {
        if (source.isEmpty())
            continue;
        const Result<> copied = PrivateFolder::copy(source, m_files.name + suffix, copy + suffix);
        if (!copied) {
            error = copied.error();
            return false;
        }
    }
    return connectCopy(copy);
}

std::optional<Error> Database::temporaryFolderError() const
{
    if (!m_database)
        return std::nullopt;
    const int systemError = sqlite3_system_errno(m_database.get());
    switch (sqlite3_extended_errcode(m_database.get())) {
    case SQLITE_FULL: // nothing of the backup is ever written
    case SQLITE_IOERR_WRITE:
    case SQLITE_IOERR_TRUNCATE:
    case SQLITE_IOERR_FSYNC:
    case SQLITE_IOERR_GETTEMPPATH:
    case SQLITE_IOERR_SHMOPEN:
    case SQLITE_IOERR_SHMSIZE:
    case SQLITE_IOERR_SHMMAP:
        return PrivateFolder::writeError(systemError == 0 ? ENOSPC : systemError);
    case SQLITE_CANTOPEN: // also of a log of another version
        if (systemError == ENOSPC || systemError == EDQUOT || systemError == EROFS)
            return PrivateFolder::writeError(systemError);
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

bool Database::connect(const QString &path, Access access, bool salvage)
{
    // A roll-back writes, if only into the copy.
    const bool writes = access == Access::Copy && !m_files.journalPath.isEmpty();
    QByteArray uri = "file:" + QUrl::toPercentEncoding(path, "/");
    uri += writes ? "?mode=rw" : access == Access::Copy ? "?mode=ro" : "?mode=ro&immutable=1";
    const int flags = SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE
        | (writes ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY);

    m_database.reset();
    m_guard =
        std::make_shared<QueryGuard>(sizeBytes() + QFileInfo(m_files.walPath).size(), m_keepGoing);
    sqlite3 *database = nullptr;
    m_code = sqlite3_open_v2(uri.constData(), &database, flags, nullptr);
    m_database.reset(database);
    if (m_code == SQLITE_OK) {
        m_guard->attach(database);
        sqlite3_limit(database, SQLITE_LIMIT_LENGTH, kMaxValueBytes);
        sqlite3_limit(database, SQLITE_LIMIT_ATTACHED, 0);
        sqlite3_drop_modules(database, nullptr); // virtual tables
        for (const int feature : { SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION,
                                   SQLITE_DBCONFIG_ENABLE_VIEW,
                                   SQLITE_DBCONFIG_ENABLE_TRIGGER })
            sqlite3_db_config(database, feature, 0, nullptr);
        // What cannot be written cannot be salvaged, as SQLite sees it.
        sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, salvage ? 0 : 1, nullptr);
        // A mapped file that shrinks or cannot be read ends the program.
        QByteArray setup = "PRAGMA mmap_size=0; PRAGMA trusted_schema=0; PRAGMA cell_size_check=1;";
        if (salvage)
            setup += "PRAGMA writable_schema=1;";
        // The first look at the schema is what rolls a journal back: only then no more writing.
        setup += "SELECT 1 FROM sqlite_schema LIMIT 1; PRAGMA query_only=1;";
        // One transaction for all that is ever asked: each query would else look again whether the
        // file has changed, which a million small ones feel.
        setup += "BEGIN;";
        m_code = sqlite3_exec(database, setup.constData(), nullptr, nullptr, nullptr);
    }
    if (m_code == SQLITE_OK)
        m_code = readTables();
    if (m_code == SQLITE_OK)
        return true;
    m_message = QString::fromUtf8(database ? sqlite3_errmsg(database) : sqlite3_errstr(m_code));
    return false;
}

// A column called ROWID that is not the number of the row would be read, and sorted by, in its
// place. Where it is the number, its table has no index for the primary key.
int Database::readTables()
{
    static constexpr const char *kTables =
        "SELECT t.name, CASE WHEN t.type NOT IN ('table', 'shadow') THEN 1 ELSE EXISTS (SELECT 1 "
        "FROM pragma_table_info(t.name) AS c WHERE c.name = 'rowid' COLLATE NOCASE AND (c.pk = 0 "
        "OR EXISTS (SELECT 1 FROM pragma_index_list(t.name) AS i WHERE i.origin = 'pk'))) END "
        "FROM pragma_table_list AS t WHERE t.schema = 'main'";
    sqlite3_stmt *query = nullptr;
    const int code = sqlite3_prepare_v2(m_database.get(), kTables, -1, &query, nullptr);
    if (code != SQLITE_OK)
        return code;
    Statement tables(query, m_guard);
    Statement::Step step = tables.step();
    QSet<QByteArray> refused;
    m_tables.clear();
    m_tableNames.clear();
    for (; step == Statement::Step::Row; step = tables.step()) {
        const bool isRefused = tables.integer(1) != 0;
        if (isRefused)
            refused.insert(tables.bytes(0).toByteArray());
        else if (!tables.bytes(0).startsWith("sqlite_"))
            m_tableNames.append(tables.text(0));
        m_tables.insert(tables.text(0).toLower(), isRefused);
    }
    m_tableNames.sort();
    if (!refused.isEmpty())
        m_guard->refuse(m_database.get(), refused);
    return step == Statement::Step::Done ? SQLITE_OK : sqlite3_errcode(m_database.get());
}

Error Database::lastError() const
{
    switch (m_code & 0xFF) {
    case SQLITE_INTERRUPT:
        if (m_keepGoing && !m_keepGoing())
            return Error { Fault::Cancelled, m_files.path, Notice("base.stopped") };
        return Error { Fault::Corrupt,
                       m_files.path,
                       Notice("sqlite.tablesNotListed", { m_files.name }) };
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_IOERR:
    case SQLITE_AUTH:
    case SQLITE_NOMEM:
    case SQLITE_FULL:
        return Error { Fault::Io,
                       m_files.path,
                       Notice("sqlite.notOpened", { m_files.name, m_message }) };
    default:
        return Error { Fault::Corrupt,
                       m_files.path,
                       Notice("sqlite.damaged", { m_files.name, m_message }) };
    }
}

Result<Statement> Database::prepare(const QString &sql) const
{
    const QByteArray utf8 = sql.toUtf8();
    sqlite3_stmt *statement = nullptr;
    const int code = sqlite3_prepare_v2(
        m_database.get(), utf8.constData(), int(utf8.size()), &statement, nullptr);
    if (code == SQLITE_OK && statement)
        return Statement(statement, m_guard);
    return Error { Fault::Corrupt,
                   m_files.path,
                   Notice("sqlite.notAsked",
                          { m_files.name, QString::fromUtf8(sqlite3_errmsg(m_database.get())) }) };
}

qint64 Database::maxRowCount() const
{
    constexpr qint64 kSmallestRow = 5; // its place in the page, its length, number and header
    return (sizeBytes() + QFileInfo(m_files.walPath).size()) / kSmallestRow;
}

qint64 Database::sizeBytes() const
{
    return QFileInfo(m_files.path).size();
}

QStringList Database::columns(const QString &table) const
{
    QStringList names;
    if (!hasTable(table))
        return names;
    Result<Statement> query = prepare(u"SELECT name FROM pragma_table_info(?1)"_s);
    if (!query)
        return names;
    query.value().bind(1, table);
    while (query.value().step() == Statement::Step::Row)
        names.append(query.value().text(0));
    return names;
}

void Database::Close::operator()(sqlite3 *database) const
{
    sqlite3_close_v2(database);
}

} // namespace PhoneBackup
