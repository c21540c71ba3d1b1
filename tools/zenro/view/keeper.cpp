#include "tools/zenro/view/keeper.h"

#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <set>

#include "tools/kit/translation.h"
#include "tools/zenro/map/draw_job.h"
#include "tools/zenro/view/errands.h"
#include "tools/zenro/view/shown_map.h"

namespace zm::tool {
namespace {

constexpr int kMostEnds = 3;         // of the process in a row, for one view
constexpr double kReportStep = 0.1;  // seconds between words on reading

double Seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

constexpr const char* kNoPainter = N_("the process that draws ends each time; the view is given up.");

// A signal that is the fault of what was drawn.
bool IsFault(int signal) {
    return signal == SIGSEGV || signal == SIGABRT || signal == SIGBUS || signal == SIGFPE || signal == SIGILL;
}

}  // namespace

void PainterCare::Want(const std::string& request) {
    m_next = request;
    m_since = Seconds();
    if (!m_painter.busy()) Ask();
}

void PainterCare::Ask() {
    m_current = *m_next;
    m_next.reset();
    m_head.place.store(kNoPlace);
    m_still = Seconds();
    m_painter.Ask(m_current);
}

void PainterCare::LeaveOut(const std::string& why) {
    const std::uint64_t place = m_head.place.load();
    m_kept = kNoPlace;
    if (place != kNoPlace) m_hooks.lost(place, why);
}

void PainterCare::Take() {
    PainterProcess::News news = m_painter.Take();
    if (news.ended) {
        const std::uint64_t place = m_head.place.load();
        m_ends = place == kNoPlace ? m_ends + 1 : 0;
        if (m_ends >= kMostEnds) {
            m_ends = 0;
            m_hooks.givenUp();
            if (m_next) Ask();
            return;
        }
        if (IsFault(news.signal) || (place != kNoPlace && place == m_kept))
            LeaveOut(Phrase("ended the drawing (signal {0})", news.signal));
        else
            m_kept = place;
        if (!m_next) m_next = m_current;
        m_since = Seconds();
        Ask();
        return;
    }
    if (!news.answer) return;
    m_ends = 0;
    m_hooks.answer(*news.answer);
    if (m_next) Ask();
}

// The feature that the drawing is at kept it: the first time this may be the machine's fault.
void PainterCare::TakeKept() {
    const std::uint64_t place = m_head.place.load();
    if (place != kNoPlace && place == m_kept)
        LeaveOut(Phrase("kept the drawing from stopping"));
    else
        m_kept = place;
}

int PainterCare::Look() {
    if (!m_painter.busy()) return -1;
    const double now = Seconds();
    if (const std::uint32_t beat = m_head.beat.load(); beat != m_beat) {
        m_beat = beat;
        m_still = now;
    }
    const bool wanted = m_next && now - m_since >= m_patience.stop;
    const bool kept = now - m_still >= m_patience.feature && m_head.place.load() != kNoPlace;
    const bool stopped = m_painter.IsStopped();
    if (!wanted && !kept && !stopped) {
        const double left = m_next ? m_patience.stop - (now - m_since) : m_patience.stop;
        return static_cast<int>(left * 1000.0) + 1;
    }
    m_painter.Kill();
    if (!stopped) TakeKept();
    if (!m_next) m_next = m_current;
    m_since = now;
    Ask();
    return Look();
}

namespace {

SharedHead* g_head = nullptr;
std::uint32_t g_number = 0;  // of the picture that is being drawn

// One map, its window and its painter.
class Keeper {
 public:
    Keeper(const DrawJob& job, int shared, Context& context)
        : m_out(dup(STDOUT_FILENO)),
          m_memory(mmap(nullptr, kSharedBytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_NORESERVE, shared, 0)),
          m_context(context),
          m_requests(STDIN_FILENO),
          m_painter([this](const std::string& request) { return Draw(request); }),
          m_care(Head(), m_painter,
                 {[this](const std::string& answer) { Send(answer); },
                  [this] {
                      Send(Json{{"is", "painted"}, {"whole", false}, {"error", Phrase(kNoPainter)}});
                  },
                  [this](std::uint64_t place, const std::string& why) { Lose(place, why); }}),
          m_errands(
              [this](const Json& question) {
                  SetStopQuestion(nullptr);  // its steps are not those of the keeper
                  return Answered(question);
              },
              [this](const Json& question, Json answer) { TakeErrand(question, std::move(answer)); }) {
        dup2(STDERR_FILENO, STDOUT_FILENO);  // what the library prints is no message
        if (m_memory == MAP_FAILED) throw Failure(kFailed, Phrase("the window's memory cannot be reached."));
        context.report.Collect(&m_events);
        m_map = OpenShown(job, context, [this](long long done, long long total) { Tell(done, total); });
        Send(m_map->About().dump(-1, ' ', false, Json::error_handler_t::replace));
        TellEvents();
        g_head = &Head();
        SetStopQuestion([] {
            ++g_head->steps;
            return false;
        });
    }

    void Run() {
        while (true) {
            ++Head().steps;
            const int wait = m_care.Look();
            pollfd files[3] = {{STDIN_FILENO, POLLIN, 0}, {m_painter.file(), POLLIN, 0}, {m_errands.file(), POLLIN, 0}};
            if (poll(files, 3, wait) < 0) continue;
            if (files[1].fd >= 0 && files[1].revents != 0) m_care.Take();
            if (files[2].fd >= 0 && files[2].revents != 0) m_errands.Take();
            if (files[0].revents == 0) continue;
            if (!m_requests.Take()) return;
            while (const auto request = m_requests.Next()) {
                ++Head().steps;
                On(Json::parse(*request));
            }
        }
    }

 private:
    SharedHead& Head() { return *static_cast<SharedHead*>(m_memory); }
    void Send(const std::string& text) const {
        if (!SendFrame(m_out, text)) _exit(0);  // the window is gone
    }
    void Send(const Json& json) const { Send(json.dump(-1, ' ', false, Json::error_handler_t::replace)); }

    void Tell(long long done, long long total) {
        CheckStop();
        if (done % 256 != 0 || Seconds() - m_told < kReportStep) return;
        m_told = Seconds();
        Send(Json{{"is", "reading"}, {"done", done}, {"total", total}});
    }
    void TellEvents() {
        if (m_events.empty()) return;
        Json lines = Json::array();
        // The library reads its settings more than once, and reports the same each time.
        for (const ReportedEvent& event : m_events)
            if (m_reported.insert(event.line).second) lines.push_back(event.line);
        m_events.clear();
        if (lines.empty()) return;
        Send(Json{{"is", "report"}, {"lines", lines}});
    }

    void On(const Json& request) {
        const std::string what = request.at("do");
        if (what == "draw") return m_care.Want(request.dump());
        if (what == "hide") return Hide(request);
        if (what == "search" || (what == "layers" && m_layers.is_null())) return m_errands.Ask(request);
        SendAnswer(request, Answered(request));
    }
    void SendAnswer(const Json& request, Json answer) const {
        answer["is"] = "answer";
        answer["id"] = request.value("id", 0);
        Send(answer);
    }
    void TakeErrand(const Json& question, Json answer) {
        if (question.at("do") == "layers" && answer.contains("layers")) m_layers = answer;  // before anything is hidden
        SendAnswer(question, std::move(answer));
    }
    Json Answered(const Json& request) {
        try {
            return Answer(request.at("do"), request);
        } catch (const Failure& failure) {
            return {{"error", failure.what()}};
        }
    }
    Json Answer(const std::string& what, const Json& r) {
        const auto number = [&](const char* name) { return r.at(name).get<double>(); };
        if (what == "identify") return m_map->Identify(number("x"), number("y"), number("reach"));
        if (what == "snap") return m_map->Snap(number("x"), number("y"), number("reach"));
        if (what == "where") return m_map->Where(number("x"), number("y"));
        if (what == "measure") return m_map->Measure(r.at("xy").get<std::vector<double>>());
        if (what == "search") return m_map->Find(r.at("text"));
        if (what == "layers") return m_layers.is_null() ? m_map->Layers() : m_layers;
        if (what == "ping") return Json::object();
        return {{"error", Phrase("unknown: {0}", what)}};
    }
    // The painter has the same map, and hears the same.
    void Hide(const Json& request) {
        m_map->Hide(request.at("layers"), request.at("rules"));
        m_painter.Kill();
    }
    void Lose(std::uint64_t place, const std::string& why) {
        Send(Json{{"is", "lost"}, {"where", m_map->LeaveOut(place)}, {"why", why}});
    }

    // In the painter: one view. What goes wrong is the answer.
    std::string Draw(const std::string& text) {
        Json answer = {{"is", "painted"}, {"whole", false}};
        const double start = Seconds();
        try {
            const ViewRequest request = ViewRequest::FromJson(Json::parse(text));
            g_head = &Head();
            g_number = request.number;
            SetStopQuestion([] { return g_head->wanted.load(std::memory_order_relaxed) != g_number; });
            answer["number"] = request.number;
            answer["slot"] = request.slot;
            const ViewDrawn drawn =
                m_map->Draw(request, PixelsOf(m_memory, request.slot), m_context, [this](std::size_t place) {
                    Head().place.store(place, std::memory_order_relaxed);
                    Head().beat.fetch_add(1, std::memory_order_relaxed);
                });
            answer["whole"] = true;
            answer["labels"] = drawn.labels;
            answer["features"] = drawn.features;
        } catch (const Stopped&) {  // a newer view is wanted
        } catch (const Failure& failure) {
            answer["error"] = failure.what();
        } catch (const LibraryStop& stop) {
            answer["error"] = Phrase("the library ended the drawing with status {0}", stop.status);
        } catch (const std::exception& error) {
            answer["error"] = Phrase("unexpected: {0}", error.what());
        }
        Head().place.store(kNoPlace);
        answer["seconds"] = Seconds() - start;
        return answer.dump(-1, ' ', false, Json::error_handler_t::replace);
    }

    int m_out;
    void* m_memory;
    Context& m_context;
    std::vector<ReportedEvent> m_events;
    std::set<std::string> m_reported;
    std::unique_ptr<ShownMap> m_map;
    Json m_layers;
    double m_told = 0.0;
    FrameReader m_requests;
    PainterProcess m_painter;
    PainterCare m_care;
    Errands m_errands;

 public:
    static void Fail(int out, const std::string& text, int status) {
        SendFrame(out, Json{{"is", "failed"}, {"text", text}, {"status", status}}.dump(-1, ' ', false,
                                                                                       Json::error_handler_t::replace));
    }
};

}  // namespace

void KeepMap(const DrawJob& job, int shared, Context& context) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    signal(SIGPIPE, SIG_IGN);
    const int out = dup(STDOUT_FILENO);
    try {
        Keeper(job, shared, context).Run();
    } catch (const Failure& failure) {
        Keeper::Fail(out, failure.what(), failure.status);
        throw;
    } catch (const LibraryStop& stop) {
        Keeper::Fail(out, Phrase("the library ended the work: {0}", context.host.lastMessage()), stop.status);
        throw;
    } catch (const std::bad_alloc&) {
        Keeper::Fail(out, Phrase("out of memory; look at a part of the data with --layer or --where."), kFailed);
        throw;
    }
}

}  // namespace zm::tool
