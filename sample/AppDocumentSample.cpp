#include "sample/AppDocumentSample.h"

#include "sample/BackupWriter.h"
#include "sample/DocumentMaker.h"
#include "sample/InventedText.h"
#include "sample/MediaPool.h"
#include "sample/PropertyList.h"
#include "sample/Random.h"
#include "sample/SampleDates.h"

#include <array>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

struct App
{
    const char16_t *identifier;
    const char16_t *name;
};

constexpr std::array kApps {
    App { u"org.example.fieldnotes", u"Field Notes" },
    App { u"org.example.sailplan", u"Sail Plan" },
    App { u"org.example.tides", u"Tides & Times" },
};
constexpr auto kFilesAppGroup = u"AppDomainGroup-group.com.apple.FileProvider.LocalStorage";

QString domainOf(const App &app)
{
    return u"AppDomain-"_s + QString::fromUtf16(app.identifier);
}

void registerApps(BackupWriter &writer)
{
    QStringList installed;
    QVariantMap infoApps;
    QVariantMap manifestApps;
    for (const App &app : kApps) {
        const QString identifier = QString::fromUtf16(app.identifier);
        const QByteArray metadata = binaryPropertyList(QVariantMap {
            { u"itemName"_s, QString::fromUtf16(app.name) },
            { u"artistName"_s, u"Sample Works"_s },
            { u"bundleShortVersionString"_s, u"2.1"_s },
            { u"softwareVersionBundleId"_s, identifier },
        });
        installed.append(identifier);
        infoApps.insert(identifier, QVariantMap { { u"iTunesMetadata"_s, metadata } });
        manifestApps.insert(
            identifier,
            QVariantMap {
                { u"CFBundleIdentifier"_s, identifier },
                { u"CFBundleVersion"_s, u"214"_s },
                { u"ContainerContentClass"_s, u"Data/Application"_s },
                { u"Path"_s, u"/var/containers/Bundle/Application/%1.app"_s.arg(identifier) },
            });
    }
    writer.setInfo(u"Installed Applications"_s, installed);
    writer.setInfo(u"Applications"_s, infoApps);
    writer.setManifest(u"Applications"_s, manifestApps);
}

//! What an app keeps for itself: none of it is a document.
void addPrivateFiles(BackupWriter &writer, Random &random, const App &app)
{
    const QString domain = domainOf(app);
    const QString identifier = QString::fromUtf16(app.identifier);
    const QVariantMap settings { { u"launches"_s, random.between(1, 400) },
                                 { u"units"_s, u"metric"_s } };
    writer.addFile(
        domain, u"Library/Preferences/%1.plist"_s.arg(identifier), binaryPropertyList(settings));
    writer.addFile(domain, u"Library/Application Support/state.bin"_s, random.bytes(300));
    writer.addFile(domain, u"Documents/.cache/index"_s, random.bytes(64));
    writer.addFile(domain, u"Documents/.DS_Store"_s, random.bytes(64));
    writer.addFolder(domain, u"Documents/Inbox"_s);
    writer.addFile(u"AppDomainGroup-group."_s + identifier,
                   u"Library/Preferences/group.plist"_s,
                   binaryPropertyList(settings));
    writer.addFile(u"AppDomainPlugin-"_s + identifier + ".widget"_L1,
                   u"Library/Preferences/widget.plist"_s,
                   binaryPropertyList(settings));
}

DocumentPart document(Random &random, MediaPool &pool, int index, const QDateTime &modified)
{
    const QString number = QString::number(index + 1);
    switch (index % 6) {
    case 0:
        return { u"Notes %1.txt"_s.arg(number), inventedText(random, 3).toUtf8() };
    case 1:
        return { u"Tide table %1.csv"_s.arg(number), inventedTable(random, 12).toUtf8() };
    case 2:
        return { u"Plans/2024/Voyage %1.pdf"_s.arg(number),
                 pdfDocument(u"Voyage %1"_s.arg(number), inventedText(random, 4)) };
    case 3:
        return { u"Pictures/Chart %1.jpg"_s.arg(number), pool.jpeg(modified) };
    case 4:
        return { u"Übersicht – Häfen %1.txt"_s.arg(number), inventedText(random, 2).toUtf8() };
    default:
        return { u"Plans/Packing list %1.md"_s.arg(number),
                 "# " + inventedText(random, 2).toUtf8() };
    }
}

} // namespace

void addAppDocuments(BackupWriter &writer, const Options &options)
{
    if (options.appDocuments == 0)
        return;
    Random random(options.seed, "app documents");
    Options unsized = options;
    unsized.fileSizesBytes.clear();
    MediaPool pool(unsized, "app documents' pictures");

    registerApps(writer);
    for (const App &app : kApps)
        addPrivateFiles(writer, random, app);
    constexpr int kPlaces = static_cast<int>(kApps.size()) + 1;
    for (int i = 0; i < options.appDocuments; ++i) {
        FileTraits traits;
        traits.modified = sampleStart().addSecs(i * 5000 + random.below(3000));
        const auto place = static_cast<size_t>(i % kPlaces);
        const DocumentPart part =
            document(random, pool, i / kPlaces + static_cast<int>(place), traits.modified);
        if (place < kApps.size())
            writer.addFile(
                domainOf(kApps[place]), u"Documents/"_s + part.path, part.content, traits);
        else
            writer.addFile(QString::fromUtf16(kFilesAppGroup),
                           u"File Provider Storage/"_s + part.path,
                           part.content,
                           traits);
    }
    writer.addFile(QString::fromUtf16(kFilesAppGroup),
                   u"File Provider Storage/.Trash/Old draft.txt"_s,
                   inventedText(random, 1).toUtf8());
}

} // namespace Sample
