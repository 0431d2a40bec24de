#include "PhoneBackup/whatsapp/WhatsappEvent.h"

#include "PhoneBackup/source/StoredText.h"
#include "PhoneBackup/whatsapp/WhatsappNames.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

using Kind = WhatsappEvent::Kind;
using StoredEvent = std::pair<qint64, Kind>;

// ZGROUPEVENTTYPE of messages of type 6. Codes 2 and 12 were seen, those up to 7 are agreed on; the
// others have one description each.
constexpr std::array kGroupEvents {
    StoredEvent { 1, Kind::SubjectChanged },
    StoredEvent { 2, Kind::MembersAdded },
    StoredEvent { 3, Kind::MemberLeft },
    StoredEvent { 4, Kind::PictureChanged },
    StoredEvent { 5, Kind::PictureRemoved },
    StoredEvent { 7, Kind::MemberRemoved },
    StoredEvent { 9, Kind::NumberChanged },
    StoredEvent { 10, Kind::OwnerMadeAdmin },
    StoredEvent { 11, Kind::OwnerNoLongerAdmin },
    StoredEvent { 12, Kind::GroupCreated },
    StoredEvent { 14, Kind::OwnerRemoved },
    StoredEvent { 15, Kind::JoinedByLink },
    StoredEvent { 17, Kind::DescriptionChanged },
    StoredEvent { 18, Kind::EditingChanged },
    StoredEvent { 19, Kind::EditingChanged },
    StoredEvent { 20, Kind::SendingChanged },
    StoredEvent { 21, Kind::SendingChanged },
    StoredEvent { 22, Kind::DescriptionRemoved },
    StoredEvent { 23, Kind::JoinedByLink },
    StoredEvent { 26, Kind::TimerChanged },
    StoredEvent { 30, Kind::AddedToCommunity },
    StoredEvent { 31, Kind::AddedToCommunity },
    StoredEvent { 33, Kind::RemovedFromCommunity },
    StoredEvent { 50, Kind::MembersAdded },
    StoredEvent { 56, Kind::SubjectChanged }, // with data in place of the subject
    StoredEvent { 61, Kind::AddedToCommunity },
};

// The same column of messages of type 10. Code 2 is the first row of every chat; of the others
// missed calls and security codes are agreed on.
constexpr std::array kNotices {
    StoredEvent { 1, Kind::MissedVoiceCall },
    StoredEvent { 2, Kind::Encrypted },
    StoredEvent { 3, Kind::SecurityCodeChanged },
    StoredEvent { 4, Kind::MissedVideoCall },
    StoredEvent { 5, Kind::PhoneNumberChanged },
    StoredEvent { 6, Kind::PhoneNumberChanged },
    StoredEvent { 21, Kind::MissedVoiceCall },
    StoredEvent { 22, Kind::MissedVideoCall },
    StoredEvent { 25, Kind::BusinessNotice },
    StoredEvent { 26, Kind::BusinessNotice },
    StoredEvent { 29, Kind::BusinessNotice },
    StoredEvent { 30, Kind::BusinessNotice },
    StoredEvent { 34, Kind::Blocked },
    StoredEvent { 35, Kind::Unblocked },
    StoredEvent { 36, Kind::SecurityCodeChanged },
    StoredEvent { 38, Kind::BusinessNotice },
    StoredEvent { 40, Kind::GroupCallStarted },
    StoredEvent { 41, Kind::GroupCallStarted },
    StoredEvent { 45, Kind::MissedVoiceCall },
    StoredEvent { 46, Kind::MissedVideoCall },
};

Kind kindIn(std::span<const StoredEvent> events, qint64 code, Kind otherwise)
{
    const auto found = std::find_if(events.begin(), events.end(), [&](const StoredEvent &event) {
        return event.first == code;
    });
    return found != events.end() ? found->second : otherwise;
}

// Data, even when its end is missing; people's own words may begin with a bracket, too.
bool isJson(const QString &text)
{
    if (!text.startsWith(u'{') && !text.startsWith(u'['))
        return false;
    const QString start = text.left(32).remove(u' ').left(2);
    return start == "{\""_L1 || start == "[{"_L1 || start == "[\""_L1
        || !QJsonDocument::fromJson(text.toUtf8()).isNull();
}

// The new subject in the data that some versions store for a change of it.
QString newSubject(const QString &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json.toUtf8()).object();
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (it.key().contains("new"_L1, Qt::CaseInsensitive))
            return it.value().toString();
    }
    return {};
}

// Empty for what is data to the app.
QString readable(const QString &text)
{
    // A short word may be valid data by accident.
    constexpr qsizetype shortestData = 8;
    const QString trimmed = text.trimmed();
    if (isJson(trimmed)
        || (trimmed.size() >= shortestData && !trimmed.contains(u' ')
            && WhatsappNames::chosen(trimmed).isEmpty()))
        return {};
    return trimmed;
}

} // namespace

Kind whatsappGroupEvent(qint64 storedCode)
{
    return kindIn(kGroupEvents, storedCode, Kind::OtherInGroup);
}

Kind whatsappNotice(qint64 storedCode)
{
    return kindIn(kNotices, storedCode, Kind::OtherNotice);
}

void setEventText(WhatsappEvent &event, const QString &stored)
{
    const QString text = StoredText::cleaned(stored);
    event.text = readable(text);
    if (event.text.isEmpty() && event.kind == Kind::SubjectChanged)
        event.text = newSubject(text);
    else
        event.mentions = mentionsIn(event.text);
}

std::vector<WhatsappEvent::Mention> mentionsIn(const QString &text)
{
    std::vector<WhatsappEvent::Mention> mentions;
    if (!text.contains(u'@'))
        return mentions;
    static const QRegularExpression identifier(
        u"(?<![0-9A-Za-z._-])[0-9][0-9.:_-]*@(?:s\\.whatsapp\\.net|lid|g\\.us|broadcast|newsletter)"
        "(?![0-9A-Za-z_-]|\\.[0-9A-Za-z])"_s);
    auto matches = identifier.globalMatch(text);
    while (matches.hasNext()) {
        const auto match = matches.next();
        WhatsappEvent::Mention &mention = mentions.emplace_back();
        mention.at = match.capturedStart();
        mention.length = match.capturedLength();
        mention.person.jid = Jid(match.captured());
    }
    return mentions;
}

} // namespace PhoneBackup
