// Outputs: the same drawing to SVG, PNG, PDF, DWG or a recording, by the extension of the file.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "tools/zenro/output_file.h"
#include "tools/zenro/page.h"
#include "tools/zenro/tool_host.h"
#include "zenromath/draw.h"

namespace zm::tool {

enum class Format { svg, png, pdf, dwg, recording };

/// The format of an output by its extension. Throws Failure (kUsage) for one that is none.
Format FormatOf(const std::filesystem::path& path);

struct SinkOptions {
    bool overwrite = false;
    bool monochrome = false;
    double dpi = 0.0;   // 0: the format's own
    std::string title;  // UTF-8
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
    /// Gives the context its view of a page of so many pixels an inch.
    void SetView(HDC device, const Page& page, double dpi);

    OutputFile m_file;
    std::unique_ptr<CTqDraw> m_context;
};

/// Opens an output for a page. Throws Failure.
std::unique_ptr<Sink> OpenSink(const std::filesystem::path& target, const SinkOptions& options, const Page& page,
                               Report& report);

/// Pixels an inch for a page: as asked for, but no more than the library's device coordinates can hold.
double UsableDpi(const Page& page, double wanted);

}  // namespace zm::tool
