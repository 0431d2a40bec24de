#include "PhoneItems/words/Words.h"

#include "PhoneItems/words/RoomNotices.h"
#include "platform/CCommonUtils.h"
#include "platform/Translation_p.h"

#include <QHash>
#include <QStringList>

#include <array>

DATAEXPORT_USE_TR(DataExport);

namespace PhoneItems {

using PhoneBackup::Notice;

namespace {

const char *textOf(QByteArrayView code)
{
    static const QHash<QByteArrayView, const char *> texts = [] {
        QHash<QByteArrayView, const char *> all;
        for (const auto room : allNoticeWords()) {
            for (const NoticeWords &sentence : room)
                all.insert(sentence.code, sentence.text);
        }
        return all;
    }();
    return texts.value(code);
}

QString words(const Notice::Fact &fact)
{
    if (const auto *text = std::get_if<QString>(&fact.value))
        return *text;
    if (const auto *number = std::get_if<qint64>(&fact.value))
        return QString::number(*number);
    if (const auto *bytes = std::get_if<Notice::Bytes>(&fact.value))
        return CCommonUtils::fileSizeToString(bytes->count, 'f', 1);
    return PhoneItems::words(std::get<Notice>(fact.value));
}

// All places at once: a fact may hold what looks like a place.
QString filledIn(const QString &text, const std::vector<Notice::Fact> &facts)
{
    QString filled;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int place = text[i] == u'%' && i + 1 < text.size() ? text[i + 1].digitValue() : -1;
        if (place < 1 || std::size_t(place) > facts.size()) {
            filled += text[i];
            continue;
        }
        filled += words(facts[std::size_t(place) - 1]);
        ++i;
    }
    return filled;
}

} // namespace

std::span<const std::span<const NoticeWords>> allNoticeWords()
{
    // A line a room: adding one is all that a new room needs here.
    // clang-format off
    static const std::array kRooms {
        formatNotices(),
        folderNotices(),
        sourceNotices(),
        contactNotices(),
        callNotices(),
        mediaNotices(),
        notesNotices(),
        messageNotices(),
        plannerNotices(),
        safariNotices(),
        whatsappNotices(),
    };
    // clang-format on
    return kRooms;
}

QString words(const Notice &notice)
{
    QStringList sentences;
    for (const Notice::Sentence &sentence : notice.sentences()) {
        if (*sentence.code == '\0') {
            sentences += sentence.text;
        } else if (const char *text = textOf(sentence.code)) {
            sentences += filledIn(tr(text), sentence.facts);
        } else { // a reader that is newer than its words
            sentences += QString::fromLatin1(sentence.code);
        }
    }
    return sentences.join(u' ');
}

} // namespace PhoneItems
