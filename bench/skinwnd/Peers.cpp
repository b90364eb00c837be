#include "Peers.h"

#include <algorithm>
#include <cstring>

#include <pango/pangocairo.h>

#include <QBrush>
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

namespace bench {

namespace {

class MemcpyPeer : public Peer {
public:
    using Peer::Peer;
    // What one memcpy a row takes: runs are taken from the sheet as they lie there.
    void Take(const std::vector<Piece>& pieces, bool) override { m_pieces = pieces; }
    void Draw() override
    {
        for (const Piece& piece : m_pieces) {
            for (int y = 0; y < piece.rcTo.Height(); y++)
                for (int x = 0; x < piece.rcTo.Width(); x += kSheetWidth)
                    std::memcpy(
                        &m_pixels[static_cast<std::size_t>(piece.rcTo.top + y) * m_size.cx + piece.rcTo.left + x],
                        &Sheet()[static_cast<std::size_t>(y % 100) * kSheetWidth],
                        static_cast<std::size_t>(std::min(kSheetWidth, piece.rcTo.Width() - x)) * 4);
        }
    }

private:
    std::vector<Piece> m_pieces;
};

void StartQt()
{
    static int argc = 3;
    static char name[] = "bench";
    static char option[] = "-platform";
    static char platform[] = "offscreen";
    static char* argv[] = { name, option, platform, nullptr };
    static QGuiApplication application(argc, argv);
}

QRect QtRect(const CRect& rc)
{
    return { rc.left, rc.top, rc.Width(), rc.Height() };
}

class QtPeer : public Peer {
public:
    explicit QtPeer(const CSize& size)
        : Peer(size),
          m_sheet(reinterpret_cast<const uchar*>(Sheet().data()), kSheetWidth, kSheetHeight, QImage::Format_RGB32),
          m_image(reinterpret_cast<uchar*>(m_pixels.data()), size.cx, size.cy, QImage::Format_RGB32)
    {
        StartQt();
        m_font = QFont(QString::fromUtf8(kFace));
        m_font.setPixelSize(kTextHeight);
        m_font.setBold(true);
    }
    void Take(const std::vector<Piece>& pieces, bool bHasText) override
    {
        m_pieces = pieces;
        m_bHasText = bHasText;
        m_brushes.clear();
        for (const Piece& piece : pieces) // so that tiles need not be cut out at each painting
            m_brushes.push_back(piece.fill == Fill::Across || piece.fill == Fill::Down
                                    ? QBrush(m_sheet.copy(QtRect(piece.rcFrom)))
                                    : QBrush());
    }
    void Draw() override
    {
        QPainter painter(&m_image);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        for (std::size_t i = 0; i < m_pieces.size(); i++) {
            const Piece& piece = m_pieces[i];
            if (piece.fill == Fill::Once) {
                painter.drawImage(QPoint(piece.rcTo.left, piece.rcTo.top), m_sheet, QtRect(piece.rcFrom));
            } else if (piece.fill == Fill::Stretched) {
                painter.drawImage(QtRect(piece.rcTo), m_sheet, QtRect(piece.rcFrom));
            } else {
                painter.setBrushOrigin(piece.rcTo.left, piece.rcTo.top);
                painter.fillRect(QtRect(piece.rcTo), m_brushes[i]);
            }
        }
        if (!m_bHasText)
            return;
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setFont(m_font);
        painter.setClipRect(66, 0, m_size.cx - 128 - 66, 40);
        painter.setPen(QColor(0x21, 0x45, 0x4E));
        painter.drawText(68, 25, kCaption);
        painter.setPen(Qt::white);
        painter.drawText(67, 24, kCaption);
    }

private:
    const QImage m_sheet;
    QImage m_image;
    QFont m_font;
    std::vector<Piece> m_pieces;
    std::vector<QBrush> m_brushes;
    bool m_bHasText = false;
};

class CairoPeer : public Peer {
public:
    explicit CairoPeer(const CSize& size)
        : Peer(size), m_sheet(cairo_image_surface_create_for_data(
                          reinterpret_cast<unsigned char*>(const_cast<std::uint32_t*>(Sheet().data())),
                          CAIRO_FORMAT_RGB24, kSheetWidth, kSheetHeight, kSheetWidth * 4)),
          m_surface(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(m_pixels.data()),
                                                        CAIRO_FORMAT_RGB24, size.cx, size.cy, size.cx * 4)),
          m_context(cairo_create(m_surface)), m_layout(pango_cairo_create_layout(m_context))
    {
        PangoFontDescription* const font = pango_font_description_new();
        pango_font_description_set_family(font, kFace);
        pango_font_description_set_weight(font, PANGO_WEIGHT_BOLD);
        pango_font_description_set_absolute_size(font, 1.0 * kTextHeight * PANGO_SCALE);
        pango_layout_set_font_description(m_layout, font);
        pango_font_description_free(font);
    }
    CairoPeer(const CairoPeer&) = delete;
    CairoPeer& operator=(const CairoPeer&) = delete;
    ~CairoPeer() override
    {
        Forget();
        g_object_unref(m_layout);
        cairo_destroy(m_context);
        cairo_surface_destroy(m_surface);
        cairo_surface_destroy(m_sheet);
    }
    void Take(const std::vector<Piece>& pieces, bool bHasText) override
    {
        Forget();
        m_pieces = pieces;
        m_bHasText = bHasText;
        for (const Piece& piece : pieces)
            m_patterns.push_back(PatternOf(piece));
    }
    void Draw() override
    {
        cairo_set_operator(m_context, CAIRO_OPERATOR_SOURCE);
        for (std::size_t i = 0; i < m_pieces.size(); i++) {
            const CRect& rc = m_pieces[i].rcTo;
            cairo_set_source(m_context, m_patterns[i]);
            cairo_rectangle(m_context, rc.left, rc.top, rc.Width(), rc.Height());
            cairo_fill(m_context);
        }
        if (!m_bHasText)
            return;
        cairo_save(m_context);
        cairo_set_operator(m_context, CAIRO_OPERATOR_OVER);
        cairo_rectangle(m_context, 66, 0, m_size.cx - 128 - 66, 40);
        cairo_clip(m_context);
        pango_layout_set_text(m_layout, kCaption, -1);
        cairo_set_source_rgb(m_context, 0x21 / 255.0, 0x45 / 255.0, 0x4E / 255.0);
        cairo_move_to(m_context, 68, 13);
        pango_cairo_show_layout(m_context, m_layout);
        cairo_set_source_rgb(m_context, 1, 1, 1);
        cairo_move_to(m_context, 67, 12);
        pango_cairo_show_layout(m_context, m_layout);
        cairo_restore(m_context);
    }

private:
    cairo_pattern_t* PatternOf(const Piece& piece)
    {
        const CRect& rcFrom = piece.rcFrom;
        const CRect& rcTo = piece.rcTo;
        cairo_matrix_t matrix;
        cairo_pattern_t* pattern;
        if (piece.fill == Fill::Across || piece.fill == Fill::Down) { // repeats what was cut out
            cairo_surface_t* const tile =
                cairo_image_surface_create(CAIRO_FORMAT_RGB24, rcFrom.Width(), rcFrom.Height());
            cairo_t* const context = cairo_create(tile);
            cairo_set_source_surface(context, m_sheet, -rcFrom.left, -rcFrom.top);
            cairo_paint(context);
            cairo_destroy(context);
            pattern = cairo_pattern_create_for_surface(tile);
            cairo_surface_destroy(tile);
            cairo_pattern_set_extend(pattern, CAIRO_EXTEND_REPEAT);
            cairo_matrix_init_translate(&matrix, -rcTo.left, -rcTo.top);
        } else {
            pattern = cairo_pattern_create_for_surface(m_sheet);
            cairo_matrix_init_translate(&matrix, rcFrom.left, rcFrom.top);
            cairo_matrix_scale(&matrix, 1.0 * rcFrom.Width() / rcTo.Width(), 1.0 * rcFrom.Height() / rcTo.Height());
            cairo_matrix_translate(&matrix, -rcTo.left, -rcTo.top);
        }
        cairo_pattern_set_matrix(pattern, &matrix);
        cairo_pattern_set_filter(pattern, CAIRO_FILTER_NEAREST);
        return pattern;
    }
    void Forget()
    {
        for (cairo_pattern_t* const pattern : m_patterns)
            cairo_pattern_destroy(pattern);
        m_patterns.clear();
    }

    cairo_surface_t* const m_sheet;
    cairo_surface_t* const m_surface;
    cairo_t* const m_context;
    PangoLayout* const m_layout;
    std::vector<Piece> m_pieces;
    std::vector<cairo_pattern_t*> m_patterns;
    bool m_bHasText = false;
};

} // namespace

std::unique_ptr<Peer> MakeMemcpy(const CSize& size)
{
    return std::make_unique<MemcpyPeer>(size);
}

std::unique_ptr<Peer> MakeQt(const CSize& size)
{
    return std::make_unique<QtPeer>(size);
}

std::unique_ptr<Peer> MakeCairo(const CSize& size)
{
    return std::make_unique<CairoPeer>(size);
}

} // namespace bench
