#include "Archive/media/Site.h"

#include "Archive/html/Html.h"

namespace Archive {

QByteArray tile(qint64 count, const QString &period, const QStringList &latest)
{
    QByteArray out;
    Html html(out);
    html << "<span class=\"n\">";
    html.number(count);
    if (!period.isEmpty())
        html << " · ", html.text(period);
    html << "</span>";
    for (const QString &line : latest) {
        html << "<span class=\"line\" dir=\"auto\">";
        html.text(line) << "</span>";
    }
    return out;
}

} // namespace Archive
