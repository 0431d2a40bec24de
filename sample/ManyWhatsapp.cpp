#include "sample/ManyWhatsapp.h"

#include "sample/People.h"
#include "sample/Random.h"
#include "sample/SmallTalk.h"
#include "sample/WhatsappDatabase.h"

#include <algorithm>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr int kGroupPercent = 20;
constexpr int kNoticeCode = 2;
constexpr int kNoticeType = 10;

QString jidOf(const Person &person, int index)
{
    return (person.number.isEmpty() ? u"120255502%1"_s.arg(index, 2, 10, QLatin1Char('0'))
                                    : person.number.sliced(1))
        + "@s.whatsapp.net"_L1;
}

struct Chat
{
    qint64 row = 0;
    QList<qint64> members; // of a group
};

} // namespace

void addManyWhatsapp(WhatsappDatabase &database, Random &random, int messages, int chats)
{
    QDateTime now(QDate(2016, 6, 1), QTime(6, 0), Qt::UTC);
    QList<Chat> all;
    for (int i = 0; i < std::clamp(chats, 1, messages); ++i) {
        Chat chat;
        const Person one = person(i);
        if (random.chance(kGroupPercent)) {
            chat.row = database.addChat(
                { u"%1@g.us"_s.arg(120363000000000000LL + i), u"Round table %1"_s.arg(i) });
            for (int member = random.between(2, 8); member > 0; --member) {
                const int index = random.below(i + 10);
                chat.members.append(database.addMember(chat.row, jidOf(person(index), index)));
            }
        } else {
            chat.row = database.addChat({ jidOf(one, i), one.first + u' ' + one.last });
        }
        all.append(chat);
    }
    SmallTalk talk(random);
    for (int left = messages, round = 0; left > 0; ++round) {
        const Chat &chat = round < all.size() ? all[round] : random.pick(all);
        const bool ownerBegins = random.chance(50);
        if (round < all.size()) {
            WhatsappRow notice;
            notice.chat = chat.row;
            notice.date = now;
            notice.type = kNoticeType;
            notice.eventCode = kNoticeCode;
            database.addMessage(notice);
            --left;
        }
        SpokenLine line;
        talk.begin();
        while (left > 0 && talk.next(line)) {
            WhatsappRow row;
            row.chat = chat.row;
            row.date = now;
            row.text = line.text;
            row.fromMe = line.first == ownerBegins;
            if (!row.fromMe && !chat.members.isEmpty())
                row.member = random.pick(chat.members);
            database.addMessage(row);
            --left;
            now = now.addSecs(random.between(1, 60));
        }
        now = now.addSecs(random.between(60, 120));
    }
}

} // namespace Sample
