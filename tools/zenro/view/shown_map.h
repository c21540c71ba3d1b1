// What a window shows: map data by rules, a drawing or a recording. It is opened once, asked and drawn.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tools/zenro/view/view_request.h"

namespace zm::tool {

using Json = nlohmann::json;
struct DrawJob;
struct Context;

class ShownMap {
 public:
    virtual ~ShownMap() = default;

    /// What is known of it as a whole: the message "ready".
    virtual Json About() = 0;
    /// Its layers, with what draws in them and how often.
    virtual Json Layers() = 0;
    /// What is at a point, the smallest first. What is not shown is not there.
    virtual Json Identify(double x, double y, double reach) = 0;
    /// The nearest vertex of what is shown.
    virtual Json Snap(double x, double y, double reach) = 0;
    /// A position in the plane as degrees; nothing where the plane is of no known system.
    virtual Json Where(double x, double y) = 0;
    /// Length, and area of the ring, of points in the plane.
    virtual Json Measure(const std::vector<double>& xy) = 0;
    virtual Json Find(const std::string& text) = 0;

    /// The layers and rules by their places in the lists that are not shown; each other one is.
    virtual void Hide(const std::vector<std::size_t>& layers, const std::vector<std::size_t>& rules) = 0;
    /// What is never drawn again. \return its name
    virtual std::string LeaveOut(std::uint64_t place) = 0;
    /// Draws a view; visited is called with the place of each thing before it is drawn. Throws Failure and Stopped.
    virtual ViewDrawn Draw(const ViewRequest& request, std::uint32_t* pixels, Context& context,
                           const std::function<void(std::size_t)>& visited) = 0;
};

/// Opens what the inputs of a job are. step is called while it is read, with the number so far and all, -1 where that
/// is not known. Throws Failure and Stopped.
std::unique_ptr<ShownMap> OpenShown(const DrawJob& job, Context& context,
                                    const std::function<void(long long, long long)>& step);

/// What of a path makes it a drawing or a recording, which are shown by themselves: its end.
bool IsDrawing(const std::string& path);
bool IsRecording(const std::string& path);

}  // namespace zm::tool
