#ifndef TESTS_SUPPORT_FILES_H
#define TESTS_SUPPORT_FILES_H

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QString>
#include <QStringList>

namespace Files {

inline bool write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

//! The content, a null array when it cannot be read.
inline QByteArray read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.readAll();
    return content.isNull() ? QByteArray("") : content;
}

//! All files and folders (with a slash behind) below \a root, relative and sorted.
inline QStringList tree(const QString &root)
{
    QStringList found;
    QDirIterator walk(root,
                      QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                      QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        walk.next();
        const QFileInfo entry = walk.fileInfo();
        const bool folder = entry.isDir() && !entry.isSymLink();
        found.append(QDir(root).relativeFilePath(entry.filePath())
                     + (folder ? QLatin1String("/") : QLatin1String()));
    }
    found.sort();
    return found;
}

} // namespace Files

#endif
