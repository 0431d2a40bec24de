#include "export/CIExportReport.h"

CIExportReport::~CIExportReport() = default;

void CIExportReport::fileWritten(const QString & /*typeName*/,
                                 const QString & /*itemName*/,
                                 const QString & /*path*/)
{
}

void CIExportReport::itemExported(const QString & /*typeName*/, const QString & /*itemName*/) { }

void CIExportReport::outputEnded(const QString & /*typeName*/, Output /*output*/, End /*end*/) { }
