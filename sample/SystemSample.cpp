#include "sample/SystemSample.h"

#include "sample/BackupWriter.h"
#include "sample/PropertyList.h"
#include "sample/Random.h"

#include <QStringList>

#include <utility>

namespace Sample {

using namespace Qt::StringLiterals;

void addSystemFiles(BackupWriter &writer, const Options &options)
{
    Random random(options.seed, "system");
    const QList<std::pair<QString, QString>> settings {
        { u"HomeDomain"_s, u"Library/Preferences/com.apple.springboard.plist"_s },
        { u"HomeDomain"_s, u"Library/Preferences/com.apple.mobilephone.plist"_s },
        { u"HomeDomain"_s, u"Library/Preferences/com.apple.Preferences.plist"_s },
        { u"HomeDomain"_s, u"Library/Preferences/.GlobalPreferences.plist"_s },
        { u"HomeDomain"_s, u"Library/Accounts/settings.plist"_s },
        { u"WirelessDomain"_s, u"Library/Preferences/com.apple.commcenter.plist"_s },
        { u"SystemPreferencesDomain"_s, u"SystemConfiguration/preferences.plist"_s },
        { u"KeyboardDomain"_s, u"Library/Keyboard/user_model.plist"_s },
        { u"RootDomain"_s, u"Library/Preferences/com.apple.backup.plist"_s },
        { u"MediaDomain"_s, u"Media/iTunes_Control/iTunes/prefs.plist"_s },
        { u"SysContainerDomain-com.apple.lsd"_s, u"Library/Preferences/settings.plist"_s },
    };
    for (const auto &[domain, path] : settings) {
        const QVariantMap values { { u"generation"_s, random.between(1, 5000) },
                                   { u"migrated"_s, true } };
        writer.addFile(domain, path, binaryPropertyList(values));
    }
    const QStringList folders { u"Library/Caches"_s,
                                u"Library/Mobile Documents"_s,
                                u"Library/Spotlight"_s,
                                u"Library/ConfigurationProfiles"_s };
    for (const QString &folder : folders)
        writer.addFolder(u"HomeDomain"_s, folder);
    writer.addFile(u"HomeDomain"_s,
                   u"Library/SpringBoard/IconState.plist"_s,
                   xmlPropertyList(QVariantMap { { u"iconLists"_s, QVariantList() } }));
    writer.addFile(u"HomeDomain"_s, u"Library/Caches/locationd/cache.plist"_s, QByteArray());
}

} // namespace Sample
