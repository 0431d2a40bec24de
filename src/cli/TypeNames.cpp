#include "TypeNames.h"

#include "Export/Backups.h"
#include "Export/Inventory.h"
#include "backup/BkDataType.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Cli::TypeNames {

namespace {

QString asWord(const QString &text)
{
    return text.trimmed().toLower().replace(u' ', u'-').replace(u'_', u'-');
}

} // namespace

std::optional<int> code(const QString &text)
{
    const QString wanted = asWord(text);
    const QList<int> offered = Export::Backup::dataTypes();
    const auto found = std::find_if(offered.begin(), offered.end(), [&](int candidate) {
        const BkDataType *type = BkDataType::find(candidate);
        return wanted == Export::typeWord(candidate) || wanted == QString::number(candidate)
            || (type && type->longWord && wanted == QLatin1StringView(type->longWord));
    });
    if (found == offered.end())
        return std::nullopt;
    return *found;
}

QStringList words()
{
    QStringList all;
    const QList<int> offered = Export::Backup::dataTypes();
    for (const int code : offered)
        all += Export::typeWord(code);
    return all;
}

} // namespace Cli::TypeNames
