// A recording played: its lines read, what it covers, its commands given to the working context.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/zenro/map/lettering.h"
#include "tools/zenro/map/map_pen.h"
#include "tools/zenro/map/recording.h"
#include "zenromath/config.h"
#include "zenromath/draw.h"

namespace zm::tool {

/// Calls work for each line of a recording that is not empty, with its number from 1; name is the file's in messages.
/// Throws Failure (kNoInput) and Stopped.
void ForEachLine(const std::filesystem::path& recording, const std::string& name,
                 const std::function<void(long number, const std::string& line)>& work);

/// What a recording covers: by its head, else by its commands.
struct RecordingExtent {
    RecordingHead head;
    Box drawn;
    long commands = 0;
    void Add(const Command& c);
};

/// Where a command draws; empty where it draws nothing by itself.
Box BoxOf(const Command& c);

/// Gives the commands of a recording to the working context, one after the other.
class RecordingPlayer {
 public:
    explicit RecordingPlayer(TqNoteLayBase& notes) : m_notes(notes) {}
    ~RecordingPlayer();
    RecordingPlayer(const RecordingPlayer&) = delete;
    RecordingPlayer& operator=(const RecordingPlayer&) = delete;
    /// A comment line, which may say what the next command loses.
    void Tell(const std::string& line);
    void Play(const Command& c);
    /// Ends a polyline that has no end.
    void Close() { EndPolyline(); }

 private:
    void On(const command::Line& c);
    void On(const command::PolylineBegin&);
    void On(const command::PolylineEnd&);
    void On(const command::Arc& c);
    void On(const command::Pixel& c);
    void On(const command::Layer& c);
    void On(const command::Pen& c);
    void On(const command::Font& c);
    void SetPlainFont(const command::Font& c, std::vector<char>& face, double height, double width, double degrees);
    void SetExactFont(const command::Font& c);
    void On(const command::Text& c);
    void SetDwgFont(const char* face, double height, double width, double degrees);
    void EndRun();
    void EndPolyline();

    TqNoteLayBase& m_notes;
    bool m_polyline = false;
    std::vector<double> m_points;
    int m_layer = 0;
    std::unique_ptr<MapPen> m_layerPen;
    std::unique_ptr<CTQPen> m_pen;
    Exactly m_next;
    std::optional<TextLook> m_exact;
    HFONT m_font = nullptr, m_previousFont = nullptr;
    std::vector<HFONT> m_made;
};

}  // namespace zm::tool
