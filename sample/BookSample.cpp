#include "sample/BookSample.h"

#include "sample/BackupWriter.h"
#include "sample/DocumentMaker.h"
#include "sample/InventedText.h"
#include "sample/PropertyList.h"
#include "sample/Random.h"

#include <QStringList>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

constexpr int kAsFolder = 2; //!< Which book is kept as a folder of files.

} // namespace

void addBooks(BackupWriter &writer, const Options &options)
{
    if (options.books == 0)
        return;
    const QString domain = u"BooksDomain"_s;
    const QStringList titles { u"The Tide Tables"_s,
                               u"Knots for Everyone"_s,
                               u"Letters from a Lighthouse"_s,
                               u"A Short History of Fog"_s };
    const QStringList authors { u"Ada Brookfield"_s, u"Tom Sandbank"_s };

    Random random(options.seed, "books");
    QVariantList books;
    for (int i = 0; i < options.books; ++i) {
        const bool isPdf = i % 2 == 1;
        const QString title = i < titles.size() ? titles[i] : u"Logbook, Volume %1"_s.arg(i + 1);
        const QString &author = random.pick(authors);
        const QString text = inventedText(random, 6);
        const QString path = QString::fromLatin1(random.bytes(8).toHex().toUpper())
            + (isPdf ? ".pdf"_L1 : ".epub"_L1);
        if (isPdf) {
            writer.addFile(domain, path, pdfDocument(title, text));
        } else {
            const QList<DocumentPart> parts = epubParts(title, author, text);
            if (i != kAsFolder) {
                writer.addFile(domain, path, zipArchive(parts));
            } else {
                for (const DocumentPart &part : parts)
                    writer.addFile(domain, path + u'/' + part.path, part.content);
            }
        }
        books.append(QVariantMap {
            { u"Name"_s, title },
            { u"Artist"_s, author },
            { u"Path"_s, path },
            { u"Extension"_s, isPdf ? u"pdf"_s : u"epub"_s },
            { u"Persistent ID"_s, QString::fromLatin1(random.bytes(8).toHex().toUpper()) },
        });
    }
    writer.addFile(
        domain, u"Books.plist"_s, binaryPropertyList(QVariantMap { { u"Books"_s, books } }));
    writer.addFile(domain,
                   u"Purchases/Purchases.plist"_s,
                   binaryPropertyList(QVariantMap { { u"Books"_s, QVariantList() } }));
}

} // namespace Sample
