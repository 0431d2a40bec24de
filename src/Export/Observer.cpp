#include "Export/Observer.h"

namespace Export {

Observer::~Observer() = default;

std::variant<Secret, Failure> Observer::password(const BackupInfo &info, const Failure *wrong)
{
    return wrong ? *wrong : noPassword(info);
}

void Observer::makingKeys(int /*percent*/) { }

void Observer::readingIndex() { }

void Observer::opened(const BackupInfo & /*info*/) { }

void Observer::readingType(const QString & /*typeName*/) { }

void Observer::inventoryRead(const Inventory & /*inventory*/) { }

void Observer::problemsFound(const QList<Problem> & /*problems*/) { }

void Observer::typeStarts(const TypeTotals & /*type*/) { }

void Observer::progressed(const Progress & /*progress*/) { }

void Observer::typeEnds(const TypeOutcome & /*type*/) { }

void Observer::archiving(const QString & /*kind*/, qint64 /*records*/) { }

void Observer::allTypesEnded() { }

} // namespace Export
