// Rows of straight strokes on the working context, for what draws many at a time.
#pragma once

#include "draw/pixel_line.h"
#include "draw/state.h"
#include "zenromath/draw.h"

namespace zm::draw {

/// Strokes on their way: what lies in the view of a device is gathered, already in pixels, and goes out in one call.
/// Whatever else reaches a context goes through at once, behind what was gathered.
///
/// Nothing but the row may draw, and no message may show, between a stroke and Flush. What is not flushed is not drawn.
class StrokeRow {
 public:
    static constexpr int kMost = 64;  // strokes that are gathered

    StrokeRow() = default;
    StrokeRow(const StrokeRow&) = delete;
    StrokeRow& operator=(const StrokeRow&) = delete;

    /// Draws on the working context as CTqDraw::line does; nothing where there is none.
    void Line(geometry::Pair from, geometry::Pair to) {
        if (m_context != nullptr && m_count < kMost && m_view.Map(from, to, next()))
            Take(1);
        else if (m_other != nullptr && WorkingContext() == m_other)
            DrawLineAnywhere(*m_other, from[0], from[1], to[0], to[1]);
        else
            LineElsewhere(from, to);
    }

    /// Whether strokes can be gathered: on a device, neither turned nor clipped by an area. If so, view() tells where
    /// they come to lie, and what is put at next() is theirs once they are taken.
    bool IsOpen() {
        if (m_context != nullptr) return true;
        const CTqDraw* context = WorkingContext();
        if (context == nullptr || !IsPlainDevice(*context)) return false;
        Open(*context);
        return true;
    }
    const PlainView& view() const { return m_view; }
    /// Room for so many strokes, at most kMost: Flush if they have none beside what was gathered.
    void MakeRoom(int strokes) {
        if (m_count + strokes > kMost) Flush();
    }
    POINT* next() { return m_ends + 2 * static_cast<std::ptrdiff_t>(m_count); }
    void Take(int strokes) { m_count += strokes; }

    /// Draws what was gathered. A device may let the application in: after it everything may have changed, the working
    /// context too.
    void Flush() {
        ++m_turn;
        if (m_count > 0) PutOut();
        m_context = nullptr;
    }
    /// Another number after each Flush.
    unsigned turn() const { return m_turn; }

 private:
    void Open(const CTqDraw& context) {
        m_context = &context;
        m_other = nullptr;  // else its strokes would overtake those gathered
        m_view = PlainView(context);
    }
    void PutOut();
    void LineElsewhere(geometry::Pair from, geometry::Pair to);

    const CTqDraw* m_context = nullptr;  // the plain device whose view it is; null where it must be asked for anew
    // The working context where it is no plain device. It is not asked again: DrawLineAnywhere is right even if it has
    // become one meanwhile.
    CTqDraw* m_other = nullptr;
    PlainView m_view;
    unsigned m_turn = 0;
    int m_count = 0;
    POINT m_ends[2 * kMost];
};

/// Draws count strokes on the working context as CTqDraw::line does, in their order. A message or a device may let the
/// application change or end the context meanwhile: the strokes behind go to the new one, or nowhere if there is none.
/// \param ends  four values for each: x1, y1, x2, y2, survey coordinates
void DrawStrokes(const double* ends, int count);

}  // namespace zm::draw
