#include "tools/zenro/view/errands.h"

#include <utility>

#include "tools/kit/translation.h"

namespace zm::tool {
namespace {

constexpr int kMostTries = 3;  // of processes that end without an answer

}  // namespace

Errands::Errands(std::function<Json(const Json& question)> answer,
                 std::function<void(const Json& question, Json answer)> done)
    : m_done(std::move(done)), m_process([answer = std::move(answer)](const std::string& question) {
          return answer(Json::parse(question)).dump(-1, ' ', false, Json::error_handler_t::replace);
      }) {}

void Errands::Ask(const Json& question) {
    const auto older = [&](const Json& other) { return other.at("do") == question.at("do"); };
    for (auto one = m_waiting.begin(); one != m_waiting.end();) {
        if (!older(*one)) {
            ++one;
            continue;
        }
        m_done(*one, {{"dropped", true}});
        one = m_waiting.erase(one);
    }
    if (m_asked && older(*m_asked)) {
        m_process.Kill();
        m_done(*std::exchange(m_asked, std::nullopt), {{"dropped", true}});
    }
    m_waiting.push_back(question);
    Next();
}

void Errands::Next() {
    if (m_asked || m_waiting.empty()) return;
    m_asked = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_tries = 1;
    m_process.Ask(m_asked->dump(-1, ' ', false, Json::error_handler_t::replace));
}

void Errands::Take() {
    const PainterProcess::News news = m_process.Take();
    if (!news.answer && !news.ended) return;
    if (!news.answer && m_tries < kMostTries) {
        ++m_tries;
        return m_process.Ask(m_asked->dump(-1, ' ', false, Json::error_handler_t::replace));
    }
    m_process.Kill();  // the next one has the map as it is then
    const Json asked = *std::exchange(m_asked, std::nullopt);
    m_done(asked, news.answer ? Json::parse(*news.answer)
                              : Json{{"error", Phrase("the process that answers ends each time.")}});
    Next();
}

}  // namespace zm::tool
