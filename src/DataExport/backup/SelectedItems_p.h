#ifndef DATAEXPORT_BACKUP_SELECTEDITEMS_P_H
#define DATAEXPORT_BACKUP_SELECTEDITEMS_P_H

#include "backup/BkAbstractItem.h"
#include "backup/BkData.h"
#include "export/CIDataExporter.h"
#include "platform/CIProgressCallback.h"

/*!
    The selected items of a data set, as every translator walks them into a sink. All are borrowed,
    and sink and progress may be null; the selection is asked for once, when this is made.
*/
class SelectedItems
{
public:
    SelectedItems(const BkData &data, CIDataExporter *sink, CIProgressCallback *progress)
        : m_data(data)
        , m_sink(sink)
        , m_progress(progress)
        , m_indices(data.recoverList())
        , m_step(progress && !m_indices.isEmpty() ? static_cast<double>(progress->range())
                         / static_cast<double>(m_indices.size())
                                                  : 0)
    {
    }

    /*!
        Calls \a each with every item that is an \a Item, until it answers false. The progress hears
        of each index before its item is looked at; its answer of false ends the walk, which the
        sink is told of, and is no failure. \return false when \a each did.
    */
    template <class Item, class Each>
    bool forEach(Each each) const
    {
        return forEachRow<Item>([&](Item *item, int, qsizetype) { return each(item); });
    }

    //! The same; \a each also gets the item's index and its position in the selection.
    template <class Item, class Each>
    bool forEachRow(Each each) const
    {
        for (qsizetype i = 0; i < m_indices.size(); ++i) {
            if (m_progress && !m_progress->progress(m_step)) {
                if (m_sink)
                    m_sink->setStopped();
                break;
            }
            auto *item = dynamic_cast<Item *>(m_data.at(m_indices[i], true));
            if (item && !each(item, m_indices[i], i))
                return false;
        }
        return true;
    }

private:
    const BkData &m_data;
    CIDataExporter *m_sink;
    CIProgressCallback *m_progress;
    const QList<int> m_indices;
    const double m_step;
};

#endif
