// Straight strokes on their way to the sink of a context.
#pragma once

#include "draw/state.h"
#include "draw/stroke/view.h"
#include "runtime/uses.h"
#include "zenromath/draw.h"

namespace zm::draw {

/// Draws strokes as they come: rotated, clipped, then to the sink. On a device they are gathered in pixels and go out
/// together; a drawing and a recording take each at once.
///
/// What the context is like is asked once and again after each Flush: nothing else may draw, and no message may show,
/// between a stroke and Flush. What is not flushed is not drawn.
class StrokeStream {
 public:
    static constexpr int kMost = 64;  // strokes that are gathered

    /// On the working context of the moment; strokes go nowhere while there is none.
    StrokeStream() = default;
    /// On this one, which must outlive the stream.
    explicit StrokeStream(CTqDraw& context) : m_given(&context) {}
    StrokeStream(const StrokeStream&) = delete;
    StrokeStream& operator=(const StrokeStream&) = delete;

    void Line(geometry::Pair from, geometry::Pair to) {
        if (m_count == kMost) Flush();
        if (m_context == nullptr && !Open()) return;
        if (m_rotation.IsActive()) [[unlikely]] {
            from = m_rotation.Of(from);
            to = m_rotation.Of(to);
        }
        if (m_box.Map(from, to, next())) [[likely]] {
            uses::Count(uses::strokeInBox);
            ++m_count;
        } else {
            LineOutside(from, to);
        }
    }

    /// Where strokes lie that may be put at next() in pixels and taken; null where each is wanted by Line.
    const ViewBox* Box() {
        if (m_context == nullptr && !Open()) return nullptr;
        return m_rotation.IsActive() || m_box.IsEmpty() ? nullptr : &m_box;
    }
    /// Room for so many strokes, at most kMost: Flush if they have none beside what was gathered.
    void MakeRoom(int strokes) {
        if (m_count + strokes > kMost) Flush();
    }
    /// So many strokes have room.
    int room() const { return kMost - m_count; }
    POINT* next() { return m_ends + 2 * static_cast<std::ptrdiff_t>(m_count); }
    void Take(int strokes) { m_count += strokes; }

    /// Draws what was gathered. A device may let the application in: after it everything may have changed, the working
    /// context too.
    void Flush() {
        if (m_count > 0) PutOut();
        Forget();
    }
    /// Another number each time what the context is like is asked anew.
    unsigned turn() const { return m_turn; }
    /// The sum of the results of all strokes that were flushed; a larger one wraps.
    int sum() const { return static_cast<int>(m_sum); }

 private:
    bool Open();
    void Forget() {
        m_context = nullptr;
        ++m_turn;
    }
    void PutOut();
    void AddToSum(int result) { m_sum += static_cast<unsigned>(result); }
    void LineOutside(geometry::Pair from, geometry::Pair to);

    CTqDraw* m_given = nullptr;
    CTqDraw* m_context = nullptr;  // null where it must be asked for anew
    ViewBox m_box;                 // of a device
    Rotation m_rotation;
    unsigned m_turn = 0;
    unsigned m_sum = 0;
    int m_count = 0;
    POINT m_ends[2 * kMost];
};

}  // namespace zm::draw
