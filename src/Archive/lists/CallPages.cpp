#include "Archive/lists/CallPages.h"

#include "Archive/html/Html.h"
#include "Archive/media/Site.h"
#include "PhoneBackup/base/PhoneTime.h"
#include "PhoneBackup/source/Call.h"

#include <QSet>

#include <algorithm>

namespace Archive {

using namespace Qt::StringLiterals;

namespace {

QString kindText(const PhoneBackup::Call &call)
{
    using Kind = PhoneBackup::Call::Kind;
    QString kind;
    if (call.app.startsWith("net.whatsapp."_L1, Qt::CaseInsensitive))
        kind = u"WhatsApp"_s;
    else if (call.kind == Kind::FaceTime)
        kind = u"FaceTime"_s;
    else if (call.kind == Kind::App)
        kind = call.app;
    if (call.isVideo)
        kind += kind.isEmpty() ? u"video"_s : u" video"_s;
    return kind;
}

QString directionText(const PhoneBackup::Call &call)
{
    switch (call.direction) {
    case PhoneBackup::Call::Direction::Outgoing:
        return u"Outgoing"_s;
    case PhoneBackup::Call::Direction::Incoming:
        return call.isMissed ? u"Missed"_s : u"Incoming"_s;
    case PhoneBackup::Call::Direction::Unknown:
        break;
    }
    return u"Call"_s;
}

} // namespace

CallPages::CallPages(Site &site, Persons &persons)
    : m_site(site)
    , m_persons(persons)
    , m_list(site, "calls", "call", "rows")
{
}

void CallPages::take(const PhoneBackup::Call &call)
{
    QStringList names = call.isOfLog ? call.names : QStringList();
    if (!call.isOfLog) {
        for (const QString &address : call.addresses)
            names.append(m_persons.name(address));
        if (names.isEmpty())
            names = call.names;
    }
    names.removeAll(QString());
    QString who = names.join(u", "_s);
    if (!call.group.isEmpty())
        who = who.isEmpty() ? call.group : u"%1 (%2)"_s.arg(call.group, who);
    if (who.isEmpty())
        who = call.addresses.isEmpty() ? u"Unknown"_s : call.addresses.join(u", "_s);
    const QString numbers = call.addresses.join(u", "_s);
    QStringList facts { directionText(call) };
    if (const QString kind = kindText(call); !kind.isEmpty())
        facts.append(kind);
    if (call.seconds && *call.seconds > 0)
        facts.append(lengthText(*call.seconds));
    if (!call.place.isEmpty())
        facts.append(call.place);

    Call &one = m_calls.emplace_back();
    Html html(one.entry.html);
    html << "<b dir=\"auto\"" << (call.isMissed ? " class=\"bad\">" : ">");
    html.text(who) << "</b><span class=\"when\">";
    html.text(m_site.clock.dayAndTime(call.date)) << "</span><span>";
    html.text(facts.join(u" · "_s)) << "</span>";
    if (numbers != who)
        html << "<small dir=\"auto\">", html.text(numbers) << "</small>";
    one.entry.date = call.date;
    one.entry.who = who;
    one.entry.text = numbers + u' ' + facts.join(u' ');
    one.entry.latest = who + u", "_s + m_site.clock.dayAndTime(call.date);
    one.addresses = call.addresses;
    m_missed += call.isMissed ? 1 : 0;
}

void CallPages::finish()
{
    std::stable_sort(m_calls.begin(), m_calls.end(), [](const Call &a, const Call &b) {
        return PhoneBackup::PhoneTime::isNewer(a.entry.date, b.entry.date);
    });
    QSet<QString> told;
    for (const Call &call : m_calls) {
        m_list.group(call.entry.date.isValid() ? monthText(call.entry.date.toLocalTime().date())
                                               : u"Without a date"_s);
        m_list.add(call.entry);
        for (const QString &address : call.addresses) {
            if (told.contains(address))
                continue;
            told.insert(address);
            m_persons.mention(
                address, { u"Last call"_s, u"calls/"_s + QString::fromLatin1(m_list.lastPlace()) });
        }
    }
    m_calls.clear();
    m_list.finish();
}

} // namespace Archive
