#include "PhoneBackup/source/Source.h"

#include "PhoneBackup/source/PathParts.h"

#include <QDir>

namespace PhoneBackup {

using namespace Qt::StringLiterals;

namespace {

constexpr int kCallsBetweenQuestions = 4096;
constexpr qint64 kMaxPropertyListBytes = qint64(64) << 20;

} // namespace

Source::Source(std::unique_ptr<BackupFiles> files, KeepGoing keepGoing)
    : m_files(std::move(files))
    , m_keepGoing(std::move(keepGoing))
{
}

const AddressBook &Source::addressBook()
{
    if (!m_addressBook)
        m_addressBook.emplace(*this);
    return *m_addressBook;
}

void Source::addProblem(const Problem &problem)
{
    // A damaged source does not hide that the temporary folder failed, too.
    const QString place =
        problem.fault == Fault::TemporaryFolder ? QDir::tempPath() : problem.source;
    const QString key =
        u"%1 %2 %3"_s.arg(QString::number(problem.dataType), QString::number(problem.row), place);
    if (m_known.contains(key))
        return;
    m_known.insert(key);
    m_problems.append(problem);
}

void Source::addProblem(
    int dataType, const QString &source, const Error &error, const Notice &consequence, bool loss)
{
    // Its sentence ends with what to do, and there is nothing to put up with before that is done.
    const bool isOurs = error.fault == Fault::TemporaryFolder;
    const Notice what = isOurs ? error.what : error.what + consequence;
    addProblem({ dataType, source, what, loss || isOurs, false, error.fault, error.systemError });
}

void Source::addAbsence(int dataType, int release, const Notice &what)
{
    const BackupInfo &info = m_files->folder().info();
    if (!info.encrypted && info.productVersion.section(u'.', 0, 0).toInt() >= release)
        addProblem({ dataType, {}, what, false, true });
}

bool Source::keepGoing()
{
    if (!m_stopped && m_keepGoing && ++m_questions % kCallsBetweenQuestions == 0 && !m_keepGoing())
        stop();
    return !m_stopped;
}

void Source::stop()
{
    if (m_stopped)
        return;
    m_stopped = true;
    addProblem({ -1, m_files->folder().path(), Notice("source.stopped"), true });
}

PropertyList Source::propertyList(int dataType, QByteArrayView domain, const QString &path)
{
    const FileIndex::Row row = m_files->findFile(domain, path);
    if (row == FileIndex::kNone)
        return {};
    PropertyList list = PropertyList::parse(m_files->content(row, kMaxPropertyListBytes));
    if (!list.isDict()) {
        addProblem({ dataType, m_files->place(row), Notice("source.noPropertyList"), false });
    }
    return list;
}

} // namespace PhoneBackup
