#include "sample/DocumentMaker.h"

#include <QStringList>
#include <QtEndian>

#include <zlib.h>

namespace Sample {

using namespace Qt::StringLiterals;

namespace {

template <class Number>
QByteArray littleEndian(Number value)
{
    QByteArray bytes(sizeof(Number), '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QStringList brokenIntoLines(const QString &text, qsizetype width)
{
    QStringList lines;
    const QStringList paragraphs = text.split(u'\n');
    for (const QString &paragraph : paragraphs) {
        QString line;
        const QStringList words = paragraph.split(u' ');
        for (const QString &word : words) {
            if (!line.isEmpty() && line.size() + word.size() >= width) {
                lines.append(line);
                line.clear();
            }
            line += line.isEmpty() ? word : u' ' + word;
        }
        lines.append(line);
    }
    return lines;
}

QByteArray pdfString(const QString &text)
{
    // The dash of running text has a place of its own in the font's encoding.
    QByteArray bytes = QString(text).replace(u'–', QChar(0x96)).toLatin1();
    bytes.replace('\\', "\\\\").replace('(', "\\(").replace(')', "\\)");
    return '(' + bytes + ')';
}

} // namespace

QByteArray pdfDocument(const QString &title, const QString &text)
{
    constexpr qsizetype kLineWidth = 84;
    constexpr qsizetype kMostLines = 44;
    QByteArray page = "BT /F1 20 Tf 72 770 Td " + pdfString(title)
        + " Tj ET\n"
          "BT /F1 11 Tf 15 TL 72 735 Td\n";
    const QStringList lines = brokenIntoLines(text, kLineWidth).mid(0, kMostLines);
    for (const QString &line : lines)
        page += pdfString(line) + " Tj T*\n";
    page += "ET\n";

    const QList<QByteArray> objects {
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents 4 0 R "
            + QByteArray("/Resources << /Font << /F1 5 0 R >> >> >>"),
        "<< /Length " + QByteArray::number(page.size()) + " >>\nstream\n" + page + "endstream",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>",
        "<< /Title " + pdfString(title) + " >>",
    };
    QByteArray file = "%PDF-1.4\n%\xe2\xe3\xcf\xd3\n";
    QByteArray references = "0000000000 65535 f \n";
    for (qsizetype i = 0; i < objects.size(); ++i) {
        references += QByteArray::number(file.size()).rightJustified(10, '0') + " 00000 n \n";
        file += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const QByteArray count = QByteArray::number(objects.size() + 1);
    const QByteArray start = QByteArray::number(file.size());
    return file + "xref\n0 " + count + '\n' + references + "trailer\n<< /Size " + count
        + " /Root 1 0 R /Info 6 0 R >>\nstartxref\n" + start + "\n%%EOF\n";
}

QList<DocumentPart> epubParts(const QString &title, const QString &author, const QString &text)
{
    QString body;
    const QStringList paragraphs = text.split(u'\n', Qt::SkipEmptyParts);
    for (const QString &paragraph : paragraphs)
        body += u"<p>%1</p>\n"_s.arg(paragraph.toHtmlEscaped());
    const QString name = title.toHtmlEscaped();

    const QString package = uR"(<?xml version="1.0" encoding="UTF-8"?>
<package xmlns="http://www.idpf.org/2007/opf" version="3.0" unique-identifier="id">
<metadata xmlns:dc="http://purl.org/dc/elements/1.1/">
<dc:identifier id="id">urn:sample:%1</dc:identifier>
<dc:title>%2</dc:title>
<dc:creator>%3</dc:creator>
<dc:language>en</dc:language>
<meta property="dcterms:modified">2023-01-01T00:00:00Z</meta>
</metadata>
<manifest>
<item id="nav" href="nav.xhtml" media-type="application/xhtml+xml" properties="nav"/>
<item id="text" href="text.xhtml" media-type="application/xhtml+xml"/>
</manifest>
<spine><itemref idref="text"/></spine>
</package>
)"_s.arg(QString(title).remove(u' ').toHtmlEscaped(), name, author.toHtmlEscaped());

    const QString page = uR"(<?xml version="1.0" encoding="UTF-8"?>
<html xmlns="http://www.w3.org/1999/xhtml" xmlns:epub="http://www.idpf.org/2007/ops">
<head><title>%1</title></head>
<body>
%2</body>
</html>
)"_s;
    const QString contents =
        u"<nav epub:type=\"toc\"><ol><li><a href=\"text.xhtml\">%1</a></li></ol></nav>\n"_s.arg(
            name);
    return {
        { u"mimetype"_s, "application/epub+zip" },
        { u"META-INF/container.xml"_s,
          "<?xml version=\"1.0\"?>\n"
          "<container version=\"1.0\" xmlns=\"urn:oasis:names:tc:opendocument:xmlns:container\">\n"
          "<rootfiles><rootfile full-path=\"OEBPS/content.opf\""
          " media-type=\"application/oebps-package+xml\"/></rootfiles>\n"
          "</container>\n" },
        { u"OEBPS/content.opf"_s, package.toUtf8() },
        { u"OEBPS/nav.xhtml"_s, page.arg(name, contents).toUtf8() },
        { u"OEBPS/text.xhtml"_s, page.arg(name, u"<h1>%1</h1>\n"_s.arg(name) + body).toUtf8() },
    };
}

QByteArray zipArchive(const QList<DocumentPart> &parts)
{
    constexpr quint16 kVersion = 20;
    constexpr quint16 kUtf8Names = 0x0800;
    constexpr quint16 kNoon = 12 << 11;
    constexpr quint16 kNewYear2023 = (2023 - 1980) << 9 | 1 << 5 | 1;
    QByteArray archive;
    QByteArray directory;
    for (const DocumentPart &part : parts) {
        const QByteArray name = part.path.toUtf8();
        const auto length = static_cast<quint32>(part.content.size());
        const auto *bytes = reinterpret_cast<const Bytef *>(part.content.constData());
        const auto checksum = static_cast<quint32>(crc32(crc32(0, nullptr, 0), bytes, length));
        const QByteArray common = littleEndian(kVersion) + littleEndian(kUtf8Names)
            + littleEndian<quint16>(0) + littleEndian(kNoon) + littleEndian(kNewYear2023)
            + littleEndian(checksum) + littleEndian(length) + littleEndian(length)
            + littleEndian(static_cast<quint16>(name.size())) + littleEndian<quint16>(0);
        directory += QByteArray("PK\1\2") + littleEndian(kVersion) + common + QByteArray(10, '\0')
            + littleEndian(static_cast<quint32>(archive.size())) + name;
        archive += QByteArray("PK\3\4") + common + name + part.content;
    }
    const auto count = static_cast<quint16>(parts.size());
    return archive + directory + QByteArray("PK\5\6") + QByteArray(4, '\0') + littleEndian(count)
        + littleEndian(count) + littleEndian(static_cast<quint32>(directory.size()))
        + littleEndian(static_cast<quint32>(archive.size())) + QByteArray(2, '\0');
}

} // namespace Sample
