// Work done by processes side by side: each has the library's state for itself, and what it reports is reported by the
// one that started it, in the order of the work.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/kit/report.h"

namespace zm::tool {

/// How many processes run at once where nothing is said: the processors that this one may use.
int UsableProcessors();

/// How a piece of work ended that had a process of its own.
struct Ending {
    bool lost = true;  // the process ended without a word
    int signal = 0;    // the one that ended it, 0 if none
    std::string text;  // what the work gave, or the text of the failure
    int status = 0;    // an ExitCode; of the library's own end its status
    char how = 'u';    // d done, f failure, s stopped, l the library's own end, u unexpected
    std::vector<ReportedEvent> events;
};

/// Does pieces of work in processes of their own, at most so many at once, and hands each ending to ended in the order in
/// which they come; ended gives false where no more are to be started. The processes end with this one. Throws Stopped
/// after Ctrl-C, when all have ended.
void RunSideBySide(int pieces, int jobs, Report& report, const std::function<std::string(int piece)>& work,
                   const std::function<bool(int piece, Ending& ending)>& ended);

/// Does pieces of work in processes of their own, at most so many at once, and hands what each gave, a text, to done in
/// the order of the pieces, with its reports before it. With one process, or one piece, all is done in this one.
/// Throws what the first piece that failed threw, after the others ended; Stopped ends the others too.
void DoSideBySide(int pieces, int jobs, Report& report, const std::function<std::string(int piece)>& work,
                  const std::function<void(int piece, const std::string& given)>& done);

}  // namespace zm::tool
