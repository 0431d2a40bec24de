#include "model/Balloon.h"

#include "platform/Translation_p.h"
#include "plist/KeyedArchive.h"

#include <QStringList>
#include <QUrl>

namespace PhoneBackup {

using namespace Qt::StringLiterals;
using DataExport::tr;

namespace {

constexpr qsizetype kLongestLink = 4096;

QString text(const QVariantMap &map, const QString &key)
{
    const QVariant value = map.value(key);
    const QString text = value.typeId() == QMetaType::QUrl
        ? value.toUrl().toString(QUrl::FullyEncoded)
        : value.toString();
    return text.left(kLongestLink).trimmed();
}

bool isWebLink(const QString &link)
{
    return link.startsWith("https://"_L1, Qt::CaseInsensitive)
        || link.startsWith("http://"_L1, Qt::CaseInsensitive);
}

QString linkText(const QVariantMap &root)
{
    const QVariantMap metadata = root.value(u"richLinkMetadata"_s).toMap();
    for (const QVariantMap &map : { metadata, root }) {
        for (const QString &key : { u"originalURL"_s, u"URL"_s }) {
            const QString link = text(map, key);
            if (!link.isEmpty())
                return link;
        }
    }
    const QString title = text(metadata, u"title"_s);
    return title.isEmpty() ? tr("[Link]") : tr("[Link: %1]").arg(title);
}

QString appText(const QString &app, const QVariantMap &root)
{
    const QVariantMap info = root.value(u"userInfo"_s).toMap();
    QStringList captions;
    for (const QString &key : { u"caption"_s,
                                u"subcaption"_s,
                                u"secondary-subcaption"_s,
                                u"tertiary-subcaption"_s,
                                u"image-title"_s,
                                u"image-subtitle"_s }) {
        const QString caption = text(info, key).simplified();
        if (!caption.isEmpty() && !captions.contains(caption))
            captions.append(caption);
    }
    if (captions.isEmpty())
        captions.append(text(root, u"ldtext"_s).simplified());
    const QString caption = captions.join(u", "_s);
    const QString label =
        caption.isEmpty() || caption == app ? u"[%1]"_s.arg(app) : u"[%1: %2]"_s.arg(app, caption);
    const QString link = text(root, u"URL"_s);
    return isWebLink(link) ? label + u' ' + link : label;
}

} // namespace

QString balloonText(const QString &bundleId, const QByteArray &payload)
{
    if (bundleId.contains("Handwriting"_L1))
        return tr("[Handwritten message]");
    if (bundleId.contains("DigitalTouch"_L1))
        return tr("[Digital Touch message]");
    const KeyedArchive archive(payload);
    QVariantMap root;
    const QVariantMap stored = archive.root();
    for (const QString &key : { u"richLinkMetadata"_s,
                                u"originalURL"_s,
                                u"URL"_s,
                                u"userInfo"_s,
                                u"ldtext"_s,
                                u"an"_s }) {
        if (stored.contains(key))
            root.insert(key, archive.decode(stored.value(key)));
    }
    if (root.isEmpty() && stored.contains(u"NS.keys"_s)) // a dictionary that is an object itself
        root = archive.decode(QVariant(stored)).toMap();
    if (bundleId.isEmpty() || bundleId.contains("URLBalloonProvider"_L1))
        return linkText(root);
    QString app = text(root, u"an"_s);
    if (bundleId.contains("PeerPayment"_L1))
        app = tr("Payment");
    else if (bundleId.contains("com.apple.messages.Polls"_L1))
        app = tr("Poll");
    else if (app.isEmpty())
        app = tr("App message");
    return appText(app, root);
}

} // namespace PhoneBackup
