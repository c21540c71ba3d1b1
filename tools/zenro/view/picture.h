// A view of an opened map, drawn into pixels.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "tools/kit/qt_module.h"
#include "tools/zenro/view/opened_map.h"
#include "tools/zenro/view/view_request.h"

namespace zm::tool {

/// The working context on the pixels of a view, while it lives.
class PictureContext {
 public:
    /// Throws Failure.
    PictureContext(const ViewRequest& request, const Page& page, std::uint32_t* pixels);
    ~PictureContext();
    PictureContext(const PictureContext&) = delete;
    PictureContext& operator=(const PictureContext&) = delete;

    /// Device units of a pixel.
    double unitsOfPixel() const { return m_unitsOfPixel; }

 private:
    const ZenroQtBridge& m_qt;
    HDC m_device = nullptr;
    std::unique_ptr<CTqDraw> m_context;
    double m_unitsOfPixel = 1.0;
};

/// The page that a view is drawn as.
Page PageOf(const ViewRequest& request);
/// What of the plane a page and so many millimetres of paper around it may show.
Box WindowOf(const Page& page, double reach);

/// Draws it. visited is called with the place of each feature before it is drawn. Throws Failure and Stopped.
ViewDrawn DrawView(OpenedMap& map, const ViewRequest& request, std::uint32_t* pixels, Context& context,
                   const std::function<void(std::size_t)>& visited);

}  // namespace zm::tool
