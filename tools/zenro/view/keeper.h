// The process that keeps a map for its window: reads it once, has views drawn by a process of its own, and answers
// questions meanwhile.
//
// Messages are JSON in frames (frames.h). From the window: {"do": "draw" | "identify" | "search" | "measure" | "where" |
// "snap" | "layers" | "hide", "id": N, ...}. To it: {"is": "reading" | "ready" | "painted" | "lost" | "answer" |
// "report" | "failed", ...}.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "tools/kit/shared_picture.h"
#include "tools/zenro/view/painter_process.h"

namespace zm::tool {

/// Has views drawn, the newest one that was asked for, and sees to it that one comes. A drawing process that does not
/// stop for a newer view in half a second, that was stopped, that is at one feature for ten seconds, or that ends, is
/// started again; a feature that ended it, or that kept it twice, is left out. A view that no process survives is given
/// up.
class PainterCare {
 public:
    struct Patience {
        double stop = 0.5;      // seconds that a drawing may take to stop for a newer view
        double feature = 10.0;  // seconds that one feature may take
    };
    struct Hooks {
        std::function<void(const std::string&)> answer;                         // of a view
        std::function<void()> givenUp;                                          // no answer will come
        std::function<void(std::uint64_t place, const std::string& why)> lost;  // a feature that is left out now
    };
    PainterCare(SharedHead& head, PainterProcess& painter, Hooks hooks, Patience patience)
        : m_head(head), m_painter(painter), m_hooks(std::move(hooks)), m_patience(patience) {}
    PainterCare(SharedHead& head, PainterProcess& painter, Hooks hooks)
        : PainterCare(head, painter, std::move(hooks), Patience{}) {}

    /// A view that is wanted now, in place of every earlier one.
    void Want(const std::string& request);
    /// Takes what the process says. Call where its file can be read.
    void Take();
    /// Looks at the time and at the process; call often. \return milliseconds until it must be called again, -1 while
    /// nothing is drawn
    int Look();

 private:
    void Ask();
    void LeaveOut(const std::string& why);
    void TakeKept();

    SharedHead& m_head;
    PainterProcess& m_painter;
    Hooks m_hooks;
    Patience m_patience;
    std::optional<std::string> m_next;  // wanted, and not asked for yet
    std::string m_current;
    double m_since = 0.0;  // when the next one was wanted
    std::uint32_t m_beat = 0;
    double m_still = 0.0;             // when the beat was last seen to change
    std::uint64_t m_kept = kNoPlace;  // the feature that kept it once
    int m_ends = 0;                   // in a row, outside of features
};

struct DrawJob;
struct Context;
/// Keeps the map of a window, whose shared memory is open as a file, until the window goes away.
void KeepMap(const DrawJob& job, int shared, Context& context);

}  // namespace zm::tool
