#include "sample/RingtoneSample.h"

#include "sample/BackupWriter.h"
#include "sample/PropertyList.h"
#include "sample/Random.h"
#include "sample/SampleDates.h"
#include "sample/SoundMaker.h"

#include <QStringList>

namespace Sample {

using namespace Qt::StringLiterals;

void addRingtones(BackupWriter &writer, const Options &options)
{
    if (options.ringtones == 0)
        return;
    const QString domain = u"TonesDomain"_s;
    const QString folder = u"Media/iTunes_Control/"_s;
    const QStringList names { u"Harbour Bells"_s, u"Slow Waves"_s, u"Morning Gulls"_s };

    Random random(options.seed, "ringtones");
    QVariantMap ringtones;
    for (int i = 0; i < options.ringtones; ++i) {
        QString letters;
        for (int letter = 0; letter < 3; ++letter)
            letters += QChar(u'A' + random.below(26));
        const QString file = u"%1%2.m4r"_s.arg(letters).arg(i + 1);
        const int seconds = random.between(4, 7);
        writer.addFile(
            domain, folder + "Ringtones/"_L1 + file, tuneFile(random, seconds, sampleStart()));
        ringtones.insert(file,
                         QVariantMap {
                             { u"Name"_s, i < names.size() ? names[i] : u"Tone %1"_s.arg(i + 1) },
                             { u"GUID"_s, QString::fromLatin1(random.bytes(8).toHex().toUpper()) },
                             { u"Media Kind"_s, u"song"_s },
                             { u"Protected Content"_s, false },
                             { u"Total Time"_s, seconds * 1000 },
                         });
    }
    writer.addFile(domain,
                   folder + "iTunes/Ringtones.plist"_L1,
                   xmlPropertyList(QVariantMap { { u"Ringtones"_s, ringtones } }));
}

} // namespace Sample
