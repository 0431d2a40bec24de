#include "platform/UxResourceMgr.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace {

// The folder of the file that this code was loaded from: the library, or a program that links it
// in.
QString libraryFolder()
{
    Dl_info info {};
    static const char anchor = 0;
    if (dladdr(&anchor, &info) == 0 || info.dli_fname == nullptr)
        return {};
    return QFileInfo(QFile::decodeName(info.dli_fname)).canonicalPath();
}

QString findInstalledRoot()
{
    const QString folder = libraryFolder();
    if (folder.isEmpty())
        return {};
    // Multi-arch systems put libraries a folder deeper: lib/<triplet>.
    for (const QLatin1String up : { QLatin1String("/.."), QLatin1String("/../..") }) {
        const QString root = QDir::cleanPath(folder + up + QLatin1String("/share/dataexport"));
        if (QFileInfo(root).isDir())
            return root;
    }
    return {};
}

} // namespace

UxResourceMgr *UxResourceMgr::instance()
{
    static UxResourceMgr manager;
    return &manager;
}

QString UxResourceMgr::productResourceRoot() const
{
    if (!m_root.isEmpty())
        return m_root;
    const QString fromEnvironment = qEnvironmentVariable("DATAEXPORT_RESOURCE_ROOT");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    static const QString installed = findInstalledRoot();
    if (!installed.isEmpty())
        return installed;
    return QStringLiteral(DATAEXPORT_BUILD_RESOURCES);
}

void UxResourceMgr::setProductResourceRoot(const QString &root)
{
    m_root = root;
}
