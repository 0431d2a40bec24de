#include "PhoneBackup/messages/Balloon.h"

#include "PhoneBackup/plist/KeyedArchive.h"
#include "PhoneBackup/source/StoredText.h"

#include <QUrl>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestText = 4096;

QString textOf(const QVariant &value)
{
    return value.typeId() == QMetaType::QUrl ? value.toUrl().toString(QUrl::FullyEncoded)
                                             : value.toString();
}

QString text(const QVariantMap &map, const QString &key)
{
    return textOf(map.value(key)).left(kLongestText).trimmed();
}

QString line(const QVariantMap &map, const QString &key)
{
    return StoredText::cleaned(text(map, key)).simplified();
}

// \a object with its values as they are stored; those of a dictionary, which is an object itself,
// are decoded.
QVariantMap members(const KeyedArchive &archive, const QVariant &object)
{
    const QVariantMap stored = archive.resolve(object).toMap();
    return stored.contains(u"NS.keys"_s) ? archive.decode(QVariant(stored)).toMap() : stored;
}

// The values of \a keys in \a object. An object may hold pictures besides: they cost time.
QVariantMap values(const KeyedArchive &archive, const QVariantMap &object, const QStringList &keys)
{
    QVariantMap result;
    for (const QString &key : keys) {
        if (object.contains(key))
            result.insert(key, archive.decode(object.value(key)));
    }
    return result;
}

// The place and the picture, objects in the object of the \a page; a picture's bytes are left
// alone.
void readPlaceAndPicture(Balloon &balloon, const KeyedArchive &archive, const QVariantMap &page)
{
    const QVariantMap map = values(
        archive, members(archive, page.value(u"specialization2"_s)), { u"name"_s, u"address"_s });
    QStringList lines;
    for (const QString &key : { u"name"_s, u"address"_s }) {
        const QString part = line(map, key);
        if (!part.isEmpty())
            lines.append(part);
    }
    balloon.place = lines.join(u'\n');
    const QString number = u"richLinkImageAttachmentSubstituteIndex"_s;
    const QVariantMap picture =
        values(archive, members(archive, page.value(u"image"_s)), { number });
    balloon.picture = picture.value(number, Balloon::kNoPicture).toInt();
}

void readLink(Balloon &balloon, const KeyedArchive &archive)
{
    const QVariantMap root = members(archive, QVariant(archive.root()));
    // The key depends on whether the link was typed or shared from another app.
    const QVariant metadata = root.value(u"richLinkMetadata"_s, root.value(u"metadata"_s));
    const QStringList addresses { u"originalURL"_s, u"URL"_s }; // as it was sent goes first
    const QVariantMap stored = members(archive, metadata);
    const QVariantMap page = values(
        archive, stored, QStringList { u"title"_s, u"summary"_s, u"siteName"_s } + addresses);
    for (const QVariantMap &map : { page, values(archive, root, addresses) }) {
        for (const QString &key : addresses) {
            if (balloon.address.isEmpty())
                balloon.address = text(map, key);
        }
    }
    balloon.summary = line(page, u"summary"_s);
    balloon.site = line(page, u"siteName"_s);
    readPlaceAndPicture(balloon, archive, stored);
    const QString title = line(page, u"title"_s);
    if (title != balloon.address)
        balloon.title = title;
}

void readApp(Balloon &balloon, const KeyedArchive &archive)
{
    const QVariantMap root = values(archive,
                                    members(archive, QVariant(archive.root())),
                                    { u"an"_s, u"ldtext"_s, u"userInfo"_s, u"URL"_s });
    balloon.app = line(root, u"an"_s);
    balloon.address = textOf(root.value(u"URL"_s)).trimmed();
    const QVariantMap info = root.value(u"userInfo"_s).toMap();
    for (const QString &key : { u"caption"_s,
                                u"subcaption"_s,
                                u"secondary-subcaption"_s,
                                u"tertiary-subcaption"_s,
                                u"image-title"_s,
                                u"image-subtitle"_s }) {
        const QString caption = line(info, key);
        if (!caption.isEmpty() && !balloon.captions.contains(caption))
            balloon.captions.append(caption);
    }
    const QString spoken = line(root, u"ldtext"_s);
    if (balloon.captions.isEmpty() && !spoken.isEmpty())
        balloon.captions.append(spoken);
}

Balloon::Kind kindOf(const QString &bundleId)
{
    if (bundleId.isEmpty() || bundleId.contains("URLBalloonProvider"_L1))
        return Balloon::Kind::Link;
    if (bundleId.contains("Handwriting"_L1))
        return Balloon::Kind::Handwriting;
    if (bundleId.contains("DigitalTouch"_L1))
        return Balloon::Kind::DigitalTouch;
    if (bundleId.contains("PeerPayment"_L1))
        return Balloon::Kind::Payment;
    return bundleId.contains("com.apple.messages.Polls"_L1) ? Balloon::Kind::Poll
                                                            : Balloon::Kind::App;
}

} // namespace

Balloon Balloon::read(const QString &bundleId, const QByteArray &payload)
{
    Balloon balloon;
    balloon.kind = kindOf(bundleId);
    balloon.bundleId = bundleId;
    if (balloon.kind == Kind::Handwriting || balloon.kind == Kind::DigitalTouch)
        return balloon;
    const KeyedArchive archive(payload);
    if (balloon.kind == Kind::Link)
        readLink(balloon, archive);
    else
        readApp(balloon, archive);
    if (balloon.kind == Kind::Poll)
        balloon.poll = PhoneBackup::Poll::read(balloon.address);
    return balloon;
}

} // namespace PhoneBackup
