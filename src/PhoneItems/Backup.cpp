#include "PhoneItems/Backup.h"

#include "PhoneBackup/base/DataType.h"
#include "PhoneBackup/source/Source.h"
#include "PhoneBackup/source/StoredText.h"
#include "PhoneItems/DataTypes.h"
#include "PhoneItems/messages/MessageData.h"
#include "PhoneItems/whatsapp/WhatsappData.h"
#include "backup/BkDataType.h"
#include "platform/OutputNames.h"
#include "platform/Translation_p.h"

#include <QDir>

#include <algorithm>
#include <array>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

constexpr int kOwnerName = 0;
constexpr qsizetype kMaxOwnerCharacters = 100;

} // namespace

class Backup::Private
{
public:
    Private(std::unique_ptr<BackupFiles> files, const KeepGoing &keepGoing)
        : source(std::move(files), keepGoing)
    {
    }

    void describeFindings();
    void takeRemarks();

    mutable Source source;
    mutable DataSets sets; // after the source, whose files the sets borrow
};

void Backup::Private::describeFindings()
{
    for (const BackupFolder::Remark &remark : source.files().folder().remarks())
        source.addProblem({ DataType::WholeBackup, remark.source, remark.what, false });
    if (!source.files().folder().info().finished) {
        source.addProblem(
            { DataType::WholeBackup, u"Status.plist"_s, Notice("folder.interrupted"), false });
    }
    const BackupFolder &folder = source.files().folder();
    const QString index =
        folder.kind() == IndexKind::Database ? u"Manifest.db"_s : u"Manifest.mbdb"_s;
    const Manifest::Findings &findings = source.files().findings();
    if (!findings.damage.isEmpty()) {
        source.addProblem(
            { DataType::WholeBackup, index, findings.damage + Notice("folder.namesLost"), true });
    }
    if (findings.unnamed > 0) {
        source.addProblem({ DataType::WholeBackup,
                            index + ": fileID"_L1,
                            Notice("folder.damagedIds", { qint64(findings.unnamed) }),
                            false });
    }
    if (findings.unknownKind > 0) {
        source.addProblem({ DataType::WholeBackup,
                            index + ": flags"_L1,
                            Notice("folder.unknownKinds", { qint64(findings.unknownKind) }),
                            false });
    }
}

// In the order in which they came up, behind those that have been asked for before.
void Backup::Private::takeRemarks()
{
    const QList<BackupFiles::Remark> remarks = source.files().takeRemarks();
    for (const BackupFiles::Remark &remark : remarks)
        source.addProblem({ DataType::WholeBackup,
                            source.files().place(remark.row),
                            remark.what,
                            remark.loss,
                            false,
                            remark.fault,
                            remark.systemError });
}

Result<std::unique_ptr<Backup>>
Backup::open(const QString &path, const KeepGoing &keepGoing, const Password &password)
{
    Result<std::unique_ptr<BackupFiles>> files = BackupFiles::open(path, keepGoing, password);
    if (!files)
        return files.error();
    auto d = std::make_unique<Private>(files.take(), keepGoing);
    d->describeFindings();
    return std::unique_ptr<Backup>(new Backup(std::move(d)));
}

Backup::Backup(std::unique_ptr<Private> d)
    : m_d(std::move(d))
{
}

Backup::~Backup() = default;

const BackupInfo &Backup::info() const
{
    return m_d->source.files().folder().info();
}

QList<int> Backup::dataTypes()
{
    QList<int> codes;
    for (const DataSetReader &type : dataTypeTable())
        codes.append(type.code);
    return codes;
}

void Backup::setMessageFilter(const MessageFilter &filter)
{
    m_d->source.setMessageFilter(filter);
}

Source &Backup::source() const
{
    return m_d->source;
}

QList<Problem> Backup::problems() const
{
    m_d->takeRemarks();
    QList<Problem> problems = m_d->source.problems();
    for (Problem &problem : problems) {
        if (problem.isNameless)
            problem.source = tr("(no name)") + u' ' + problem.source;
    }
    return problems;
}

BkData *Backup::getBkData(int code) const
{
    const auto known = m_d->sets.find(code);
    if (known != m_d->sets.end())
        return known->second.get();
    for (const DataSetReader &type : dataTypeTable()) {
        if (type.code == code) {
            type.read(m_d->source, m_d->sets);
            return m_d->sets[code].get();
        }
    }
    return nullptr;
}

qint64 Backup::messageCount(int code) const
{
    const BkData *data = getBkData(code);
    if (const auto *messages = dynamic_cast<const MessageData *>(data))
        return messages->messageCount();
    if (const auto *chats = dynamic_cast<const WhatsappData *>(data))
        return chats->messageCount();
    return -1;
}

QString Backup::dataTypeName(int code) const
{
    const BkDataType *type = BkDataType::find(code);
    return type ? type->displayName() : QString();
}

QString Backup::backupProperty(int key) const
{
    if (key != kOwnerName)
        return {};
    const QString name = OutputNames::clean(info().displayName);
    return name.size() <= kMaxOwnerCharacters
        ? name
        : OutputNames::clean(StoredText::beginning(name, kMaxOwnerCharacters));
}

} // namespace PhoneItems
