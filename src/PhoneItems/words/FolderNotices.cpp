#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "folder.none", QT_TRANSLATE_NOOP("DataExport", "The folder “%1” does not exist.") },
    { "folder.isFile",
      QT_TRANSLATE_NOOP("DataExport",
                        "“%1” is a file, but a phone backup is a folder. Specify the folder that "
                        "contains “Manifest.db”.") },
    { "folder.isLink",
      QT_TRANSLATE_NOOP("DataExport",
                        "“%1” is a symbolic link. Links inside a backup are not followed; replace "
                        "the link with the file itself.") },
    { "folder.notABackup",
      QT_TRANSLATE_NOOP("DataExport",
                        "“%1” is not a phone backup: it does not contain both “Manifest.db” and "
                        "“Manifest.plist”.") },
    { "folder.noBackupAt",
      QT_TRANSLATE_NOOP("DataExport",
                        "No phone backup was found at “%1”: neither this folder nor a folder in it "
                        "contains both “Manifest.db” and “Manifest.plist”.") },
    { "folder.tooOld",
      QT_TRANSLATE_NOOP("DataExport",
                        "“%1” was made by system version 3 or 4, which is too old to be read.") },
    { "folder.noDictionary",
      QT_TRANSLATE_NOOP("DataExport", "“%1” is damaged: it is not a dictionary.") },
    { "folder.encryptionUnknown",
      QT_TRANSLATE_NOOP("DataExport", "It is not known whether the backup is encrypted.") },
    { "folder.deviceUnknown",
      QT_TRANSLATE_NOOP("DataExport", "The device's name and system version may be missing.") },
    { "folder.completionUnknown",
      QT_TRANSLATE_NOOP("DataExport", "It is not known whether the backup was completed.") },
    { "folder.takenForEncrypted",
      QT_TRANSLATE_NOOP("DataExport",
                        "“Manifest.plist” does not clearly say whether the backup is encrypted. It "
                        "contains a key for the index, so the backup is treated as encrypted.") },
    { "folder.takenForPlain",
      QT_TRANSLATE_NOOP(
          "DataExport",
          "“Manifest.plist” does not clearly say whether the backup is encrypted. It contains no "
          "key for the index, so the backup is treated as not encrypted.") },
    { "folder.encrypted",
      QT_TRANSLATE_NOOP("DataExport",
                        "The backup “%1” is encrypted, and its password is needed.") },
    { "folder.noIndex",
      QT_TRANSLATE_NOOP("DataExport",
                        "The backup “%1” has no index: “Manifest.db” is missing. Copy the whole "
                        "backup folder again from its original location.") },
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
                        "Or it is encrypted; “Manifest.plist” could not be read to find out.") },
    { "folder.noRecords",
      QT_TRANSLATE_NOOP("DataExport",
                        "The index “Manifest.mbdb” is damaged: its header is wrong.") },
    { "folder.recordsUnreadable",
      QT_TRANSLATE_NOOP("DataExport", "Entries of the index “Manifest.mbdb” cannot be read.") },
    { "folder.recordsCutOff",
      QT_TRANSLATE_NOOP("DataExport",
                        "The index “Manifest.mbdb” ends in the middle of an entry.") },
    { "folder.interrupted",
      QT_TRANSLATE_NOOP("DataExport",
                        "The backup was interrupted before it was complete: files may be missing "
                        "or older than the rest. Make a new backup if you can.") },
    { "folder.namesLost",
      QT_TRANSLATE_NOOP("DataExport",
                        "Files that the index no longer names cannot be exported. Copy the backup "
                        "again from where it was made.") },
    { "folder.damagedIds",
      QT_TRANSLATE_NOOP("DataExport",
                        "%1 entries of the index have a damaged identifier; their files are looked "
                        "for under the one that belongs to their path.") },
    { "folder.unknownKinds",
      QT_TRANSLATE_NOOP("DataExport",
                        "%1 entries of the index are neither file nor folder nor link and are left "
                        "out.") },
    { "folder.noFile", QT_TRANSLATE_NOOP("DataExport", "The backup has no “%1”.") },
    { "folder.fileMissing", QT_TRANSLATE_NOOP("DataExport", "Its file is missing.") },
    { "folder.fileUnreadable", QT_TRANSLATE_NOOP("DataExport", "Its file could not be read: %1.") },
    { "folder.recordDamaged",
      QT_TRANSLATE_NOOP("DataExport",
                        "It cannot be decrypted: its entry in the index is damaged.") },
    { "folder.noKey",
      QT_TRANSLATE_NOOP("DataExport", "It has no key, so it was used without decryption.") },
    { "folder.cutOff",
      QT_TRANSLATE_NOOP("DataExport",
                        "It is cut off: it should have %1 bytes, but the backup holds %2.") },
    { "folder.restWasTaken", QT_TRANSLATE_NOOP("DataExport", "The rest of it was used.") },
    { "folder.tooLargeForPage",
      QT_TRANSLATE_NOOP("DataExport", "It is too large to be shown on a page.") },
    { "folder.databaseMissing",
      QT_TRANSLATE_NOOP("DataExport", "The database file “%1” is missing.") },
    { "folder.databaseEmpty", QT_TRANSLATE_NOOP("DataExport", "The database file “%1” is empty.") },
    { "folder.databaseUnreadable",
      QT_TRANSLATE_NOOP("DataExport", "The database “%1” cannot be read. %2") },
    { "folder.changesMissing",
      QT_TRANSLATE_NOOP("DataExport",
                        "“%1” is missing. It held the newest changes to the database.") },
};

} // namespace

std::span<const NoticeWords> folderNotices()
{
    return kNotices;
}

} // namespace PhoneItems
