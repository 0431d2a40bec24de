#include "draw/Artwork.h"

#include <QPainter>
#include <QPainterPath>

#include <array>

using namespace Qt::StringLiterals;

namespace {

// Widths of the side columns, as the page's style sheet sets them; what lies between them repeats.
constexpr int kLeftPx = 14;
constexpr int kRightPx = 18;
constexpr int kMiddlePx = 8;

// At a zoom of 125 % a cell may be a device pixel larger than the image in it, which lies at its
// upper left: so the parts above and left of others go on under them, where the cell cuts them off.
constexpr int kBleedPx = 2;

enum class Side { Sent, Received };

// The body keeps clear of the outer edges by these, so that the text has the same room on all
// sides: behind the text stands a blank, and the rows differ in height.
struct Shape
{
    Side side;
    int topPx, bottomPx; //!< Heights of the outer rows.
    qreal insetLeft, insetTop, insetRight, insetBottom;
    qreal radius;
};

constexpr Shape kSent { Side::Sent, 13, 14, 2, 2, 8, 3, 10 };
constexpr Shape kReceived { Side::Received, 15, 13, 4, 4, 6, 2, 10 };

struct Kind
{
    QLatin1String name;
    const Shape &shape;
    QColor colour;
};

// A hook that leaves the body's side above the lower corner and bends back under it.
QPainterPath tailOf(const Shape &shape, const QRectF &body, qreal tipX)
{
    const bool right = shape.side == Side::Sent;
    const qreal out = right ? 1 : -1;
    const qreal edge = right ? body.right() : body.left();
    const qreal foot = body.bottom();
    QPainterPath tail(QPointF(edge, foot - 11));
    tail.cubicTo(edge, foot - 4.5, edge + out * 2, foot - 1.2, tipX, foot + 0.4);
    tail.cubicTo(
        tipX - out * 2.5, foot + 1.4, edge - out * 2, foot + 0.6, edge - out * 4, foot - 2);
    tail.lineTo(edge - out * 4, foot - 11);
    tail.closeSubpath();
    return tail;
}

QImage drawWhole(const Shape &shape, const QColor &colour)
{
    const int width = kLeftPx + kMiddlePx + kRightPx;
    const int height = shape.topPx + kMiddlePx + shape.bottomPx;
    const QRectF body =
        QRectF(0, 0, width, height)
            .adjusted(shape.insetLeft, shape.insetTop, -shape.insetRight, -shape.insetBottom);
    QPainterPath outline;
    outline.addRoundedRect(body, shape.radius, shape.radius);
    const qreal tipX = shape.side == Side::Sent ? body.right() + 6 : body.left() - 4;
    outline = outline.united(tailOf(shape, body, tipX));

    QImage image = canvas(width, height);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline, colour);
    return image;
}

// Cut from one drawing, the parts fit together whatever the text between them.
QList<Artwork> cut(const Kind &kind)
{
    const QImage whole = drawWhole(kind.shape, kind.colour);
    struct Column
    {
        int x, width;
    };
    const std::array columns { Column { 0, kLeftPx + kBleedPx },
                               Column { kLeftPx, kMiddlePx },
                               Column { kLeftPx + kMiddlePx, kRightPx } };
    struct Row
    {
        int y, height;
        std::array<QLatin1String, 3> names;
    };
    const int top = kind.shape.topPx;
    const std::array rows {
        Row { 0, top + kBleedPx, { "-top-l"_L1, "-top-c"_L1, "-top-r"_L1 } },
        Row { top, kMiddlePx, { "-middle-l"_L1, "-bg"_L1, "-middle-r"_L1 } },
        Row { top + kMiddlePx, kind.shape.bottomPx, { "-bot-l"_L1, "-bot-c"_L1, "-bot-r"_L1 } },
    };
    QList<Artwork> parts;
    for (const Row &row : rows) {
        for (std::size_t i = 0; i < columns.size(); ++i) {
            parts.append({ kind.name + row.names[i] + ".png"_L1,
                           whole.copy(columns[i].x, row.y, columns[i].width, row.height) });
        }
    }
    return parts;
}

} // namespace

QList<Artwork> drawBubbles()
{
    // White text reads well on both colours of sent messages: a contrast of at least 4.5.
    const std::array kinds {
        Kind { "message"_L1, kSent, QColor(0x1f, 0x6f, 0xd6) },
        Kind { "imessage"_L1, kSent, QColor(0x1c, 0x82, 0x3f) },
        Kind { "rmessage"_L1, kReceived, QColor(0xe9, 0xea, 0xee) },
    };
    QList<Artwork> all;
    for (const Kind &kind : kinds)
        all += cut(kind);
    return all;
}
