#include "contact/BkContactItem.h"
#include "contact/CContactHelper.h"
#include "contact/ContactTypes_p.h"
#include "contact/StandardCard_p.h"
#include "platform/CCommonUtils.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1String kLineEnd("\r\n");
constexpr qsizetype kPhotoCharsPerLine = 75; // and the blank that continues a line

// Readers would end a text at the first of these, or take the character behind it for another.
constexpr QLatin1StringView kSpecial = "\\;,"_L1;

bool isPlain(QStringView value)
{
    return std::all_of(value.begin(), value.end(), [](QChar c) { return c >= u' ' && c <= u'~'; })
        && !value.startsWith(u' ') && !value.endsWith(u' ');
}

// One line, however long: most readers do not join what soft line breaks part. In a value with
// parts (\a keepsParts) semicolons and backslashes are part of its syntax and stay.
QString quotedPrintable(QString value, bool keepsParts)
{
    value.replace("\r\n"_L1, "\n"_L1).replace(u'\r', u'\n').replace(u'\n', "\r\n"_L1);
    const QByteArray bytes = value.toUtf8();
    QString encoded;
    encoded.reserve(bytes.size());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const char c = bytes[i];
        const bool isEnd = i == 0 || i + 1 == bytes.size();
        const bool isShown = c > ' ' && c <= '~' && c != '=' && c != ','
            && (keepsParts || !kSpecial.contains(QLatin1Char(c)));
        if (isShown || (c == ' ' && !isEnd))
            encoded += QLatin1Char(c);
        else if (c != '\0') // ends the text for readers written in C
            encoded +=
                u'=' + QString::number(static_cast<uchar>(c), 16).rightJustified(2, u'0').toUpper();
    }
    return encoded;
}

// The parts of a value with semicolons between them; all of them, though empty.
QString inParts(const QStringList &parts)
{
    QStringList escaped;
    for (QString part : parts) {
        part.replace(u'\\', "\\\\"_L1).replace(u';', "\\;"_L1);
        // Some readers look at one character alone to tell an escaped semicolon.
        if (part.endsWith(u'\\'))
            part += u' ';
        escaped += part;
    }
    return escaped.join(u';');
}

bool isLabelled(const BkContactProperty &property, QLatin1StringView word)
{
    return property.propLabel().contains(word, Qt::CaseInsensitive);
}

// ";TYPE=HOME" or ";TYPE=WORK", as far as the label says so.
QString placeOf(const BkContactProperty &property)
{
    if (isLabelled(property, "work"_L1))
        return u";TYPE=WORK"_s;
    return isLabelled(property, "home"_L1) && property.propLabel() != CContactHelper::CATE_HOMEPAGE
        ? u";TYPE=HOME"_s
        : QString();
}

QString phoneTypes(const BkContactProperty &phone)
{
    QString types = placeOf(phone);
    if (isLabelled(phone, "fax"_L1))
        types += ";TYPE=FAX"_L1;
    if (isLabelled(phone, "pager"_L1))
        types += ";TYPE=PAGER"_L1;
    if (isLabelled(phone, "mobile"_L1) || isLabelled(phone, "iphone"_L1))
        types += ";TYPE=CELL"_L1;
    return types.isEmpty() ? u";TYPE=VOICE"_s : types;
}

QLatin1StringView photoType(const QByteArray &photo)
{
    if (photo.startsWith("\x89PNG"))
        return "PNG"_L1;
    return photo.startsWith("GIF8") ? "GIF"_L1 : "JPEG"_L1;
}

// A name for a property of our own; empty when nothing in \a service can stand in one.
QString propertyName(const QString &service)
{
    QString name;
    for (const QChar c : service.toUpper()) {
        if ((c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9'))
            name += c;
        else if ((c == u' ' || c == u'-') && !name.isEmpty())
            name += u'-';
    }
    return name;
}

class Writer
{
public:
    Writer(const BkContactItem &item, const BkContactPrivate &contact)
        : m_item(item)
        , m_contact(contact)
    {
    }

    QString write()
    {
        m_card = "BEGIN:VCARD\r\nVERSION:2.1\r\n"_L1;
        writeBasics();
        forEach(BkContactKind::Address, [this](const auto &address) { writeAddress(address); });
        forEach(BkContactKind::Phone, [this](const auto &phone) {
            writeText(u"TEL"_s + phoneTypes(phone), phone.propValue());
        });
        forEach(BkContactKind::Email, [this](const auto &email) {
            writeText(u"EMAIL;TYPE=INTERNET"_s, email.propValue());
        });
        writePhoto();
        forEach(BkContactKind::Url,
                [this](const auto &url) { writeText(u"URL"_s + placeOf(url), url.propValue()); });
        forEach(BkContactKind::InstantMessage,
                [this](const auto &account) { writeAccount(account); });
        m_card += "END:VCARD\r\n"_L1;
        return m_card;
    }

private:
    template <class Use>
    void forEach(int type, Use use)
    {
        forEachProperty(m_contact, type, use);
    }

    void writeBasics()
    {
        writeParts(u"N"_s,
                   { m_contact.familyName(),
                     m_contact.givenName(),
                     m_contact.additionalName(),
                     m_contact.namePrefix(),
                     m_contact.nameSuffix() });
        writeText(u"FN"_s, m_item.value(0));
        writeText(u"TITLE"_s, m_contact.jobTitle());
        if (!m_contact.department().isEmpty())
            writeParts(u"ORG"_s, { m_contact.organization(), m_contact.department() });
        else if (!m_contact.organization().isEmpty())
            writeParts(u"ORG"_s, { m_contact.organization() });
        writeText(u"NICKNAME"_s, m_contact.nickname());
        writeBirthday();
        writeText(u"NOTE"_s, m_contact.notes());
    }

    void writeBirthday()
    {
        if (m_contact.birthday().isEmpty())
            return;
        const QString day = CContactHelper::getDateDesc(
            CCommonUtils::buildDateTimeBase2001(m_contact.birthday().toDouble()), nullptr);
        constexpr qsizetype kDayWithoutYear = 5; // "MM-dd"
        writeText(u"BDAY"_s, day.size() == kDayWithoutYear ? "--"_L1 + day : day);
    }

    void writeAddress(const BkContactProperty &address)
    {
        const QMap<QString, QString> stored = address.propValueEntry();
        const QStringList parts { stored.value(CContactHelper::VALUE_KEY_STREET,
                                               address.propValue()),
                                  stored.value(CContactHelper::VALUE_KEY_CITY),
                                  stored.value(CContactHelper::VALUE_KEY_STATE),
                                  stored.value(CContactHelper::VALUE_KEY_ZIP),
                                  stored.value(CContactHelper::VALUE_KEY_COUNTRY) };
        // The post-office box and the extended address are never there.
        if (!parts.join(QString()).isEmpty())
            writeParts(u"ADR"_s + placeOf(address), QStringList { QString(), QString() } + parts);
    }

    void writePhoto()
    {
        const QByteArray photo = m_contact.photo();
        if (photo.isEmpty())
            return;
        m_card += "PHOTO;TYPE="_L1 + photoType(photo) + ";ENCODING=BASE64:"_L1 + kLineEnd;
        const QByteArray encoded = photo.toBase64();
        m_card.reserve(m_card.size() + encoded.size() + encoded.size() / 20);
        for (qsizetype i = 0; i < encoded.size(); i += kPhotoCharsPerLine) {
            const qsizetype length = std::min(kPhotoCharsPerLine, encoded.size() - i);
            m_card += u' ' + QLatin1StringView(encoded).sliced(i, length) + kLineEnd;
        }
        m_card += kLineEnd; // the empty line ends the picture
    }

    void writeAccount(const BkContactProperty &account)
    {
        const QMap<QString, QString> entry = account.propValueEntry();
        const QString user = entry.value(CContactHelper::VALUE_KEY_USER);
        if (user.isEmpty())
            return;
        const QString service = entry.value(CContactHelper::VALUE_KEY_SERVICE);
        const QString name = propertyName(service);
        if (!name.isEmpty())
            writeText("X-"_L1 + name, user);
        else
            writeText(u"X-IM"_s, service.isEmpty() ? user : u"%1 (%2)"_s.arg(user, service));
    }

    void writeText(const QString &name, const QString &value)
    {
        const bool isSimple =
            isPlain(value) && std::none_of(value.begin(), value.end(), [](QChar c) {
                return kSpecial.contains(c);
            });
        if (!value.isEmpty())
            writeLine(name, isSimple, isSimple ? value : quotedPrintable(value, false));
    }

    void writeParts(const QString &name, const QStringList &parts)
    {
        const QString value = inParts(parts);
        const bool isSimple = isPlain(value) && !value.contains(u',');
        writeLine(name, isSimple, isSimple ? value : quotedPrintable(value, true));
    }

    void writeLine(const QString &name, bool isSimple, const QString &encoded)
    {
        m_card += name + (isSimple ? ":"_L1 : ";CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:"_L1)
            + encoded + kLineEnd;
    }

    const BkContactItem &m_item;
    const BkContactPrivate &m_contact;
    QString m_card;
};

} // namespace

QString StandardCard::write(const BkContactItem &item, const BkContactPrivate &contact)
{
    return Writer(item, contact).write();
}
