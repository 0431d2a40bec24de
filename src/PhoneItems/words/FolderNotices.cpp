#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "folder.none", QT_TRANSLATE_NOOP("DataExport", "There is no folder “%1”.") },
    { "folder.isFile",
      QT_TRANSLATE_NOOP(
          "DataExport",
          "“%1” is a file. A phone backup is a folder: name the one that holds “Manifest.db”.") },
    { "folder.isLink",
      QT_TRANSLATE_NOOP(
          "DataExport",
          "“%1” is a link. Links in a backup are not followed: put the file itself there.") },
    { "folder.notABackup",
      QT_TRANSLATE_NOOP(
          "DataExport",
          "“%1” is not a phone backup: it holds no “Manifest.db” beside a “Manifest.plist”.") },
    { "folder.noBackupAt",
      QT_TRANSLATE_NOOP("DataExport",
                        "There is no phone backup at “%1”: neither it nor a folder in it holds a "
                        "“Manifest.db” beside a “Manifest.plist”.") },
    { "folder.tooOld",
      QT_TRANSLATE_NOOP(
          "DataExport",
          "“%1” is a backup of system version 3 or 4, which is too old to be read.") },
    { "folder.noDictionary",
      QT_TRANSLATE_NOOP("DataExport", "“%1” is damaged: it is not a dictionary.") },
    { "folder.encryptionUnknown",
      QT_TRANSLATE_NOOP("DataExport", "Whether the backup is encrypted is not known.") },
    { "folder.deviceUnknown",
      QT_TRANSLATE_NOOP("DataExport", "The device's name and system may not be known.") },
    { "folder.completionUnknown",
      QT_TRANSLATE_NOOP("DataExport", "Whether the backup was completed is not known.") },
    { "folder.takenForEncrypted",
      QT_TRANSLATE_NOOP("DataExport",
                        "“Manifest.plist” does not say clearly whether the backup is encrypted. It "
                        "holds a key for the index, and so the backup is taken for encrypted.") },
    { "folder.takenForPlain",
      QT_TRANSLATE_NOOP(
          "DataExport",
          "“Manifest.plist” does not say clearly whether the backup is encrypted. It holds no key "
          "for the index, and so the backup is taken for a plain one.") },
    { "folder.encrypted",
      QT_TRANSLATE_NOOP("DataExport", "The backup “%1” is encrypted: its password is needed.") },
    { "folder.noIndex",
      QT_TRANSLATE_NOOP("DataExport",
                        "The backup “%1” has no index: “Manifest.db” is missing. Copy the whole "
                        "backup folder again from where it was made.") },
    { "folder.indexUnreadable",
      QT_TRANSLATE_NOOP("DataExport", "The index “%1” could not be read: %2.") },
    { "folder.indexTooLarge", QT_TRANSLATE_NOOP("DataExport", "it is too large") },
    { "folder.indexDamaged",
      QT_TRANSLATE_NOOP("DataExport", "The index “Manifest.db” is damaged.") },
    { "folder.indexDamagedBy",
      QT_TRANSLATE_NOOP("DataExport", "The index “Manifest.db” is damaged: %1.") },
    { "folder.pagesMixedUp", QT_TRANSLATE_NOOP("DataExport", "its pages are mixed up") },
    { "folder.indexEncrypted",
      QT_TRANSLATE_NOOP("DataExport", "The index “Manifest.db” is encrypted and cannot be read.") },
    { "folder.notDecrypted", QT_TRANSLATE_NOOP("DataExport", "It is damaged.") },
    { "folder.orEncrypted",
      QT_TRANSLATE_NOOP("DataExport",
                        "Or it is encrypted: “Manifest.plist” cannot be read to tell.") },
    { "folder.noRecords",
      QT_TRANSLATE_NOOP("DataExport",
                        "The index “Manifest.mbdb” is damaged: it does not begin as one.") },
    { "folder.recordsUnreadable",
      QT_TRANSLATE_NOOP("DataExport", "Entries of the index “Manifest.mbdb” cannot be read.") },
    { "folder.recordsCutOff",
      QT_TRANSLATE_NOOP("DataExport",
                        "The index “Manifest.mbdb” ends in the middle of an entry.") },
    { "folder.noFile", QT_TRANSLATE_NOOP("DataExport", "The backup has no “%1”.") },
    { "folder.fileMissing", QT_TRANSLATE_NOOP("DataExport", "Its file is missing.") },
    { "folder.fileUnreadable", QT_TRANSLATE_NOOP("DataExport", "Its file could not be read: %1.") },
    { "folder.recordDamaged",
      QT_TRANSLATE_NOOP("DataExport",
                        "It cannot be decrypted: what the index records of it is damaged.") },
    { "folder.noKey",
      QT_TRANSLATE_NOOP("DataExport", "It has no key, and so was taken as it is.") },
    { "folder.cutOff",
      QT_TRANSLATE_NOOP("DataExport",
                        "It is cut off: the index records %1 bytes, the backup holds %2.") },
    { "folder.restWasTaken", QT_TRANSLATE_NOOP("DataExport", "What there is of it was taken.") },
    { "folder.tooLargeForPage",
      QT_TRANSLATE_NOOP("DataExport", "It is too large to be shown in a page.") },
    { "folder.databaseMissing",
      QT_TRANSLATE_NOOP("DataExport", "The file of the database “%1” is missing.") },
    { "folder.databaseEmpty",
      QT_TRANSLATE_NOOP("DataExport", "The file of the database “%1” is empty.") },
    { "folder.databaseUnreadable",
      QT_TRANSLATE_NOOP("DataExport", "The database “%1” cannot be read. %2") },
    { "folder.changesMissing",
      QT_TRANSLATE_NOOP(
          "DataExport",
          "The file of “%1” is missing, which held the newest changes of the database.") },
};

} // namespace

std::span<const NoticeWords> folderNotices()
{
    return kNotices;
}

} // namespace PhoneItems
