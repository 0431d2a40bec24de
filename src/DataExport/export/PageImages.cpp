#include "export/CHtmlExporter.h"
#include "export/PageImages_p.h"
#include "platform/CCommonUtils.h"
#include "platform/OutputFolder_p.h"
#include "platform/Translation_p.h"

#include <QFile>
#include <QRegularExpression>

#include <cerrno>
#include <ranges>

using namespace Qt::StringLiterals;
DATAEXPORT_USE_TR(DataExport);

namespace {

constexpr auto kMarkStart = "<!--pictures: "_L1;
constexpr auto kMarkEnd = "-->"_L1;
constexpr auto kPageEnd = "</body></html>"_L1;
constexpr qint64 kLongestEnd = 100; // of the mark and what follows it

// Numbered pictures, which is what pages have of their own.
void removePictures(const QDir &folder)
{
    static const QRegularExpression picture(u"\\A[0-9]+\\.png\\z"_s);
    const QStringList names =
        folder.entryList({ u"*.png"_s }, QDir::Files | QDir::NoSymLinks, QDir::Unsorted);
    for (const QString &name : names) {
        if (picture.match(name).hasMatch())
            QFile::remove(folder.absoluteFilePath(name));
    }
}

// What a run that was killed left in a folder of pictures. Its page never came to be.
void removeKilled(const QString &folder)
{
    const QDir dir(folder);
    OutputFile::removeLeftovers(dir);
    if (!OutputFile::hasAbandonedClaim(dir))
        return;
    removePictures(dir);
    OutputFile::removeAbandonedClaims(dir); // last, so that whoever is stopped here leaves one
    OutputFolder::removeEmpty(folder);
}

CIExportReport::Fault targetFault(const OutputFile &file)
{
    return { CIExportReport::Cause::Target,
             tr("It could not be written: %1.").arg(file.errorString()),
             file.error() };
}

} // namespace

PageImages::Fault PageImages::open(const QString &folder, bool hardened)
{
    m_page = folder;
    m_hardened = hardened;
    const QString images = folder + u'/' + CHtmlExporter::HTML_IMG_FOLDER;
    if (hardened && QFileInfo(images).isSymLink())
        return CIExportReport::Fault { CIExportReport::Cause::Target,
                                       OutputFolder::Made { ELOOP }.reason(images),
                                       ELOOP };
    if (!hardened)
        return {};
    static const QRegularExpression number(u"\\A[0-9]+\\z"_s);
    const QStringList names =
        QDir(images).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QString &name : names) {
        if (number.match(name).hasMatch())
            removeKilled(images + u'/' + name);
    }
    removeKilled(images);
    return {};
}

PageImages::Fault PageImages::copy(const QString &source, const QString &name)
{
    if (const Fault fault = makeImageFolder())
        return fault;
    NativeFile image;
    if (!image.openForReading(source)) {
        return CIExportReport::Fault {
            CIExportReport::Cause::Resource,
            tr("The program's image “%1” could not be read: %2.").arg(source, image.errorString()),
            image.error()
        };
    }
    const QString path = m_page + u'/' + CHtmlExporter::HTML_IMG_FOLDER + u'/' + name;
    const bool isNew = !QFileInfo::exists(path);
    OutputFile file;
    if (!file.open(path, OutputFile::Way::Staged, OutputFile::Existing::Replace)
        || !file.copyFrom(image) || !file.complete())
        return targetFault(file);
    if (isNew)
        m_placed += path;
    return {};
}

PageImages::Fault PageImages::write(const QByteArray &picture, const QString &name, bool &isOpened)
{
    isOpened = false;
    if (const Fault fault = m_hardened ? makePictureFolder() : makeImageFolder())
        return fault;
    OutputFile file;
    const QString path = m_page + u'/' + pathOf(name);
    const auto way = m_hardened ? OutputFile::Way::Staged : OutputFile::Way::Direct;
    isOpened = file.open(path, way, OutputFile::Existing::Replace);
    if (!isOpened || !file.write(picture.constData(), picture.size()) || !file.complete())
        return targetFault(file);
    m_placed += path;
    return {};
}

QString PageImages::pathOf(const QString &name) const
{
    return (m_pictures.isEmpty() ? CHtmlExporter::HTML_IMG_FOLDER : m_pictures) + u'/' + name;
}

QString PageImages::mark() const
{
    return m_pictures.isEmpty() ? QString() : kMarkStart + m_pictures + kMarkEnd;
}

QString PageImages::markOf(const QString &path)
{
    QFile page(path);
    if (QFileInfo(path).isSymLink() || !CCommonUtils::openForReading(page))
        return {};
    page.seek(qMax(page.size() - kLongestEnd, 0));
    const QString end = QString::fromUtf8(page.read(kLongestEnd));
    const qsizetype start = end.lastIndexOf(kMarkStart);
    return start >= 0 && end.endsWith(kPageEnd) ? end.sliced(start).chopped(kPageEnd.size())
                                                : QString();
}

void PageImages::removeMarked(const QString &mark) const
{
    static const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(kMarkStart + u"(image(?:/[0-9]+)?)"_s + kMarkEnd));
    const QString relative = pattern.match(mark).captured(1);
    const QString folder = m_page + u'/' + relative;
    if (relative.isEmpty() || relative == m_pictures || QFileInfo(folder).isSymLink())
        return;
    removePictures(QDir(folder));
    OutputFolder::removeEmpty(folder);
}

void PageImages::complete()
{
    m_claim.discard();
}

void PageImages::discard()
{
    m_claim.discard();
    for (const QString &path : std::as_const(m_placed))
        QFile::remove(path);
    for (const QString &folder : std::as_const(m_folders) | std::views::reverse)
        OutputFolder::removeEmpty(folder);
    m_placed.clear();
    m_folders.clear();
}

PageImages::Fault PageImages::makeImageFolder()
{
    return makeFolder(CHtmlExporter::HTML_IMG_FOLDER);
}

PageImages::Fault PageImages::makePictureFolder()
{
    if (!m_pictures.isEmpty())
        return {};
    if (const Fault fault = makeImageFolder())
        return fault;
    // Only one page makes a folder, so no two have the same.
    QString folder = CHtmlExporter::HTML_IMG_FOLDER;
    for (int number = 2; m_folders.isEmpty(); ++number) {
        folder = CHtmlExporter::HTML_IMG_FOLDER + u'/' + QString::number(number);
        const Fault fault = makeFolder(folder);
        if (fault && fault->systemError != ENOTDIR && fault->systemError != ELOOP)
            return fault;
    }
    if (!m_claim.openClaim(m_page + u'/' + folder))
        return targetFault(m_claim);
    m_pictures = folder;
    return {};
}

PageImages::Fault PageImages::makeFolder(const QString &relative)
{
    if (m_page.isEmpty())
        return CIExportReport::Fault { CIExportReport::Cause::Target, tr("The page is not open.") };
    const QString path = m_page + u'/' + relative;
    const OutputFolder::Made made = OutputFolder::make(
        path, m_hardened ? OutputFolder::Links::Refused : OutputFolder::Links::Followed);
    if (made.isNew)
        m_folders += path;
    if (made.error == 0)
        return {};
    return CIExportReport::Fault { CIExportReport::Cause::Target, made.reason(path), made.error };
}
