#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/calls/Voicemail.h"
#include "PhoneBackup/source/PathParts.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneItems/calls/CallTable.h"
#include "PhoneItems/shared/FileData.h"
#include "platform/Translation_p.h"

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace Qt::StringLiterals;
using namespace PhoneBackup;

namespace {

// A greeting keeps the name of its file.
QString nameOf(Source &source, const Voicemail &voicemail)
{
    if (voicemail.row < 0)
        return {};
    QString caller = source.addressBook().name(voicemail.number());
    if (caller.isEmpty())
        caller = voicemail.number().isEmpty() ? tr("Unknown") : voicemail.number();
    const QString title = voicemail.date.isValid()
        ? voicemail.date.toLocalTime().toString(u"yyyy-MM-dd hh-mm "_s) + caller
        : caller;
    const QByteArrayView path = source.index().path(voicemail.file);
    return OutputNames::clean(title, PathParts::text(PathParts::extension(path)));
}

} // namespace

void readVoicemailFiles(Source &source, DataSets &sets)
{
    auto data = std::make_unique<FileData>(DataType::Voicemail, source.files());
    for (const Voicemail &voicemail : readVoicemail(source)) {
        if (voicemail.file == FileIndex::kNone)
            continue;
        FileEntry entry;
        entry.row = voicemail.file;
        entry.id = voicemail.row;
        entry.date = voicemail.date;
        entry.deleted = voicemail.isDeleted;
        entry.name = nameOf(source, voicemail);
        data->add(entry);
    }
    sets[DataType::Voicemail] = std::move(data);
}

} // namespace PhoneItems
