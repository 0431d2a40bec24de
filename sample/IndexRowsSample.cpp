#include "sample/IndexRowsSample.h"

#include "sample/BackupWriter.h"
#include "sample/Random.h"
#include "sample/SampleDates.h"

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

struct Row
{
    QString domain;
    QString path;
    int typicalSizeBytes;
};

Row indexRow(Random &random, int index)
{
    constexpr int kPerFolder = 997; // Apart from the numbers of the pictures that have contents.
    const QString number = QString::number(index);
    switch (index % 10) {
    case 0:
    case 1:
    case 2:
        return { u"CameraRollDomain"_s,
                 u"Media/PhotoData/CPLAssets/group%1/%2.%3"_s.arg(index / kPerFolder)
                     .arg(random.uuid(), index % 30 == 0 ? "MOV"_L1 : "HEIC"_L1),
                 2500000 };
    case 3:
        return { u"CameraRollDomain"_s,
                 u"Media/PhotoData/Thumbnails/V2/PhotoData/CPLAssets/group%1/%2.HEIC/5005.JPG"_s
                     .arg(index / kPerFolder)
                     .arg(random.uuid()),
                 60000 };
    case 4:
    case 5:
        return { u"AppDomain-org.example.app%1"_s.arg(index / 10 % 150),
                 u"Documents/Folder %1/Document %2.dat"_s.arg(index / 10 % 40).arg(number),
                 90000 };
    case 6:
        return { u"AppDomain-org.example.app%1"_s.arg(index / 10 % 150),
                 u"Library/Application Support/Store/%1.bin"_s.arg(number),
                 20000 };
    case 7:
    case 8: {
        const int first = random.below(256);
        const int second = random.below(16);
        return { u"MediaDomain"_s,
                 u"Library/SMS/Attachments/%1/%2/%3/IMG_%4.jpeg"_s
                     .arg(first, 2, 16, QLatin1Char('0'))
                     .arg(second, 2, 10, QLatin1Char('0'))
                     .arg(random.uuid())
                     .arg(index % 10000, 4, 10, QLatin1Char('0')),
                 400000 };
    }
    default:
        return { u"HomeDomain"_s,
                 u"Library/Preferences/org.example.setting%1.plist"_s.arg(number),
                 900 };
    }
}

} // namespace

void addIndexRows(BackupWriter &writer, const Options &options)
{
    Random random(options.seed, "index rows");
    const qint64 wanted = writer.rowCount() + options.indexRows;
    for (int i = 0; writer.rowCount() < wanted && writer.error().isEmpty(); ++i) {
        const Row row = indexRow(random, i);
        FileTraits traits;
        traits.modified = sampleStart().addSecs(random.below(300 * 86400));
        writer.addWithoutContent(row.domain,
                                 row.path,
                                 row.typicalSizeBytes / 2 + random.below(row.typicalSizeBytes),
                                 traits);
    }
}

} // namespace Sample
