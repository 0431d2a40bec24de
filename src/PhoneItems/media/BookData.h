#ifndef PHONEITEMS_MEDIA_BOOKDATA_H
#define PHONEITEMS_MEDIA_BOOKDATA_H

#include "PhoneBackup/base/Result.h"
#include "PhoneBackup/media/Books.h"
#include "PhoneItems/DataTypes.h"
#include "PhoneItems/shared/FileData.h"

#include <vector>

namespace PhoneItems {

//! Books and PDFs. One that the phone keeps as a folder gets its file when it is asked for.
class BookData final : public FileData
{
public:
    //! \a source is borrowed, and told which books could not be made.
    explicit BookData(PhoneBackup::Source &source);
    ~BookData() override;

    QString filePath(int index) const override;
    bool isStreamed(int index) const override;
    qint64 sizeBytes(int index) const override;
    QDateTime fileDate(int index) const override;

private:
    QString make(const PhoneBackup::Book &book) const;
    qint64 partBytes(const PhoneBackup::Book &book) const;
    void addProblem(const PhoneBackup::Book &book, const PhoneBackup::Error &error) const;

    PhoneBackup::Source &m_source;
    std::vector<PhoneBackup::Book> m_books;
    mutable std::vector<QString> m_made;
};

//! Data type 4: books, by title.
void readBooks(PhoneBackup::Source &source, DataSets &sets);

} // namespace PhoneItems

#endif
