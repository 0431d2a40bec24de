#include "export/CIExportReport.h"

CIExportReport::~CIExportReport() = default;

void CIExportReport::typeStarts(int /*code*/, const QString & /*typeName*/) { }

void CIExportReport::itemExported(const QString & /*typeName*/, const QString & /*itemName*/) { }

void CIExportReport::outputEnded(const QString & /*typeName*/, Output /*output*/, End /*end*/) { }
