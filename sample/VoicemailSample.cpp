#include "sample/VoicemailSample.h"

#include "sample/BackupWriter.h"
#include "sample/Database.h"
#include "sample/InventedText.h"
#include "sample/People.h"
#include "sample/PropertyList.h"
#include "sample/Random.h"
#include "sample/SampleDates.h"
#include "sample/SoundMaker.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kTables = R"(
CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));
CREATE TABLE voicemail (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, remote_uid INTEGER, date INTEGER, token TEXT,
  sender TEXT, callback_num TEXT, duration INTEGER, expiration INTEGER, trashed_date INTEGER, flags INTEGER,
  receiver TEXT, label TEXT);
CREATE TABLE deleted (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, remote_uid INTEGER, date INTEGER, token TEXT, sender TEXT,
  callback_num TEXT, duration INTEGER, expiration INTEGER, trashed_date INTEGER, flags INTEGER, receiver TEXT, label TEXT);
CREATE TABLE map (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, account TEXT, label TEXT);
CREATE INDEX date_index ON voicemail(date);
INSERT INTO map VALUES (1, '5B0C1D2E-3F40-4516-A728-394A5B6C7D8E', 'Primary');
)";

constexpr int kWithheld = 1; //!< Which caller hides the number.
constexpr int kTrashed = 2; //!< Which message is in the trash.
constexpr int kFlagsHeard = 3;
constexpr int kFlagsTrashed = 75;

QByteArray transcript(const QString &text)
{
    const auto uid = [](quint64 index) { return QVariant::fromValue(PlistUid { index }); };
    return binaryPropertyList(QVariantMap {
        { u"$version"_s, 100000 },
        { u"$archiver"_s, u"NSKeyedArchiver"_s },
        { u"$top"_s, QVariantMap { { u"root"_s, uid(1) } } },
        { u"$objects"_s,
          QVariantList {
              u"$null"_s,
              QVariantMap { { u"$class"_s, uid(3) },
                            { u"transcriptionString"_s, uid(2) },
                            { u"confidence"_s, 0.75 } },
              text,
              QVariantMap {
                  { u"$classes"_s, QStringList { u"VMVoicemailTranscript"_s, u"NSObject"_s } },
                  { u"$classname"_s, u"VMVoicemailTranscript"_s } },
          } },
    });
}

} // namespace

void addVoicemails(BackupWriter &writer, const Options &options)
{
    if (options.voicemails == 0)
        return;
    const QString domain = u"HomeDomain"_s;
    const QString folder = u"Library/Voicemail/"_s;
    const int onlyInLogFrom = 1 + options.voicemails * 2 / 3;

    Random random(options.seed, "voicemail");
    Database database(QString(), kTables);
    Statement insert = database.prepare(
        "INSERT INTO voicemail VALUES (?,?,?,'Complete',?,?,?,0,?,?,'+12025550100',"
        "'5B0C1D2E-3F40-4516-A728-394A5B6C7D8E')");
    QByteArray before;
    // The last row's sound was never fetched.
    for (int row = 1; row <= options.voicemails + 1; ++row) {
        if (row == onlyInLogFrom)
            before = database.image();
        const int index = row - 1;
        const QDateTime date = sampleStart().addSecs(row * 100000 + random.below(40000));
        const QString caller =
            index % 2 == 0 ? inventedPhoneNumber(random) : people()[index % 4].number;
        const int seconds = random.between(2, 9);
        const bool isTrashed = index == kTrashed;
        insert.run({ row,
                     1000 + row,
                     date.toSecsSinceEpoch(),
                     index == kWithheld ? QString() : caller,
                     index == kWithheld ? QVariant() : QVariant(caller),
                     seconds,
                     isTrashed ? static_cast<qint64>(cocoaSeconds(date.addDays(2))) : 0,
                     isTrashed ? kFlagsTrashed : kFlagsHeard });
        if (index == options.voicemails)
            break;
        FileTraits traits;
        traits.modified = date;
        writer.addFile(
            domain, folder + QString::number(row) + ".amr"_L1, amrFile(random, seconds), traits);
        if (index == 0) {
            writer.addFile(domain,
                           folder + QString::number(row) + ".transcript"_L1,
                           transcript(inventedSentence(random)),
                           traits);
        }
    }
    const QByteArray after = database.image();
    if (!database.error().isEmpty())
        writer.fail(folder + "voicemail.db"_L1, database.error());
    writer.addFile(domain, folder + "greeting.amr"_L1, amrFile(random, 4));
    writer.addFile(domain, folder + "voicemail.db"_L1, before);
    writer.addFile(domain, folder + "voicemail.db-wal"_L1, writeAheadLog(before, after));
    writer.addFile(domain, folder + "voicemail.db-shm"_L1, QByteArray(32768, '\0'));
}

} // namespace Sample
