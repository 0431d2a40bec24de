#include "Archive/people/PeoplePages.h"

#include "Archive/html/Html.h"
#include "Archive/media/Site.h"
#include "PhoneBackup/contacts/Contact.h"
#include "contact/BkContactKind.h"

namespace Archive {

using namespace PhoneBackup;
using namespace Qt::StringLiterals;

namespace {

constexpr int kYearOfNone = 1604; // of a day without a year

QString birthdayText(const QDate &day)
{
    return day.year() == kYearOfNone ? QLocale::c().toString(day, u"d MMMM"_s) : dayText(day);
}

// The phone's own labels are words in marks: "_$!<YoungerSister>!$_".
QString labelText(const QString &stored)
{
    if (!stored.startsWith("_$!<"_L1) || !stored.endsWith(">!$_"_L1))
        return stored;
    QString words;
    for (const QChar letter : stored.sliced(4).chopped(4)) {
        if (!words.isEmpty() && letter.isUpper() && words.back().isLower())
            words += u' ';
        words += letter;
    }
    return words.toLower();
}

QString valueText(const Contact::Value &value)
{
    if (value.day.isValid())
        return birthdayText(value.day);
    if (!value.text.isEmpty())
        return value.text;
    static const QStringList order { u"Street"_s,  u"ZIP"_s,     u"City"_s,     u"State"_s,
                                     u"Country"_s, u"service"_s, u"username"_s, u"url"_s };
    QStringList parts;
    for (const QString &key : order) {
        if (const QString part = value.parts.value(key); !part.isEmpty())
            parts.append(part);
    }
    return parts.join(u", "_s);
}

void putValue(Html &html, const QString &label, int kind, const QString &text)
{
    if (text.isEmpty())
        return;
    html << "<div><dt dir=\"auto\">";
    html.text(label) << "</dt><dd dir=\"auto\">";
    if (kind == BkContactKind::Phone) {
        QString digits;
        for (const QChar c : text) {
            if (c.isDigit() || c == u'+')
                digits += c;
        }
        html.external(u"tel:"_s + digits, text);
    } else if (kind == BkContactKind::Email) {
        html.external(u"mailto:"_s + text, text);
    } else {
        html.linkedText(text);
    }
    html << "</dd></div>";
}

QString letterOf(const QString &name)
{
    const QString letter = name.trimmed().first(std::min<qsizetype>(1, name.trimmed().size()));
    return letter.isEmpty() || !letter.front().isLetter()
        ? u"#"_s
        : letter.normalized(QString::NormalizationForm_D).first(1).toUpper();
}

} // namespace

PeoplePages::PeoplePages(Site &site, Persons &persons)
    : m_persons(persons)
    , m_list(site, "people", "person", "cards people")
{
}

void PeoplePages::take(const Person &person)
{
    const Contact &contact = person.contact;
    const QString name = person.name.isEmpty() ? u"No name"_s : person.name;
    const QString sorted = contact.name.family.isEmpty() ? name : contact.name.family;
    m_list.group(letterOf(sorted));
    Listing::Entry entry;
    Html html(entry.html);
    m_list.media().putAvatar(html, m_persons.avatar(person.number), name);
    html << "<b dir=\"auto\">";
    html.text(name) << "</b>";
    QStringList work;
    for (const QString &part : { contact.jobTitle, contact.department, contact.organization }) {
        if (!part.isEmpty() && part != name)
            work.append(part);
    }
    if (!work.isEmpty())
        html << "<span dir=\"auto\">", html.text(work.join(u", "_s)) << "</span>";
    html << "<dl>";
    putValue(html, u"nickname"_s, 0, contact.nickname);
    QStringList found { contact.nickname, work.join(u' '), contact.note };
    for (const Contact::Value &value : contact.values) {
        if (value.kind == BkContactKind::Sound)
            continue;
        const QString text = valueText(value);
        putValue(html, labelText(value.label), value.kind, text);
        found.append(text);
    }
    if (contact.birthday.isValid())
        putValue(html, u"birthday"_s, 0, birthdayText(contact.birthday));
    putValue(html, u"note"_s, 0, contact.note);
    putValue(html, u"groups"_s, 0, contact.groups.join(u", "_s));
    html << "</dl>";
    const QList<Persons::Mention> mentions = m_persons.mentions(person.number);
    if (!mentions.isEmpty()) {
        html << "<p class=\"acts\">";
        for (const Persons::Mention &mention : mentions) {
            html << "<a class=\"btn\" dir=\"auto\"";
            html.link("href", "../", mention.path) << '>';
            html.text(mention.title) << "</a>";
        }
        html << "</p>";
    }
    entry.who = name;
    entry.text = found.join(u' ').simplified();
    entry.latest = name;
    m_list.add(entry);
}

} // namespace Archive
