#include "CaseItems.h"

#include "backup/BkData.h"
#include "backup/BkDataType.h"
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
#include "support/Files.h"
#include "table/BkSafariBookmarkItem.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

const QString kDeleted = u" [deleted]"_s;
constexpr int kFewestCells = 3; // what items without columns tell of themselves

// Characters that nobody sees in a line.
QString visible(QString line)
{
    static constexpr std::array<std::array<char16_t, 2>, 4> kSigns {
        { { 0xA0, u'␣' }, { 0x2067, u'⟪' }, { 0x2068, u'‹' }, { 0x2069, u'›' } }
    };
    for (const auto &[hidden, sign] : kSigns)
        line.replace(QChar(hidden), QChar(sign));
    return line;
}

QStringList contactLines(const BkContactPrivate *about)
{
    if (!about)
        return { QStringLiteral("not read") };
    QStringList lines;
    const auto add = [&lines](const char *field, const QString &text) {
        if (!text.isEmpty())
            lines.append(QLatin1String(field) + QLatin1String(": ") + text);
    };
    add("prefix", about->namePrefix());
    add("given", about->givenName());
    add("additional", about->additionalName());
    add("family", about->familyName());
    add("suffix", about->nameSuffix());
    add("given yomi", about->givenNameYomi());
    add("family yomi", about->familyNameYomi());
    add("nickname", about->nickname());
    add("title", about->jobTitle());
    add("department", about->department());
    add("organization", about->organization());
    add("birthday", about->birthday());
    add("notes", about->notes());
    for (const BkContactProperty *property : about->properties()) {
        QString line = QString::number(property->propType()) + QLatin1Char(' ')
            + property->propLabel() + QLatin1Char(':');
        const QMap<QString, QString> parts = property->propValueEntry();
        for (auto part = parts.cbegin(); part != parts.cend(); ++part)
            line += QLatin1Char(' ') + part.key() + QLatin1Char('=') + part.value();
        if (!property->propValue().isEmpty())
            line += QLatin1Char(' ') + property->propValue();
        lines.append(line);
    }
    return lines;
}

// "> " before the owner's, else "address: ", then "! " where it was not sent, "SMS " where it is
// one, the date, "subject / ", the text, "+text" and "{type name}" for each further part.
QStringList messageLines(const BkSMSChatGroup *group)
{
    if (!group)
        return { u"not read"_s };
    QStringList lines;
    for (const BkSMSChat *chat : group->chats()) {
        QString line = chat->isFromMe() ? u"> "_s : chat->addr() + u": "_s;
        if (!chat->isSentDone())
            line += u"! "_s;
        if (chat->isNormalSMS())
            line += u"SMS "_s;
        if (chat->msgDate().isValid())
            line += chat->msgDate().toUTC().toString(u"yyyy-MM-dd HH:mm:ss "_s);
        if (!chat->subject().isEmpty())
            line += chat->subject() + u" / "_s;
        line += chat->content();
        for (const BkSMSPiece *piece : chat->pieces()) {
            line += piece->pieceType() == "text/plain"_L1
                ? u'+' + QString::fromUtf8(piece->pieceData())
                : u"{%1 %2}"_s.arg(piece->pieceType(), piece->pieceLocation());
        }
        lines.append(line);
    }
    return lines;
}

// Its type, marks ("> " the owner's, "! " failed, "* " broadcast), "member: ", the text and
// "{content of its file}".
QStringList messageLines(const BkWhatsappChat *chat)
{
    if (!chat)
        return { u"not read"_s };
    QStringList lines;
    for (const BkWhatsappMsg *message : chat->messages()) {
        QString line = QString::number(message->type()) + u' ';
        if (message->isFromMe())
            line += u"> "_s;
        if (!message->isSentDone())
            line += u"! "_s;
        if (message->isBroadcast())
            line += u"* "_s;
        if (!message->member().isEmpty())
            line += message->member() + u": "_s;
        line += message->content();
        if (!message->media().isEmpty())
            line += u'{' + QString::fromUtf8(Files::read(message->media())) + u'}';
        lines.append(line);
    }
    return lines;
}

// What an item holds besides its cells, a line each.
QStringList detailsOf(const BkAbstractItem *item)
{
    if (const auto *contact = dynamic_cast<const BkContactItem *>(item))
        return contactLines(contact->detailContent());
    if (const auto *conversation = dynamic_cast<const BkSMSItem *>(item))
        return messageLines(conversation->detailContent());
    if (const auto *chat = dynamic_cast<const BkWhatsappItem *>(item))
        return messageLines(chat->detailContent());
    return {};
}

QStringList fileLines(const BkData &data)
{
    QStringList lines;
    for (const BkAbstractItem *item : data.recoverFileList()) {
        const BkAbstractItem *group = item->groupItem();
        lines.append((group ? group->value(0) + u'/' : QString()) + item->value(0)
                     + (item->flag(0) ? kDeleted : QString()));
    }
    return lines;
}

QStringList columnLines(const BkData &data)
{
    QStringList lines;
    for (int column = 0; column < data.column(); ++column)
        lines.append(data.columnName(column));
    for (const int row : data.recoverList())
        lines.append(QString::number(data.at(row, true)->id()));
    return lines;
}

QStringList rowLines(const BkData &data)
{
    QStringList lines;
    for (const int row : data.recoverList()) {
        const BkAbstractItem *item = data.at(row, true);
        QStringList cells;
        for (int column = 0; column < data.column(); ++column)
            cells.append(data.value(row, column));
        for (int i = 0; cells.size() < kFewestCells; ++i)
            cells.append(item->value(i));
        while (cells.size() > 1 && cells.last().isEmpty())
            cells.removeLast();
        if (const auto *link = dynamic_cast<const BkSafariBookmarkItem *>(item))
            cells.prepend(link->bookmarkGroup());
        lines.append(visible(cells.join(u'|')) + (item->flag(0) ? kDeleted : QString()));
        for (const QString &detail : detailsOf(item))
            lines.append(u"  "_s + visible(detail));
    }
    return lines;
}

} // namespace

QStringList itemsOf(PhoneItems::Backup &backup, const QString &what)
{
    const QString word = what.section(u' ', 0, 0);
    const auto type =
        std::find_if(BkDataType::all().begin(),
                     BkDataType::all().end(),
                     [&](const BkDataType &one) { return QLatin1StringView(one.word) == word; });
    if (type == BkDataType::all().end())
        return { u"no data type has this word"_s };
    const BkData *data = backup.getBkData(type->code);
    if (!data)
        return { u"not read"_s };
    const QString part = what.section(u' ', 1);
    return part == "files"_L1  ? fileLines(*data)
        : part == "columns"_L1 ? columnLines(*data)
                               : rowLines(*data);
}
