#include "Export/Formats.h"

#include "backup/BkDataType.h"

#include <algorithm>

namespace Export {

using Output = CIExportReport::Output;

QList<Output> Formats::omitted() const
{
    QList<Output> outputs;
    if (!page)
        outputs.append(Output::Page);
    if (!csv)
        outputs.append(Output::Table);
    if (!vcard)
        outputs.append(Output::Cards);
    return outputs;
}

bool Formats::areOf(int code) const
{
    const BkDataType *type = BkDataType::find(code);
    const QList<Output> outputs = type ? type->outputs() : QList<Output>();
    const QList<Output> unwanted = omitted();
    return std::any_of(outputs.begin(), outputs.end(), [&unwanted](Output output) {
        return !unwanted.contains(output);
    });
}

} // namespace Export
