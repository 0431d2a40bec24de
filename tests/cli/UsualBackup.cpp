#include "cli/UsualBackup.h"

#include "support/Files.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace CliTest {

namespace {

struct UsualFile
{
    QString domain;
    QString path;
    QString output;
    int size;
};

QList<UsualFile> usualFiles()
{
    const QString camera = u"CameraRollDomain"_s;
    const QString media = u"MediaDomain"_s;
    const QString app = u"AppDomain-com.example.notebook"_s;
    return {
        { camera, u"Media/DCIM/100APPLE/IMG_0001.JPG"_s, u"Photos/100APPLE/IMG_0001.JPG"_s, 40000 },
        { camera, u"Media/DCIM/100APPLE/IMG_0002.HEIC"_s, u"Photos/100APPLE/IMG_0002.HEIC"_s, 1 },
        { camera, u"Media/DCIM/101APPLE/IMG_0001.JPG"_s, u"Photos/101APPLE/IMG_0001.JPG"_s, 16384 },
        { camera,
          u"Media/DCIM/100APPLE/IMG_0003.MOV"_s,
          u"Videos/100APPLE/IMG_0003.MOV"_s,
          300000 },
        { media, u"Media/Recordings/Lecture.m4a"_s, u"Voice Memos/Lecture.m4a"_s, 20000 },
        { u"BooksDomain"_s, u"Guide.epub"_s, u"Books/Guide.epub"_s, 16385 },
        { app, u"Documents/list.txt"_s, u"App Documents/com.example.notebook/list.txt"_s, 12 },
        { app, u"Documents/empty.txt"_s, u"App Documents/com.example.notebook/empty.txt"_s, 0 },
    };
}

QString described(const QString &path, const ExpectedFile &file)
{
    return u"%1 (%2 bytes, %3)"_s.arg(path)
        .arg(file.content.size())
        .arg(file.modified.toString(Qt::ISODate));
}

} // namespace

QByteArray noise(int seed, int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = static_cast<quint32>(seed) * 2654435761U + 1;
    for (char &byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24U);
    }
    return bytes;
}

ExpectedFiles addUsualFiles(Sample::BackupWriter &writer)
{
    ExpectedFiles expected;
    QDateTime modified(QDate(2019, 3, 31), QTime(1, 59, 58), Qt::UTC);
    int seed = 0;
    const QList<UsualFile> files = usualFiles();
    for (const UsualFile &file : files) {
        const QByteArray content = noise(++seed, file.size);
        Sample::FileTraits traits;
        traits.modified = modified;
        writer.addFile(file.domain, file.path, content, traits);
        expected.insert(file.output, { content, modified });
        modified = modified.addSecs(86461);
    }
    return expected;
}

ExpectedFiles writeUsualBackup(const QString &root)
{
    Sample::BackupWriter writer(root);
    const ExpectedFiles expected = addUsualFiles(writer);
    return writer.finish() ? expected : ExpectedFiles();
}

ExpectedFiles filesBelow(const QString &output)
{
    ExpectedFiles found;
    const QStringList entries = Files::tree(output);
    for (const QString &entry : entries) {
        const QString path = output + u'/' + entry;
        if (!entry.endsWith(u'/') && entry != "index.html"_L1)
            found.insert(entry, { Files::read(path), QFileInfo(path).lastModified().toUTC() });
    }
    return found;
}

QString difference(const ExpectedFiles &actual, const ExpectedFiles &expected)
{
    QStringList lines;
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        const auto there = actual.find(it.key());
        if (there == actual.end())
            lines += u"missing: "_s + described(it.key(), *it);
        else if (there->content != it->content || there->modified != it->modified)
            lines += u"differs: %1, expected %2"_s.arg(described(it.key(), *there),
                                                       described(it.key(), *it));
    }
    for (auto it = actual.begin(); it != actual.end(); ++it) {
        if (!expected.contains(it.key()))
            lines += u"unexpected: "_s + described(it.key(), *it);
    }
    return lines.join(u'\n');
}

} // namespace CliTest
