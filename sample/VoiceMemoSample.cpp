#include "sample/VoiceMemoSample.h"

#include "sample/BackupWriter.h"
#include "sample/Database.h"
#include "sample/Random.h"
#include "sample/SampleDates.h"
#include "sample/SoundMaker.h"

#include <QStringList>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr const char *kTables = R"(
CREATE TABLE ZCLOUDRECORDING (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZFLAGS INTEGER, ZFOLDER INTEGER,
  ZDATE TIMESTAMP, ZDURATION FLOAT, ZLOCALDURATION FLOAT, ZEVICTIONDATE TIMESTAMP, ZCUSTOMLABEL VARCHAR,
  ZCUSTOMLABELFORSORTING VARCHAR, ZENCRYPTEDTITLE VARCHAR, ZPATH VARCHAR, ZUNIQUEID VARCHAR);
CREATE TABLE ZFOLDER (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZENCRYPTEDNAME VARCHAR, ZUUID VARCHAR);
CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX INTEGER);
)";

constexpr const char *kOldTables = R"(
CREATE TABLE ZRECORDING (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZICLOUDSYNC INTEGER,
  ZDATE TIMESTAMP, ZDURATION FLOAT, ZCUSTOMLABEL VARCHAR, ZPATH VARCHAR);
CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX INTEGER);
)";

constexpr int kTrashed = 1; //!< Which recording is recently deleted.
constexpr int kFewestForLoneFile = 3;

} // namespace

void addVoiceMemos(BackupWriter &writer, const Options &options)
{
    if (options.voiceMemos == 0)
        return;
    const QString domain = u"MediaDomain"_s;
    const QString folder = u"Media/Recordings/"_s;
    // Two have the same title: the phone does not mind.
    const QStringList titles {
        u"Shanty"_s, u"Wind at the pier"_s, u"Shanty"_s, u"Ideas: boat / shed"_s, u"Bell buoy"_s
    };

    Random random(options.seed, "voice memos");
    const QString name = folder + (options.oldStyle ? "Recordings.db"_L1 : "CloudRecordings.db"_L1);
    Database database(writer.contentPath(domain, name), options.oldStyle ? kOldTables : kTables);
    Statement insert = database.prepare(
        options.oldStyle ? "INSERT INTO ZRECORDING VALUES (?,1,1,0,?,?,?,?)"
                         : "INSERT INTO ZCLOUDRECORDING VALUES (?,1,1,0,NULL,?,?,?,?,?,?,?,?,?)");
    for (int i = 0; i < options.voiceMemos; ++i) {
        FileTraits traits;
        traits.modified = sampleStart().addSecs(i * 86400 + random.below(36000));
        const int seconds = random.between(3, 8);
        const QString file = traits.modified.toString(u"yyyyMMdd HHmmss"_s) + ".m4a"_L1;
        writer.addFile(domain, folder + file, tuneFile(random, seconds, traits.modified), traits);

        const bool isLoneFile =
            options.voiceMemos >= kFewestForLoneFile && i == options.voiceMemos - 1;
        if (isLoneFile)
            continue;
        const QString title = i < titles.size() ? titles[i] : u"New Recording %1"_s.arg(i + 1);
        const double date = cocoaSeconds(traits.modified);
        if (options.oldStyle) {
            insert.run({ i + 1,
                         date,
                         static_cast<double>(seconds),
                         title,
                         "/var/mobile/Media/Recordings/"_L1 + file });
        } else {
            insert.run({ i + 1,
                         date,
                         static_cast<double>(seconds),
                         static_cast<double>(seconds),
                         i == kTrashed ? QVariant(date + 86400) : QVariant(),
                         traits.modified.toString(Qt::ISODate),
                         title,
                         title,
                         file,
                         random.uuid() });
        }
        if (i == 0)
            writer.addFile(
                domain, folder + file.chopped(4) + ".waveform"_L1, random.bytes(512), traits);
    }
    database.execute(
        options.oldStyle
            ? "INSERT INTO Z_PRIMARYKEY SELECT 1, 'Recording', 0, count(*) FROM ZRECORDING"
            : "INSERT INTO Z_PRIMARYKEY SELECT 1, 'CloudRecording', 0, count(*) FROM "
              "ZCLOUDRECORDING; INSERT INTO Z_PRIMARYKEY VALUES (2, 'Folder', 0, 0)");
    if (!database.finish())
        writer.fail(name, database.error());
    writer.addWritten(domain, name);
}

} // namespace Sample
