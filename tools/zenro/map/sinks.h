// Outputs: the same drawing to SVG, PNG, PDF, DWG, DXF or a recording, by the extension of the file.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "tools/kit/output_file.h"
#include "tools/kit/tool_host.h"
#include "tools/zenro/map/page.h"
#include "zenromath/draw.h"

namespace zm::tool {

enum class Format { svg, png, pdf, dwg, dxf, recording };

/// The format of an output by its extension. Throws Failure (kUsage) for one that is none.
Format FormatOf(const std::filesystem::path& path);

struct SinkOptions {
    bool overwrite = false;
    bool monochrome = false;
    bool utf8 = false;      // texts of DXF; else GBK
    bool thickness = true;  // of fills in DWG and DXF, as the library gives it; else 0
    double dpi = 0.0;       // of images; 0: the usual one
    std::string title;      // UTF-8
};

/// One output being drawn. While it exists its context is the working one; at its end the layers are gone, as they are
/// with every context.
class Sink {
 public:
    virtual ~Sink();
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;

    /// Called between features; a recording writes out what it has.
    virtual void Flush() {}
    /// Writes the file whole and puts it in its place. Throws Failure (kNoOutput).
    virtual void Finish() = 0;

 protected:
    Sink(const std::filesystem::path& target, const SinkOptions& options, int contextType);
    /// Gives the context its view of a page.
    void SetView(HDC device, const Page& page);

    OutputFile m_file;
    std::unique_ptr<CTqDraw> m_context;
};

/// Opens an output for a page. Throws Failure.
std::unique_ptr<Sink> OpenSink(const std::filesystem::path& target, const SinkOptions& options, const Page& page,
                               Report& report);

/// Device units an inch for a page, the same on all outputs: 40 a millimetre, fewer where the page is so large that the
/// library's device coordinates could not hold them. Positions and widths of strokes are whole numbers of units.
double UnitsPerInch(const Page& page);

}  // namespace zm::tool
