#include "DamagedBackup.h"

#include "PhoneItems/Backup.h"
#include "backup/BkData.h"
#include "backup/BkFileItem.h"
#include "contact/BkContactItem.h"
#include "contact/BkContactPrivate.h"
#include "contact/BkContactProperty.h"
#include "message/BkSMSChat.h"
#include "message/BkSMSChatGroup.h"
#include "message/BkSMSItem.h"
#include "message/BkSMSPiece.h"
#include "message/BkWhatsappChat.h"
#include "message/BkWhatsappItem.h"
#include "message/BkWhatsappMsg.h"

#include <QDirIterator>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <set>

using namespace PhoneBackup;

namespace {

constexpr qsizetype kChangeBytes = 5;

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite) || file.write(bytes) != bytes.size() || !file.flush())
        std::abort();
}

int byteAt(const QByteArray &bytes, qsizetype index)
{
    return static_cast<unsigned char>(bytes.at(index));
}

void walk(BkSMSItem &item)
{
    const BkSMSChatGroup *group = item.detailContent();
    if (!group)
        return;
    group->addrIds();
    for (const BkSMSChat *chat : group->chats()) {
        chat->msgDate();
        chat->subject();
        chat->content();
        for (const BkSMSPiece *piece : chat->pieces())
            piece->pieceData();
    }
}

void walk(BkWhatsappItem &item)
{
    const BkWhatsappChat *chat = item.detailContent();
    if (!chat)
        return;
    for (const BkWhatsappMsg *message : chat->messages()) {
        message->msgDate();
        message->content();
        message->member();
        message->media();
    }
}

void walk(BkContactItem &item)
{
    const BkContactPrivate *contact = item.detailContent();
    if (!contact)
        return;
    contact->birthday();
    contact->notes();
    contact->photo();
    for (const BkContactProperty *property : contact->properties()) {
        property->propLabel();
        property->propValue();
        property->propValueEntry();
    }
}

void walk(BkAbstractItem *item)
{
    if (!item)
        return;
    for (int field = 0; field < 3; ++field)
        item->value(field);
    item->flag(0);
    item->date();
    item->sizeBytes();
    item->source();
    if (BkAbstractItem *group = item->groupItem())
        group->value(0);
    if (auto *messages = dynamic_cast<BkSMSItem *>(item))
        walk(*messages);
    else if (auto *chat = dynamic_cast<BkWhatsappItem *>(item))
        walk(*chat);
    else if (auto *contact = dynamic_cast<BkContactItem *>(item))
        walk(*contact);
    else if (auto *file = dynamic_cast<BkFileItem *>(item); file && file->fileData().isEmpty())
        file->filePath();
}

void walk(const BkData &data)
{
    const int count = data.count(1);
    for (int index = 0; index < count; ++index) {
        walk(data.at(index, true));
        for (int column = 0; column < data.column(); ++column)
            data.value(index, column);
    }
}

} // namespace

DamagedBackup::DamagedBackup(const QString &folder)
    : m_folder(folder)
{
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly) && file.peek(15) == "SQLite format 3")
            m_databases.append({ file.fileName(), file.readAll() });
    }
    std::sort(m_databases.begin(), m_databases.end(), [](const Database &a, const Database &b) {
        return a.path < b.path;
    });
    if (m_databases.isEmpty()) {
        std::fputs("The environment variable BACKUP names no backup.\n", stderr);
        std::exit(1); // NOLINT(concurrency-mt-unsafe): there is one thread
    }
}

void DamagedBackup::read(const QByteArray &changes) const
{
    QList<Database> changed = m_databases;
    std::set<qsizetype> touched;
    for (qsizetype at = 0; at + kChangeBytes <= changes.size(); at += kChangeBytes) {
        const qsizetype number = byteAt(changes, at) % changed.size();
        QByteArray &bytes = changed[number].bytes;
        const int offset =
            byteAt(changes, at + 1) << 16 | byteAt(changes, at + 2) << 8 | byteAt(changes, at + 3);
        bytes[offset % bytes.size()] = changes.at(at + 4);
        touched.insert(number);
    }
    for (const qsizetype number : touched)
        write(changed.at(number).path, changed.at(number).bytes);
    if (const auto backup = PhoneItems::Backup::open(m_folder)) {
        for (const int code : PhoneItems::Backup::dataTypes()) {
            if (const BkData *data = backup.value()->getBkData(code))
                walk(*data);
            backup.value()->messageCount(code);
        }
        backup.value()->problems();
    }
    for (const qsizetype number : touched)
        write(m_databases.at(number).path, m_databases.at(number).bytes);
}
