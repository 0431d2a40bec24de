#include "PhoneBackup/source/Jid.h"

#include <QRegularExpression>

#include <algorithm>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

Jid::Jid(const QString &text)
{
    const QString whole = text.trimmed();
    if (whole.isEmpty())
        return;
    const qsizetype at = whole.lastIndexOf(u'@');
    m_user = at < 0 ? whole : whole.first(at);
    const QString server = at < 0 ? QString() : whole.sliced(at + 1).toLower();
    m_kind = Kind::Other;
    if (server == "s.whatsapp.net"_L1 || server == "lid"_L1) {
        static const QRegularExpression device(u"[.:]"_s);
        m_user = m_user.section(device, 0, 0);
        m_kind = server == "lid"_L1 ? Kind::PrivateId : m_user == "0"_L1 ? Kind::App : Kind::Person;
    } else if (server == "g.us"_L1) {
        m_kind = Kind::Group;
    } else if (server == "broadcast"_L1) {
        m_kind = m_user == "status"_L1 ? Kind::Status : Kind::List;
    } else if (server == "status"_L1 || server == "lid.status"_L1) {
        m_kind = Kind::Status;
    }
    m_key = at < 0 ? m_user : m_user + u'@' + server;
}

QString Jid::number() const
{
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    if (m_kind != Kind::Person || m_user.isEmpty()
        || !std::all_of(m_user.cbegin(), m_user.cend(), isDigit))
        return {};
    return u'+' + m_user;
}

} // namespace PhoneBackup
