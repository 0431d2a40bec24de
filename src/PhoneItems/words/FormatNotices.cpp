#include "PhoneItems/words/RoomNotices.h"

#include <QtGlobal>

namespace PhoneItems {

namespace {

constexpr NoticeWords kNotices[] = {
    { "base.stopped", QT_TRANSLATE_NOOP("DataExport", "Stopped on request.") },
    { "base.unreadable", QT_TRANSLATE_NOOP("DataExport", "“%1” could not be read: %2.") },
    { "base.notRegular", QT_TRANSLATE_NOOP("DataExport", "it is not a regular file") },
    { "temporary.notMade",
      QT_TRANSLATE_NOOP("DataExport",
                        "No temporary folder could be created in “%1”: %2. Set the environment "
                        "variable TMPDIR to a folder with free space.") },
    { "temporary.inBackup", QT_TRANSLATE_NOOP("DataExport", "it is inside the backup") },
    { "temporary.notLocked", QT_TRANSLATE_NOOP("DataExport", "it cannot be locked") },
    { "temporary.tooSmall",
      QT_TRANSLATE_NOOP("DataExport",
                        "There is not enough space in the temporary folder “%1”: %2 needed, %3 "
                        "free. Set the environment variable TMPDIR to a folder with more space.") },
    { "temporary.notWritten",
      QT_TRANSLATE_NOOP("DataExport",
                        "The temporary folder “%1” could not be written to: %2. Set the "
                        "environment variable TMPDIR to a folder with free space.") },
    { "base.missing", QT_TRANSLATE_NOOP("DataExport", "“%1” is missing.") },
    { "base.copyAgain",
      QT_TRANSLATE_NOOP("DataExport",
                        "Copy the backup again from its original location, or make a new one.") },
    { "sqlite.stopped", QT_TRANSLATE_NOOP("DataExport", "reading was stopped on request") },
    { "sqlite.circles", QT_TRANSLATE_NOOP("DataExport", "its pages form an endless loop") },
    { "sqlite.changesDamaged",
      QT_TRANSLATE_NOOP("DataExport",
                        "The newest changes to “%1” are damaged and could not be read.") },
    { "sqlite.tablesNotListed",
      QT_TRANSLATE_NOOP("DataExport",
                        "The database “%1” is damaged: its tables cannot be listed.") },
    { "sqlite.notOpened",
      QT_TRANSLATE_NOOP("DataExport",
                        "The database “%1” could not be opened: %2. Check that you have permission "
                        "to read it.") },
    { "sqlite.damaged", QT_TRANSLATE_NOOP("DataExport", "The database “%1” is damaged: %2.") },
    { "sqlite.notAsked",
      QT_TRANSLATE_NOOP("DataExport", "The database “%1” could not be queried: %2.") },
    { "plist.tooLarge", QT_TRANSLATE_NOOP("DataExport", "“%1” is too large for a property list.") },
    { "plist.damaged",
      QT_TRANSLATE_NOOP("DataExport", "“%1” is damaged: it is not a property list.") },
    { "crypto.keyDamaged",
      QT_TRANSLATE_NOOP("DataExport", "It cannot be decrypted: its key is damaged.") },
    { "crypto.locked",
      QT_TRANSLATE_NOOP("DataExport",
                        "It is locked: the backup holds no key for its protection class %1.") },
    { "crypto.cutOff", QT_TRANSLATE_NOOP("DataExport", "It is cut off in the middle.") },
    { "crypto.endDamaged",
      QT_TRANSLATE_NOOP("DataExport",
                        "Its end is damaged or cut off: the padding of the last block is wrong.") },
    { "crypto.keybagCutOff",
      QT_TRANSLATE_NOOP("DataExport",
                        "The keybag in “Manifest.plist”, which is needed to decrypt anything in "
                        "the backup, is cut off: %1.") },
    { "crypto.keybagDamaged",
      QT_TRANSLATE_NOOP("DataExport",
                        "The keybag in “Manifest.plist”, which is needed to decrypt anything in "
                        "the backup, is damaged: %1.") },
    { "crypto.noKey", QT_TRANSLATE_NOOP("DataExport", "it contains no key") },
    { "crypto.noDerivation",
      QT_TRANSLATE_NOOP("DataExport", "it does not say how to derive keys from the password") },
    { "crypto.rounds",
      QT_TRANSLATE_NOOP(
          "DataExport",
          "it asks for %1 rounds of key derivation, but only 1 to %2 are supported") },
    { "crypto.wrongPassword", QT_TRANSLATE_NOOP("DataExport", "Wrong password.") },
    { "crypto.keysCutOff",
      QT_TRANSLATE_NOOP(
          "DataExport",
          "The keybag is cut off: files whose keys came after that point cannot be decrypted.") },
};

} // namespace

std::span<const NoticeWords> formatNotices()
{
    return kNotices;
}

} // namespace PhoneItems
