#include "PhoneBackup/messages/Reaction.h"

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

// Values of message.associated_message_type. Others, such as 2 and 3, occur on messages of apps
// and tell nothing.
constexpr qint64 kPutSticker = 1000;
constexpr qint64 kFirst = 2000; // in the order of Reaction::Kind
constexpr qint64 kLast = 2007;
constexpr qint64 kWithdrawn = 1000; // more than what is taken back
constexpr qint64 kVote = 4000;

} // namespace

// "p:1/<guid>" is about one part, "bp:<guid>" about a balloon; the GUID may stand alone.
QString Reaction::guidIn(const QString &name, int *part)
{
    if (name.startsWith("p:"_L1) && name.contains(u'/')) {
        const qsizetype slash = name.indexOf(u'/');
        if (part)
            *part = QStringView(name).sliced(2, slash - 2).toInt();
        return name.sliced(slash + 1);
    }
    return name.startsWith("bp:"_L1) ? name.sliced(3) : name;
}

std::optional<Reaction> Reaction::read(qint64 type, const QString &target)
{
    Reaction reaction;
    const bool isWithdrawn = type >= kFirst + kWithdrawn && type <= kLast + kWithdrawn;
    const qint64 given = isWithdrawn ? type - kWithdrawn : type;
    if (type == kPutSticker)
        reaction.kind = Kind::PutSticker;
    else if (type == kVote)
        reaction.kind = Kind::Vote;
    else if (given >= kFirst && given <= kLast)
        reaction.kind = Kind(given - kFirst);
    else
        return std::nullopt;
    reaction.isWithdrawn = isWithdrawn;
    reaction.targetGuid = guidIn(target, &reaction.part);
    return reaction;
}

} // namespace PhoneBackup
