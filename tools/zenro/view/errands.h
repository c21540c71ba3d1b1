// Questions that need a walk over the whole map: a process that is forked off for each answers it, so that the keeper
// answers the others meanwhile.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "tools/zenro/view/painter_process.h"

namespace zm::tool {

class Errands {
 public:
    using Json = nlohmann::json;
    /// answer: gives the answer to a question, in the process; done: takes it.
    Errands(std::function<Json(const Json& question)> answer,
            std::function<void(const Json& question, Json answer)> done);

    /// A newer question of the same kind takes the place of an older one, whose answer is {"dropped": true}.
    void Ask(const Json& question);
    /// Where answers come from, -1 where nothing is asked.
    int file() const { return m_process.file(); }
    /// Takes what has come; call where the file can be read.
    void Take();

 private:
    void Next();

    std::function<void(const Json&, Json)> m_done;
    PainterProcess m_process;
    std::deque<Json> m_waiting;
    std::optional<Json> m_asked;
    int m_tries = 0;
};

}  // namespace zm::tool
