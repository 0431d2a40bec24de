#ifndef PHONEBACKUP_SOURCE_JID_H
#define PHONEBACKUP_SOURCE_JID_H

#include <QString>

namespace PhoneBackup {

//! An identifier of WhatsApp: a person, a group or something else that can be written to.
class Jid
{
public:
    enum class Kind {
        None, //!< Empty.
        Person, //!< By phone number.
        PrivateId, //!< A person by digits that are no phone number.
        App, //!< WhatsApp itself.
        Group,
        List, //!< All people of a broadcast list.
        Status, //!< Status posts, which are no conversation.
        Other, //!< A channel, or something that is not known yet.
    };

    Jid() = default;
    explicit Jid(const QString &text);

    Kind kind() const { return m_kind; }

    //! Whether it stands for one person, under whichever identifier.
    bool isPerson() const { return m_kind == Kind::Person || m_kind == Kind::PrivateId; }

    //! What stands before the "@", without the number of a device.
    const QString &user() const { return m_user; }

    //! "+" and the digits of a person's number, else empty.
    QString number() const;

    //! The whole without the number of a device: equal for the same person.
    const QString &key() const { return m_key; }

private:
    Kind m_kind = Kind::None;
    QString m_user;
    QString m_key;
};

} // namespace PhoneBackup

#endif
