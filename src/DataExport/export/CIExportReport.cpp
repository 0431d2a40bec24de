#include "export/CIExportReport.h"

CIExportReport::~CIExportReport() = default;

void CIExportReport::itemExported(const QString & /*typeName*/, const QString & /*itemName*/) { }
